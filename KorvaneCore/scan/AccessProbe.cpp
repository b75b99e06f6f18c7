#include "KorvaneCore/scan/AccessProbe.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace korvane {

namespace {

/// errno when something is there and cannot be read, else 0.
int readingError(const FileURL& url) {
    FileFacts facts;
    if (readFacts(AT_FDCWD, url.path().c_str(), facts) != 0) {
        return 0;
    }
    if (facts.kind == DirectoryReader::Kind::folder) {
        return openFolder(AT_FDCWD, url.path().c_str()) ? 0 : errno;
    }
    return facts.kind != DirectoryReader::Kind::file || access(url.path().c_str(), R_OK) == 0
               ? 0
               : errno;
}

} // namespace

std::vector<AccessProblem> probeAccess(const FileURL& home) {
    std::vector<AccessProblem> problems;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        for (const FileURL& url : row->places(home)) {
            if (const int error = readingError(url); error != 0) {
                problems.push_back({std::string(row->id), url, errorText(error)});
            }
        }
    }
    return problems;
}

} // namespace korvane
