#pragma once

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/ContentFile.h"
#include "KorvaneCore/scanners/CandidateList.h"

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace korvane {

/// Reads the candidates of a list, one after another in its order, while whoever takes the pieces
/// works on those before: on a thread of its own, in a few blocks of memory, with the next files
/// open and being fetched by the system. Used by one thread.
class CandidateReader {
  public:
    /// Some bytes of a candidate, or its end.
    struct Piece {
        enum class Kind {
            bytes,    ///< the next ones
            end,      ///< all of them were there, and the file stood still meanwhile
            repeated, ///< an end without bytes: another name of a file that was read to its end
            failed,   ///< an end: it cannot be read, or changed since it was listed
        };
        Kind kind = Kind::failed;
        std::span<const std::byte> bytes;
        ContentFile::State state; ///< of all ends but failed ones
    };

    /// `list` must outlive the reader. Nothing is opened before the first piece is asked for.
    explicit CandidateReader(const CandidateList& list);
    /// Does not wait for more than the read under way.
    ~CandidateReader();
    CandidateReader(const CandidateReader&) = delete;
    CandidateReader& operator=(const CandidateReader&) = delete;

    /// The next piece, good until the next call; every candidate has one end. Null after the last
    /// one, or when the surrounding task is cancelled. Waits for the disk.
    [[nodiscard]] const Piece* next();

  private:
    struct Block {
        std::vector<std::byte> bytes;
        std::size_t used = 0;
        std::vector<Piece> pieces;
    };

    static constexpr std::size_t filesAhead = 16;
    static constexpr std::size_t blockCount = 3;

    void start();
    void readAll();
    [[nodiscard]] const Block* nextBlock();
    [[nodiscard]] bool fill(Block& block);
    void openAhead();
    [[nodiscard]] bool readOn(ContentFile& file, Block& block);
    [[nodiscard]] bool isKnown(const ContentFile& file) const;
    [[nodiscard]] Piece::Kind ending(const ContentFile& file);

    // The reading side's.
    const CandidateList& list_;
    CandidateOpener opener_;
    std::array<ContentFile, filesAhead> opened_; ///< candidate i at i modulo the length
    std::size_t nextToOpen_ = 0;
    std::size_t nextToRead_ = 0;
    std::int64_t bytesRead_ = 0;                            ///< of the file under way
    std::map<FileIdentity, ContentFile::State> linkedRead_; ///< files with several names

    // The taking side's.
    const Block* block_ = nullptr;
    std::size_t nextPiece_ = 0;
    bool isStarted_ = false;

    // Shared; block n is at n modulo the length.
    std::array<Block, blockCount> blocks_;
    std::mutex lock_;
    std::condition_variable changed_;
    std::size_t filled_ = 0;
    std::size_t taken_ = 0;
    bool isAtEnd_ = false;
    bool isStopped_ = false;

    std::optional<Task> task_; ///< last: ends before what it works with goes
};

} // namespace korvane
