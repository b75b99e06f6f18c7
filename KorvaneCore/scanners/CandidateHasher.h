#pragma once

#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/scanners/CandidateReader.h"

#include <cstdint>
#include <map>
#include <optional>

namespace korvane {

/// What a candidate held, and which file it is.
struct HashedContent {
    Digest256 digest{};
    FileIdentity identity;
    std::uint64_t names = 0; ///< how many hard links the file has
};

/// Hashes the candidates of a list, all of their bytes, one file at a time in the list's order,
/// while the next ones are being read. Not shared between threads.
class CandidateHasher {
  public:
    /// `list` must outlive the hasher.
    explicit CandidateHasher(const CandidateList& list) : reader_(list) {}

    /// The content of the next candidate, as many times as the list is long. Nothing when it cannot
    /// be read, changed since it was listed, or the surrounding task was cancelled before its end.
    [[nodiscard]] std::optional<HashedContent> next();

  private:
    [[nodiscard]] std::optional<HashedContent> atEnd(const CandidateReader::Piece& piece);

    CandidateReader reader_;
    SHA256 sha256_;
    std::map<FileIdentity, Digest256> linked_; ///< of files with several names, read once
};

} // namespace korvane
