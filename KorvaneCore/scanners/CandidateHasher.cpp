#include "KorvaneCore/scanners/CandidateHasher.h"

#include "KorvaneCore/foundation/Task.h"

#include <algorithm>
#include <span>

namespace korvane {

namespace {

constexpr std::size_t chunkSize = 1'048'576;
// Enough to keep a disk busy while the processor hashes what came before.
constexpr std::int64_t bytesAhead = 4'194'304;

} // namespace

CandidateHasher::CandidateHasher(const CandidateList& list)
    : list_(list), opener_(list), chunk_(chunkSize) {}

std::optional<HashedContent> CandidateHasher::next() {
    openAhead();
    ContentFile& file = opened_.at(nextToHash_++ % filesAhead);
    std::optional<HashedContent> result;
    if (file) {
        if (const auto found = digest(file)) {
            result = {*found, file.state().identity, file.state().names};
        }
        file.close();
    }
    return result;
}

void CandidateHasher::openAhead() {
    for (; nextToOpen_ < std::min(nextToHash_ + filesAhead, list_.size()); ++nextToOpen_) {
        ContentFile& file = opened_.at(nextToOpen_ % filesAhead);
        if (opener_.open(list_[nextToOpen_], file)) {
            file.readAhead(bytesAhead);
        }
    }
}

std::optional<Digest256> CandidateHasher::digest(ContentFile& file) {
    if (file.state().names < 2) {
        return hash(file);
    }
    const auto known = linked_.find(file.state().identity);
    if (known != linked_.end() && known->second.state == file.state()) {
        return known->second.digest;
    }
    const std::optional<Digest256> result = hash(file);
    if (result) {
        linked_[file.state().identity] = {file.state(), *result};
    }
    return result;
}

std::optional<Digest256> CandidateHasher::hash(ContentFile& file) {
    std::int64_t total = 0;
    while (!Task::isCancelled()) {
        const std::int64_t count = file.read(chunk_);
        if (count > 0) {
            total += count;
            sha256_.update(std::span(chunk_).first(static_cast<std::size_t>(count)));
            continue;
        }
        // Also empties the context for the next file.
        const Digest256 result = sha256_.finish();
        if (count < 0 || total != file.state().sizeBytes || !file.isUnchanged()) {
            return std::nullopt;
        }
        return result;
    }
    static_cast<void>(sha256_.finish());
    return std::nullopt;
}

} // namespace korvane
