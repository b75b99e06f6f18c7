#include "KorvaneCore/platform/ApplicationBundles.h"

#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/PropertyList.h"

#include <array>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

// "Applications/Vendor/Suite/Name.app" and a little to spare.
constexpr int deepestFolder = 4;

std::string extensionOf(const FileURL& url) {
    return composedLowercase(url.pathExtension());
}

/// A file name without its last extension.
std::string stem(std::string_view fileName) {
    return std::string(fileName.substr(0, fileName.rfind('.')));
}

class ApplicationFinder {
  public:
    ApplicationFinder(FoldersRead& foldersRead, SoftwareListing& listing)
        : foldersRead_(foldersRead), listing_(listing) {}

    void find(const FileURL& folder, int depth) {
        for (const std::string& name : namesForInventory(folder, foldersRead_, listing_)) {
            const FileURL url = folder.appending(name);
            const std::string extension = extensionOf(url);
            if (extension == "app") {
                addBundle(url);
            } else if (extension == "appimage") {
                addAppImage(url);
            } else if (depth < deepestFolder && !name.starts_with('.') && isFolderThere(url)) {
                find(url, depth + 1);
            }
        }
    }

  private:
    using Texts = std::map<std::string, std::string>;

    [[nodiscard]] Texts description(const FileURL& bundle) {
        // The usual place, and that of applications made for other devices.
        for (const std::string_view place :
             {"Contents/Info.plist", "WrappedBundle/Info.plist", "Info.plist"}) {
            if (const auto content = readForInventory(bundle.appending(place), listing_)) {
                return propertyListTexts(*content);
            }
        }
        return {};
    }

    void addBundle(const FileURL& url) {
        InstalledApplication application{.kind = InstalledApplication::Kind::bundle,
                                         .location = url};
        Texts texts = description(url);
        application.identifier = texts["CFBundleIdentifier"];
        application.name = stem(url.lastPathComponent());
        application.executable = texts["CFBundleExecutable"];
        for (const char* key : {"CFBundleName", "CFBundleDisplayName", "CFBundleExecutable"}) {
            if (!texts[key].empty()) {
                application.aliases.push_back(texts[key]);
            }
        }
        addHelpers(url, application);
        listing_.applications.push_back(std::move(application));
    }

    /// What comes inside a bundle keeps data under identifiers of its own.
    void addHelpers(const FileURL& bundle, InstalledApplication& application) {
        for (const std::string_view place :
             {"Contents/PlugIns", "Contents/XPCServices", "Contents/Library/LoginItems",
              "Contents/Applications", "Contents/Helpers", "Contents/Library/LaunchServices"}) {
            const FileURL folder = bundle.appending(place);
            for (const std::string& name : namesForInventory(folder, foldersRead_, listing_)) {
                const std::string identifier =
                    description(folder.appending(name))["CFBundleIdentifier"];
                application.aliases.push_back(identifier.empty() ? stem(name) : identifier);
            }
        }
    }

    void addAppImage(const FileURL& url) {
        InstalledApplication application{.kind = InstalledApplication::Kind::appImage,
                                         .location = url};
        const std::string whole = stem(url.lastPathComponent());
        // "Name-1.2.3-x86_64" is "Name" to people.
        const std::string name = whole.substr(0, whole.find_first_of("-_"));
        application.name = name.empty() ? whole : name;
        application.aliases.push_back(whole);
        listing_.applications.push_back(std::move(application));
    }

    FoldersRead& foldersRead_;
    SoftwareListing& listing_;
};

} // namespace

void addApplicationsIn(const FileURL& folder, FoldersRead& foldersRead, SoftwareListing& listing) {
    ApplicationFinder(foldersRead, listing).find(folder, 0);
}

} // namespace korvane
