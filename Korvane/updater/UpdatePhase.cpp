#include "Korvane/updater/UpdatePhase.h"

namespace korvane {

std::string_view phaseName(UpdatePhase::Kind kind) noexcept {
    switch (kind) {
    case UpdatePhase::Kind::available:
        return "available";
    case UpdatePhase::Kind::downloading:
        return "downloading";
    case UpdatePhase::Kind::needsManualInstall:
        return "needsManualInstall";
    case UpdatePhase::Kind::failed:
        return "failed";
    case UpdatePhase::Kind::idle:
        return "idle";
    case UpdatePhase::Kind::checking:
        return "checking";
    case UpdatePhase::Kind::upToDate:
        return "upToDate";
    case UpdatePhase::Kind::verifying:
        return "verifying";
    case UpdatePhase::Kind::installing:
        return "installing";
    case UpdatePhase::Kind::relaunching:
        return "relaunching";
    }
    return "";
}

} // namespace korvane
