#include "KorvaneCore/platform/linux/LinuxSoftwareInventory.h"

#include "KorvaneCore/platform/ApplicationBundles.h"
#include "KorvaneCore/platform/SteamLibrary.h"
#include "KorvaneCore/platform/linux/DesktopEntry.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace korvane {

namespace {

constexpr std::string_view desktopExtension = ".desktop";

/// The folders that a variable lists, separated by colons; relative ones are to be ignored.
std::vector<FileURL> foldersFromEnvironment(const char* variable) {
    // The program sets no variable after its start, so reading one is safe on any thread.
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    std::vector<FileURL> folders;
    std::string_view rest = value == nullptr ? std::string_view() : value;
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        if (folder.starts_with('/')) {
            folders.emplace_back(std::string(folder));
        }
    }
    return folders;
}

/// Adds desktop entries and the packages behind them. The first entry of an identifier stands for
/// the application, as desktops have it; the others still lend it their names.
class EntryCollector {
  public:
    EntryCollector(FoldersRead& foldersRead, SoftwareListing& listing)
        : foldersRead_(foldersRead), listing_(listing) {}

    void addEntries(const FileURL& folder, const std::string& prefix) {
        for (const std::string& name : namesForInventory(folder, foldersRead_, listing_)) {
            const FileURL url = folder.appending(name);
            if (name.ends_with(desktopExtension)) {
                addEntry(url, prefix + name.substr(0, name.size() - desktopExtension.size()));
            } else if (isFolderThere(url)) {
                addEntries(url, prefix + name + "-");
            }
        }
    }

    void addPackages(const FileURL& folder) {
        for (const std::string& name : namesForInventory(folder, foldersRead_, listing_)) {
            const FileURL url = folder.appending(name);
            // "bin" holds the commands of all snaps.
            if (name != "bin" && isFolderThere(url) && known_.insert(name).second) {
                listing_.applications.push_back(
                    {.identifier = name, .name = name, .location = url});
            }
        }
    }

  private:
    void addEntry(const FileURL& url, const std::string& identifier) {
        DesktopEntry entry = parseDesktopEntry(readForInventory(url, listing_).value_or(""));
        std::string name = entry.name.empty() ? identifier : entry.name;
        known_.insert(identifier);
        known_.insert(entry.aliases.begin(), entry.aliases.end());
        const auto [place, isFirst] =
            indexes_.try_emplace(identifier, listing_.applications.size());
        if (!isFirst) {
            auto& aliases = listing_.applications[place->second].aliases;
            aliases.push_back(std::move(name));
            std::move(entry.aliases.begin(), entry.aliases.end(), std::back_inserter(aliases));
            return;
        }
        listing_.applications.push_back({.kind = entry.isPackaged
                                                     ? InstalledApplication::Kind::managed
                                                     : InstalledApplication::Kind::desktopEntry,
                                         .identifier = identifier,
                                         .name = std::move(name),
                                         .location = url,
                                         .aliases = std::move(entry.aliases)});
    }

    FoldersRead& foldersRead_;
    SoftwareListing& listing_;
    std::unordered_map<std::string, std::size_t> indexes_; ///< of an identifier's application
    std::unordered_set<std::string> known_;                ///< identifiers and aliases, exact bytes
};

} // namespace

LinuxSoftwareRoots LinuxSoftwareRoots::standard(const FileURL& home) {
    std::vector<FileURL> data = foldersFromEnvironment("XDG_DATA_HOME");
    data.push_back(home.appending(".local/share"));
    data.push_back(home.appending(".local/share/flatpak/exports/share"));
    // A shortened environment, as under sudo, does not uninstall anything: the usual folders are
    // read whatever it says.
    std::vector<FileURL> shared = foldersFromEnvironment("XDG_DATA_DIRS");
    std::move(shared.begin(), shared.end(), std::back_inserter(data));
    for (const char* folder :
         {"/usr/local/share", "/usr/share", "/var/lib/flatpak/exports/share"}) {
        data.emplace_back(folder);
    }
    LinuxSoftwareRoots roots;
    for (const FileURL& folder : data) {
        roots.desktopEntries.push_back(folder.appending("applications"));
    }
    roots.desktopEntries.emplace_back("/var/lib/snapd/desktop/applications");
    roots.packages = {home.appending(".local/share/flatpak/app"), FileURL("/var/lib/flatpak/app"),
                      FileURL("/snap"), FileURL("/var/lib/snapd/snap")};
    roots.applications = {home.appending("Applications"), FileURL("/Applications"),
                          FileURL("/System/Applications")};
    for (const char* folder :
         {".steam/steam", ".steam/root", ".local/share/Steam",
          ".var/app/com.valvesoftware.Steam/.local/share/Steam",
          ".var/app/com.valvesoftware.Steam/data/Steam", "snap/steam/common/.local/share/Steam",
          "Library/Application Support/Steam"}) {
        roots.steam.push_back(home.appending(folder));
    }
    return roots;
}

LinuxSoftwareInventory::LinuxSoftwareInventory(LinuxSoftwareRoots roots)
    : roots_(std::move(roots)) {}

SoftwareListing LinuxSoftwareInventory::read() const {
    SoftwareListing listing;
    FoldersRead foldersRead;
    EntryCollector entries(foldersRead, listing);
    for (const FileURL& folder : roots_.desktopEntries) {
        entries.addEntries(folder, "");
    }
    for (const FileURL& folder : roots_.packages) {
        entries.addPackages(folder);
    }
    for (const FileURL& folder : roots_.applications) {
        addApplicationsIn(folder, foldersRead, listing);
    }
    for (const FileURL& folder : roots_.steam) {
        addSteamGames(folder, foldersRead, listing);
    }
    return listing;
}

std::shared_ptr<const SoftwareInventory> SoftwareInventory::standard(const FileURL& home) {
    return std::make_shared<LinuxSoftwareInventory>(LinuxSoftwareRoots::standard(home));
}

} // namespace korvane
