// Makes the data for comparisons with other programs: the same seed, the same data.

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/scan/ScanResult.h"
#include "benchmarks/AuditLogMaker.h"
#include "benchmarks/CopyMaker.h"
#include "benchmarks/TreeMaker.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <exception>
#include <span>

#include <sys/stat.h>

#include <fmt/format.h>

namespace {

using namespace korvane;

constexpr std::uint64_t seed = 20'261'114;

constexpr const char* usage =
    "usage: korvane-test-data tree FOLDER ENTRIES   a folder tree\n"
    "       korvane-test-data files FOLDER COUNT    a folder of files\n"
    "       korvane-test-data copies FOLDER COUNT   files of 16 KiB, 30 in 100 copies\n"
    "       korvane-test-data media FOLDER COUNT    the same of 64 MiB\n"
    "       korvane-test-data items FILE FOLDER     FOLDER's entries as a scan result\n"
    "       korvane-test-data log FOLDER ENTRIES    an audit log below FOLDER\n";

// A scan result that proposes everything directly in a folder.
void writeItems(const FileURL& file, const FileURL& folder) {
    const auto names = namesInFolder(folder.path());
    if (!names) {
        throw FileError(errno, "read", folder.path());
    }
    ScanResult result;
    result.scannerID = "cache-cleaner";
    for (const std::string& name : *names) {
        ScanItem item;
        item.url = folder.appending(name);
        item.sizeBytes = 4096;
        item.category = "Caches";
        item.heuristicID = "cache.user";
        struct stat facts {};
        item.isDirectory = lstat(item.path().c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
        result.items.push_back(std::move(item));
    }
    writeFileAtomically(file, result.encode(DateForm::iso8601));
}

int make(std::span<char*> arguments) {
    const std::string_view what = arguments.size() == 4 ? arguments[1] : "";
    if (what == "items") {
        writeItems(FileURL(arguments[2]), FileURL(arguments[3]));
        return 0;
    }
    const std::string_view text = what.empty() ? "" : arguments[3];
    std::uint64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || end != text.data() + text.size()) {
        fmt::print(stderr, "{}", usage);
        return 2;
    }
    if (what == "tree") {
        benchmarks::makeTree(arguments[2], count, seed);
    } else if (what == "files") {
        benchmarks::makeFiles(arguments[2], count);
    } else if (what == "copies") {
        benchmarks::makeCopies(arguments[2], count, 16'384);
    } else if (what == "media") {
        benchmarks::makeCopies(arguments[2], count, 67'108'864);
    } else if (what == "log") {
        benchmarks::makeAuditLog(FileURL(arguments[2]), count);
    } else {
        fmt::print(stderr, "{}", usage);
        return 2;
    }
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return make({arguments, static_cast<std::size_t>(count)});
    } catch (const std::exception& error) {
        fmt::print(stderr, "korvane-test-data: {}\n", localizedDescription(error));
        return 1;
    }
}
