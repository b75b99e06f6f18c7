#pragma once

#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/HeldPlace.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

class Elevation;
class ExclusionStore;
class PathListFile;
class SafetyGuard;

/// Removes for good, with administrator rights, what the user's own rights do not reach. The same
/// protected paths and the same guard hold as in a cleanup. Removing is left to the system's own
/// program, which goes by path: so the path must be one that nobody else can lead elsewhere, the
/// places are held from the moment they were screened, and all of it is asked again when the prompt
/// was answered. What remains is the instant between that last look and the removal, in which a
/// program of the same user can still exchange a folder that the user owns.
class PrivilegedRemover {
  public:
    /// An item that was never passed to the administrator delete.
    struct Refusal {
        FileURL url;
        CleanupFailure::Kind kind = CleanupFailure::Kind::other;
        std::string message; ///< shown to the user

        friend bool operator==(const Refusal&, const Refusal&) = default;
    };

    struct Accepted {
        FileURL url;
        HeldPlace place;
    };

    /// What may be passed on, and what not. Holds the places of what may.
    struct Screening {
        std::vector<Refusal> refusals;
        std::vector<Accepted> accepted;
    };

    struct Result {
        std::vector<Refusal> refusals;
        std::vector<FileURL> survivors; ///< passed on, and still there afterwards
        std::vector<FileURL> removed;   ///< passed on, there before, and gone
        bool requested = false;         ///< something was passed on
        /// The command ran; false: the request ended early, or there was none.
        bool completed = false;

        friend bool operator==(const Result&, const Result&) = default;
    };

    /// `exclusions` and `elevation` must outlive the remover. The guard is built for `home` at each
    /// screening; `temporaryFolder` takes the list of paths while the request runs.
    PrivilegedRemover(const ExclusionStore& exclusions, FileURL home, FileURL temporaryFolder,
                      Elevation& elevation)
        : exclusions_(exclusions), home_(std::move(home)),
          temporaryFolder_(std::move(temporaryFolder)), elevation_(elevation) {}

    /// Judges each item, in order. Touches nothing; never throws.
    [[nodiscard]] Screening screen(std::span<const FileURL> urls) const;

    /// Asks the user through the system, and removes what was accepted and still would be by then.
    /// Blocks meanwhile; one removal at a time. Never throws: every problem is a refusal, a
    /// survivor or a request that ended early.
    [[nodiscard]] Result remove(Screening screening) const;
    [[nodiscard]] Result remove(std::span<const FileURL> urls) const {
        return remove(screen(urls));
    }

  private:
    [[nodiscard]] static std::optional<Refusal>
    judge(const FileURL& url, const ExclusionStore& exclusions, const SafetyGuard& guard);
    void screenAgain(Screening& screening) const;
    [[nodiscard]] bool lastLook(Screening& screening, const PathListFile& list) const;

    const ExclusionStore& exclusions_;
    FileURL home_;
    FileURL temporaryFolder_;
    Elevation& elevation_;
};

/// What the user is told about the outcome as a whole; nothing when all went well or nothing was
/// passed on.
[[nodiscard]] std::optional<std::string_view>
notice(const PrivilegedRemover::Result& result) noexcept;

} // namespace korvane
