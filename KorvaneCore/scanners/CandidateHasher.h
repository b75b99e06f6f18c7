#pragma once

#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/platform/ContentFile.h"
#include "KorvaneCore/scanners/CandidateList.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace korvane {

/// What a candidate held, and which file it is.
struct HashedContent {
    Digest256 digest{};
    FileIdentity identity;
    std::uint64_t names = 0; ///< how many hard links the file has
};

/// Hashes the candidates of a list, all of their bytes, one file at a time in the list's order. The
/// next few files are already open and being fetched by the system meanwhile. Not shared between
/// threads.
class CandidateHasher {
  public:
    /// `list` must outlive the hasher.
    explicit CandidateHasher(const CandidateList& list);

    /// The content of the next candidate, as many times as the list is long. Nothing when it cannot
    /// be read, changed since it was listed, or the surrounding task was cancelled before its end.
    [[nodiscard]] std::optional<HashedContent> next();

  private:
    /// What a file with several names held, so that its content is read once.
    struct Known {
        ContentFile::State state;
        Digest256 digest{};
    };

    static constexpr std::size_t filesAhead = 16;

    void openAhead();
    [[nodiscard]] std::optional<Digest256> digest(ContentFile& file);
    [[nodiscard]] std::optional<Digest256> hash(ContentFile& file);

    const CandidateList& list_;
    CandidateOpener opener_;
    std::array<ContentFile, filesAhead> opened_; ///< candidate i at i modulo the length
    std::size_t nextToOpen_ = 0;
    std::size_t nextToHash_ = 0;
    std::vector<std::byte> chunk_;
    SHA256 sha256_;
    std::map<FileIdentity, Known> linked_;
};

} // namespace korvane
