#include "KorvaneCore/scanners/CandidateReader.h"

#include <algorithm>
#include <chrono>
#include <system_error>

namespace korvane {

namespace {

constexpr std::size_t blockSize = 1'048'576;
// Less is not worth a call of its own for a file that goes on.
constexpr std::int64_t leastRead = 65'536;
// Enough to keep a disk busy while the processor works on what came before.
constexpr std::int64_t bytesAhead = 4'194'304;
// A block of many small files on a slow disk is handed on before it is full.
constexpr std::chrono::milliseconds patience{20};

} // namespace

CandidateReader::CandidateReader(const CandidateList& list) : list_(list), opener_(list) {}

CandidateReader::~CandidateReader() {
    const std::lock_guard guard(lock_);
    isStopped_ = true;
    changed_.notify_all();
}

const CandidateReader::Piece* CandidateReader::next() {
    if (!isStarted_) {
        isStarted_ = true;
        start();
    }
    while (block_ == nullptr || nextPiece_ == block_->pieces.size()) {
        block_ = nextBlock();
        nextPiece_ = 0;
        if (block_ == nullptr) {
            return nullptr;
        }
    }
    return &block_->pieces[nextPiece_++];
}

void CandidateReader::start() {
    for (Block& block : blocks_) {
        block.bytes.resize(blockSize);
    }
    try {
        task_.emplace([this] { readAll(); });
    } catch (const std::system_error&) {
        // Out of threads: a block is read when it is asked for.
    }
}

const CandidateReader::Block* CandidateReader::nextBlock() {
    if (!task_) {
        if (isAtEnd_) {
            return nullptr;
        }
        isAtEnd_ = !fill(blocks_.front());
        return &blocks_.front();
    }
    std::unique_lock guard(lock_);
    if (block_ != nullptr) {
        ++taken_;
        changed_.notify_all();
    }
    changed_.wait(guard, [&] { return filled_ > taken_ || isAtEnd_; });
    if (filled_ > taken_) {
        return &blocks_.at(taken_ % blockCount);
    }
    guard.unlock();
    task_->wait(); // throws what ended the reading early
    return nullptr;
}

void CandidateReader::readAll() {
    const auto finish = [&] {
        const std::lock_guard guard(lock_);
        isAtEnd_ = true;
        changed_.notify_all();
    };
    try {
        bool goesOn = true;
        while (goesOn) {
            std::unique_lock guard(lock_);
            changed_.wait(guard, [&] { return filled_ - taken_ < blockCount || isStopped_; });
            if (isStopped_) {
                break;
            }
            Block& block = blocks_.at(filled_ % blockCount);
            guard.unlock();
            goesOn = fill(block);
            guard.lock();
            ++filled_;
            changed_.notify_all();
        }
    } catch (...) {
        finish();
        throw;
    }
    finish();
}

/// False when it was the last block.
bool CandidateReader::fill(Block& block) {
    block.used = 0;
    block.pieces.clear();
    const auto start = std::chrono::steady_clock::now();
    while (nextToRead_ < list_.size() && !Task::isCancelled()) {
        openAhead();
        ContentFile& file = opened_.at(nextToRead_ % filesAhead);
        if (!readOn(file, block)) {
            return true;
        }
        file.close();
        bytesRead_ = 0;
        ++nextToRead_;
        if (std::chrono::steady_clock::now() - start > patience) {
            return true;
        }
    }
    return false;
}

void CandidateReader::openAhead() {
    for (; nextToOpen_ < std::min(nextToRead_ + filesAhead, list_.size()); ++nextToOpen_) {
        ContentFile& file = opened_.at(nextToOpen_ % filesAhead);
        if (opener_.open(list_[nextToOpen_], file)) {
            file.readAhead(bytesAhead);
        }
    }
}

/// Reads the file under way to its end, or to that of the block: false then.
bool CandidateReader::readOn(ContentFile& file, Block& block) {
    const std::int64_t size = file.state().sizeBytes;
    while (file && bytesRead_ < size && !isKnown(file)) {
        const std::span<std::byte> room = std::span(block.bytes).subspan(block.used);
        if (static_cast<std::int64_t>(room.size()) < std::min(size - bytesRead_, leastRead)) {
            return false;
        }
        const std::int64_t count = Task::isCancelled() ? -1 : file.read(room);
        if (count <= 0) {
            break;
        }
        const auto bytes = static_cast<std::size_t>(count);
        block.pieces.push_back({Piece::Kind::bytes, room.first(bytes), {}});
        block.used += bytes;
        bytesRead_ += count;
    }
    const Piece::Kind kind = ending(file);
    block.pieces.push_back({kind, {}, file.state()});
    return true;
}

bool CandidateReader::isKnown(const ContentFile& file) const {
    if (file.state().names < 2) {
        return false;
    }
    const auto known = linkedRead_.find(file.state().identity);
    return known != linkedRead_.end() && known->second == file.state();
}

CandidateReader::Piece::Kind CandidateReader::ending(const ContentFile& file) {
    if (!file) {
        return Piece::Kind::failed;
    }
    if (isKnown(file)) {
        return Piece::Kind::repeated;
    }
    if (bytesRead_ != file.state().sizeBytes || !file.isUnchanged()) {
        return Piece::Kind::failed;
    }
    if (file.state().names > 1) {
        linkedRead_[file.state().identity] = file.state();
    }
    return Piece::Kind::end;
}

} // namespace korvane
