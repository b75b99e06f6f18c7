#include "KorvaneCore/scanners/ChosenFolder.h"

#include "KorvaneCore/platform/FolderFacts.h"

#include <fcntl.h>

namespace korvane {

ChosenFolder::ChosenFolder(const FileURL& chosen) : chosen_(chosen.standardized()), real_(chosen_) {
    FileFacts facts;
    if (readFacts(AT_FDCWD, chosen_.path().c_str(), facts) == 0 &&
        facts.kind == DirectoryReader::Kind::link) {
        real_ = chosen_.resolvingSymlinks();
    }
}

FileURL ChosenFolder::shown(const FileURL& found) const {
    if (real_ == chosen_) {
        return found;
    }
    const std::size_t above = real_.path() == "/" ? 0 : real_.path().size();
    return FileURL(chosen_.path() + found.path().substr(above));
}

} // namespace korvane
