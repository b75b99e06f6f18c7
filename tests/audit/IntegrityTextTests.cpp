#include "Korvane/audit/IntegrityText.h"
#include "Korvane/audit/ModuleNames.h"

#include <gtest/gtest.h>

namespace korvane {

TEST(IntegrityText, countsEntriesAndRestarts) {
    using Coverage = AuditChainResult::Coverage;
    const std::pair<AuditChainResult, const char*> cases[] = {
        {{Coverage::verified, 12, std::nullopt, 0},
         "12 chained entries verified - the audit log hasn't been edited outside Korvane."},
        {{Coverage::verified, 4, std::nullopt, 1},
         "4 chained entries verified. The log also carries 1 acknowledged break - a point where "
         "entries were known to be missing, recorded rather than hidden."},
        {{Coverage::verified, 4, std::nullopt, 2},
         "4 chained entries verified. The log also carries 2 acknowledged breaks - a point where "
         "entries were known to be missing, recorded rather than hidden."},
    };
    for (const auto& [result, message] : cases) {
        EXPECT_EQ(integrityMessage(result), message);
    }
    EXPECT_EQ(integrityStatus({Coverage::verified, 12, std::nullopt, 3}), "12 operations verified");
}

TEST(ModuleNames, showAnUnknownIdAsItIs) {
    EXPECT_EQ(moduleName("restore"), "Restore Centre");
    EXPECT_EQ(moduleName("some-new-tool"), "some-new-tool");
}

} // namespace korvane
