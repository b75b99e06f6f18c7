#include "Korvane/updater/FileDigest.h"

#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/ContentFile.h"

#include <cerrno>
#include <span>
#include <vector>

#include <fcntl.h>

namespace korvane {

Digest256 fileDigest(const FileURL& file) {
    constexpr std::size_t bufferBytes = 256UL * 1024UL;
    ContentFile content;
    if (!content.open(AT_FDCWD, file.path().c_str())) {
        throw FileError(EIO, "read", file.path());
    }
    SHA256 hash;
    std::vector<std::byte> buffer(bufferBytes);
    while (true) {
        const std::int64_t count = content.read(buffer);
        if (count < 0) {
            throw FileError(EIO, "read", file.path());
        }
        if (count == 0) {
            return hash.finish();
        }
        if (Task::isCancelled()) {
            throw UpdateError(UpdateSentences::cancelled);
        }
        hash.update(std::span(buffer).first(static_cast<std::size_t>(count)));
    }
}

} // namespace korvane
