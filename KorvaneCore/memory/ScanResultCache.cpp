#include "KorvaneCore/memory/ScanResultCache.h"

#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <exception>
#include <string>
#include <utility>

#include <unistd.h>

namespace korvane {

namespace {

bool isKept(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
}

/// True for the bytes of a UTF-8 character behind its first.
bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::string fileName(std::string_view scannerID) {
    std::string name;
    for (const char c : scannerID) {
        if (!isContinuation(c)) {
            name += isKept(c) ? c : '_';
        }
    }
    return name + ".json";
}

} // namespace

ScanResultCache::ScanResultCache(FileURL directory) : directory_(std::move(directory)) {
    try {
        createDirectories(directory_);
    } catch (const std::exception&) {
        // Without its folder the cache remembers nothing, and every scan is a first scan.
    }
}

void ScanResultCache::save(const ScanResult& result) {
    try {
        const std::string document = result.encode(DateForm::secondsSinceReferenceDate);
        const std::lock_guard guard(queue_);
        writeFileAtomically(fileURL(result.scannerID), document);
    } catch (const std::exception&) {
        // The next scan compares with an older result, or with none.
    }
}

std::optional<ScanResult> ScanResultCache::load(std::string_view scannerID) const {
    try {
        std::optional<std::string> document;
        {
            const std::lock_guard guard(queue_);
            document = readFile(fileURL(scannerID));
        }
        if (document) {
            return ScanResult::decode(*document);
        }
    } catch (const std::exception&) {
        // An entry that cannot be used is as good as none.
    }
    return std::nullopt;
}

void ScanResultCache::remove(std::string_view scannerID) {
    const std::lock_guard guard(queue_);
    unlink(fileURL(scannerID).path().c_str());
}

void ScanResultCache::removeAll() {
    const std::lock_guard guard(queue_);
    for (const std::string& name :
         namesInFolder(directory_.path()).value_or(std::vector<std::string>())) {
        const FileURL file = directory_.appending(name);
        if (file.pathExtension() == "json") {
            unlink(file.path().c_str());
        }
    }
}

FileURL ScanResultCache::fileURL(std::string_view scannerID) const {
    return directory_.appending(fileName(scannerID));
}

} // namespace korvane
