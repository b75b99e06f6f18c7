#include "Korvane/tools/NewCustomRule.h"

#include "KorvaneCore/foundation/UUID.h"

namespace korvane {

CustomRule newCustomRule(CustomRule rule) {
    if (rule.id.empty()) {
        rule.id = UUID::random().text();
    }
    if (rule.name.empty()) {
        rule.name = "My rules";
    }
    rule.validate();
    return rule;
}

} // namespace korvane
