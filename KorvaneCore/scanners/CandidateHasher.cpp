#include "KorvaneCore/scanners/CandidateHasher.h"

#include "KorvaneCore/foundation/Task.h"

namespace korvane {

using Kind = CandidateReader::Piece::Kind;

std::optional<HashedContent> CandidateHasher::next() {
    while (!Task::isCancelled()) {
        const CandidateReader::Piece* piece = reader_.next();
        if (piece == nullptr) {
            break;
        }
        if (piece->kind != Kind::bytes) {
            return atEnd(*piece);
        }
        sha256_.update(piece->bytes);
    }
    return std::nullopt;
}

std::optional<HashedContent> CandidateHasher::atEnd(const CandidateReader::Piece& piece) {
    // Also empties the context for the next file.
    Digest256 digest = sha256_.finish();
    const ContentFile::State& file = piece.state;
    if (piece.kind == Kind::failed) {
        return std::nullopt;
    }
    if (piece.kind == Kind::repeated) {
        digest = linked_.at(file.identity);
    } else if (file.names > 1) {
        linked_[file.identity] = digest;
    }
    return HashedContent{digest, file.identity, file.names};
}

} // namespace korvane
