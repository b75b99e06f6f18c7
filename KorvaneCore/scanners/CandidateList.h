#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/ContentFile.h"
#include "KorvaneCore/scan/FolderTrail.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <vector>

namespace korvane {

/// The regular files below a folder that are worth comparing, in the order of a depth-first walk in
/// byte order. Kept in three blocks of memory however many they are: paths are only made for those
/// that turn out to matter.
class CandidateList {
  public:
    struct Candidate {
        std::size_t name = 0; ///< where the name begins
        std::uint32_t folder = 0;
        std::int64_t sizeBytes = 0;
        std::timespec modified{};
    };

    /// Walks the folder (which may itself be a link to one). Hidden names, links, application and
    /// other bundles, and what cannot be read are passed over; files smaller than `minimumBytes`
    /// too. Empty when the surrounding task is cancelled meanwhile.
    CandidateList(const FileURL& root, std::int64_t minimumBytes);

    [[nodiscard]] std::size_t size() const noexcept { return candidates_.size(); }
    [[nodiscard]] const Candidate& operator[](std::size_t i) const noexcept {
        return candidates_[i];
    }
    [[nodiscard]] const char* name(const Candidate& candidate) const noexcept {
        return names_.data() + candidate.name;
    }
    [[nodiscard]] FileURL url(const Candidate& candidate) const;

  private:
    friend class CandidateOpener;
    class Walk;

    struct Folder {
        std::size_t name = 0;
        std::uint32_t parent = 0; ///< the root, number 0, is its own
    };

    std::size_t keepName(const char* name);

    FileURL root_;
    std::vector<char> names_; ///< each ends in a NUL
    std::vector<Folder> folders_;
    std::vector<Candidate> candidates_;
};

/// Opens candidates one after another, each by its name in its open folder. Going through them in
/// the list's order opens every folder about once, and never a link.
class CandidateOpener {
  public:
    /// `list` must outlive the opener.
    explicit CandidateOpener(const CandidateList& list);

    /// False when the file cannot be opened, or is no longer the file that was listed.
    [[nodiscard]] bool open(const CandidateList::Candidate& candidate, ContentFile& file);

  private:
    [[nodiscard]] bool goTo(std::uint32_t folder);

    const CandidateList& list_;
    FolderTrail trail_;
    std::vector<std::uint32_t> here_; ///< the folders of the trail, from the root down
    std::vector<std::uint32_t> way_;  ///< from the folder wanted up to the root
};

} // namespace korvane
