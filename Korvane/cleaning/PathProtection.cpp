#include "Korvane/cleaning/PathProtection.h"

namespace korvane {

ProtectionJudgement judgeProtection(std::string_view path, const FileURL& home) {
    if (path.empty()) {
        return ProtectionJudgement::empty;
    }
    if (!path.starts_with('/') && path != "~" && !path.starts_with("~/")) {
        return ProtectionJudgement::relative;
    }
    return FileURL(expandingTilde(path, home)).standardized().path() == "/"
               ? ProtectionJudgement::root
               : ProtectionJudgement::possible;
}

} // namespace korvane
