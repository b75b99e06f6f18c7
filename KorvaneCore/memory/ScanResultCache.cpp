#include "KorvaneCore/memory/ScanResultCache.h"

#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <algorithm>
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

/// Hears a result being read and keeps its figures only.
class SummaryReader : public Json::json_sax_t {
  public:
    [[nodiscard]] std::optional<ScanSummary> summary() const {
        return isValid_ && hasID_ && hasDate_ ? std::optional(summary_) : std::nullopt;
    }

    bool start_object(std::size_t /*elements*/) override {
        if (depth_ == 2 && inItems_) {
            ++summary_.itemCount;
        }
        ++depth_;
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*elements*/) override {
        ++depth_;
        return depth_ > 1;
    }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        if (depth_ == 1) {
            inItems_ = name == "items";
            isDate_ = name == "finishedAt";
            isID_ = name == "scannerID";
        }
        isSize_ = inItems_ && depth_ == 3 && name == "sizeBytes";
        return true;
    }
    bool string(string_t& text) override {
        if (depth_ == 1 && isID_) {
            summary_.scannerID = std::move(text);
            hasID_ = true;
        } else if (depth_ == 1 && isDate_) {
            date(text);
        }
        return true;
    }
    bool number_unsigned(number_unsigned_t number) override {
        return number_integer(static_cast<number_integer_t>(number));
    }
    bool number_integer(number_integer_t number) override {
        if (isSize_) {
            return !__builtin_add_overflow(summary_.totalBytes, number, &summary_.totalBytes);
        }
        if (depth_ == 1 && isDate_) {
            date(number);
        }
        return true;
    }
    bool number_float(number_float_t number, const string_t& /*text*/) override {
        if (depth_ == 1 && isDate_) {
            date(number);
        }
        return true;
    }
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return false; }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        isValid_ = false;
        return false;
    }

  private:
    bool close() {
        --depth_;
        return true;
    }
    void date(const Json& value) {
        summary_.finishedAt = decodeDate(value, "finishedAt");
        hasDate_ = true;
    }

    ScanSummary summary_;
    int depth_ = 0;
    bool inItems_ = false;
    bool isDate_ = false;
    bool isID_ = false;
    bool isSize_ = false;
    bool hasID_ = false;
    bool hasDate_ = false;
    bool isValid_ = true;
};

std::optional<ScanSummary> summaryOf(const std::string& document) {
    SummaryReader reader;
    return Json::sax_parse(document, &reader) ? reader.summary() : std::nullopt;
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
    for (const FileURL& file : files()) {
        unlink(file.path().c_str());
    }
}

bool ScanResultCache::has(std::string_view scannerID) const {
    const std::lock_guard serial(queue_);
    return access(fileURL(scannerID).path().c_str(), F_OK) == 0;
}

std::vector<ScanSummary> ScanResultCache::summaries() const {
    std::vector<ScanSummary> found;
    std::vector<FileURL> all;
    {
        const std::lock_guard guard(queue_);
        all = files();
    }
    for (const FileURL& file : all) {
        try {
            std::optional<std::string> document;
            if (!Task::isCancelled()) {
                const std::lock_guard guard(queue_);
                document = readFile(file);
            }
            auto summary = document ? summaryOf(*document) : std::nullopt;
            // A file that was copied about speaks for nobody.
            if (summary && fileURL(summary->scannerID) == file) {
                found.push_back(*std::move(summary));
            }
        } catch (const std::exception&) {
            // An entry that cannot be used is as good as none.
        }
    }
    std::sort(found.begin(), found.end(), [](const ScanSummary& a, const ScanSummary& b) {
        return a.finishedAt != b.finishedAt ? a.finishedAt > b.finishedAt
                                            : a.scannerID < b.scannerID;
    });
    return found;
}

std::vector<FileURL> ScanResultCache::files() const {
    std::vector<FileURL> all;
    for (const std::string& name :
         namesInFolder(directory_.path()).value_or(std::vector<std::string>())) {
        FileURL file = directory_.appending(name);
        if (file.pathExtension() == "json") {
            all.push_back(std::move(file));
        }
    }
    return all;
}

FileURL ScanResultCache::fileURL(std::string_view scannerID) const {
    return directory_.appending(fileName(scannerID));
}

} // namespace korvane
