#include "Korvane/updater/AppBundle.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/platform/PropertyList.h"

#include <fcntl.h>

namespace korvane {

std::optional<AppBundle> AppBundle::at(const FileURL& location) {
    FileFacts facts;
    // A link could lead the checks and the copy to different places.
    if (readFacts(AT_FDCWD, location.path().c_str(), facts) != 0 ||
        facts.kind != DirectoryReader::Kind::folder) {
        return std::nullopt;
    }
    try {
        const auto document = readFile(location.appending("Contents/Info.plist"));
        if (!document) {
            return std::nullopt;
        }
        const auto texts = propertyListTexts(*document);
        const auto version = texts.find("CFBundleShortVersionString");
        return AppBundle{location, version == texts.end() ? "" : version->second};
    } catch (const FileError&) {
        return std::nullopt;
    }
}

std::optional<AppBundle> AppBundle::holding(const FileURL& executable) {
    FileURL folder = executable;
    while (folder.componentCount() > 2) {
        const bool isContents = folder.lastPathComponent() == "Contents";
        folder = folder.deletingLastPathComponent();
        if (isContents && folder.pathExtension() == "app") {
            return at(folder);
        }
    }
    return std::nullopt;
}

} // namespace korvane
