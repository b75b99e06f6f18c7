#include "KorvaneCore/scanners/LinuxRulePreset.h"

#include <array>
#include <string_view>

namespace korvane {

namespace {

struct Row {
    std::string_view id;
    std::string_view name;
    std::string_view path;
    HeuristicRisk risk = HeuristicRisk::medium;
    std::string_view note;
    bool enumerateChildren = false;
};

using enum HeuristicRisk;

constexpr std::string_view pagesNote =
    "Pages, pictures and scripts that the browser fetches again. Bookmarks, passwords, history and "
    "open tabs are kept elsewhere and are not touched. Close the browser first.";
constexpr std::string_view editorNote =
    "What the editor fetched or compiled for its own window. It makes it again on its next start; "
    "settings, extensions and your files are kept elsewhere.";
constexpr std::string_view chatNote =
    "Pictures and attachments that the app fetched from its servers. They are fetched again when "
    "you look at them; messages and settings are not touched.";

constexpr std::array rows{
    Row{"linux.user-cache", "User caches", "~/.cache", low,
        "Programs keep here what they can make or fetch again. Removing it never destroys settings "
        "or documents; the next start may take longer.",
        true},
    Row{"linux.thumbnails", "Thumbnails", "~/.cache/thumbnails", low,
        "Small previews of your pictures and documents. The file manager draws them again when you "
        "open a folder; the originals are not touched."},
    Row{"linux.mesa-shaders", "Graphics caches", "~/.cache/mesa_shader_cache", low,
        "Compiled graphics programs. The driver compiles them again when a game or app next runs."},
    Row{"linux.nvidia-shaders", "Graphics caches", "~/.cache/nvidia", low,
        "Compiled graphics programs. The driver compiles them again when a game or app next runs."},

    Row{"linux.firefox.cache", "Browser · Firefox", "~/.cache/mozilla/firefox/*/cache2", low,
        pagesNote},
    Row{"linux.firefox.startup", "Browser · Firefox", "~/.cache/mozilla/firefox/*/startupCache",
        low, pagesNote},
    Row{"linux.firefox-snap.cache", "Browser · Firefox",
        "~/snap/firefox/common/.cache/mozilla/firefox/*/cache2", low, pagesNote},
    Row{"linux.chrome.cache", "Browser · Chrome", "~/.cache/google-chrome/*/Cache", low, pagesNote},
    Row{"linux.chrome.code-cache", "Browser · Chrome", "~/.cache/google-chrome/*/Code Cache", low,
        pagesNote},
    Row{"linux.chrome.service-worker", "Browser · Chrome",
        "~/.config/google-chrome/*/Service Worker/CacheStorage", medium,
        "What web apps keep so that they work without a network. They fetch it again, but until "
        "then they do not open offline."},
    Row{"linux.chromium.cache", "Browser · Chromium", "~/.cache/chromium/*/Cache", low, pagesNote},
    Row{"linux.chromium.code-cache", "Browser · Chromium", "~/.cache/chromium/*/Code Cache", low,
        pagesNote},
    Row{"linux.brave.cache", "Browser · Brave", "~/.cache/BraveSoftware/Brave-Browser/*/Cache", low,
        pagesNote},
    Row{"linux.brave.code-cache", "Browser · Brave",
        "~/.cache/BraveSoftware/Brave-Browser/*/Code Cache", low, pagesNote},
    Row{"linux.edge.cache", "Browser · Edge", "~/.cache/microsoft-edge/*/Cache", low, pagesNote},
    Row{"linux.vivaldi.cache", "Browser · Vivaldi", "~/.cache/vivaldi/*/Cache", low, pagesNote},
    Row{"linux.opera.cache", "Browser · Opera", "~/.cache/opera/*/Cache", low, pagesNote},

    Row{"linux.pip", "Packages · Python", "~/.cache/pip", low,
        "Packages that pip fetched. It fetches them again when they are next installed; installed "
        "packages are not touched."},
    Row{"linux.uv", "Packages · Python", "~/.cache/uv", medium,
        "Packages that uv fetched. Environments that were linked to this folder instead of copied "
        "stop working until they are made again."},
    Row{"linux.poetry-cache", "Packages · Python", "~/.cache/pypoetry/cache", low,
        "Packages that Poetry fetched. It fetches them again; environments are not touched."},
    Row{"linux.poetry-artifacts", "Packages · Python", "~/.cache/pypoetry/artifacts", low,
        "Packages that Poetry fetched. It fetches them again; environments are not touched."},
    Row{"linux.poetry-environments", "Packages · Python", "~/.cache/pypoetry/virtualenvs", high,
        "The environments in which your Python projects run. Poetry makes them again from the lock "
        "file, but what was installed by hand is lost."},
    Row{"linux.yarn", "Packages · Node", "~/.cache/yarn", low,
        "Packages that Yarn fetched. It fetches them again on the next install."},
    Row{"linux.pnpm", "Packages · Node", "~/.cache/pnpm", low,
        "Package descriptions that pnpm fetched. It fetches them again on the next install."},
    Row{"linux.node-gyp", "Packages · Node", "~/.cache/node-gyp", low,
        "Headers for building native modules. They are fetched again for the next build."},
    Row{"linux.playwright", "Packages · Node", "~/.cache/ms-playwright", medium,
        "Browsers for automatic tests. Tests fail until they are installed again, several hundred "
        "megabytes each."},
    Row{"linux.cypress", "Packages · Node", "~/.cache/Cypress", medium,
        "The test runner itself. Tests fail until it is installed again."},
    Row{"linux.electron", "Packages · Node", "~/.cache/electron", low,
        "Runtimes fetched for building desktop apps. They are fetched again for the next build."},
    Row{"linux.composer", "Packages · PHP", "~/.cache/composer", low,
        "Packages that Composer fetched. It fetches them again on the next install."},
    Row{"linux.flatpak", "Packages · Flatpak", "~/.cache/flatpak", low,
        "What Flatpak fetched while it worked. Installed apps are not touched."},
    Row{"linux.flatpak-apps", "Packages · Flatpak", "~/.var/app/*/cache", low,
        "Caches of apps installed with Flatpak. The apps make them again; close them first.", true},

    Row{"linux.go-build", "Languages · Go", "~/.cache/go-build", low,
        "Compiled packages. Go compiles them again on the next build."},
    Row{"linux.cargo-sources", "Languages · Rust", "~/.cargo/registry/src", low,
        "Unpacked sources of crates. Cargo unpacks or fetches them again on the next build."},
    Row{"linux.ccache", "Languages · C and C++", "~/.cache/ccache", medium,
        "Compiled objects. Nothing is lost, but the next builds compile everything again."},
    Row{"linux.ccache-old", "Languages · C and C++", "~/.ccache", medium,
        "Compiled objects. Nothing is lost, but the next builds compile everything again. Settings "
        "in ccache.conf inside this folder go with it."},
    Row{"linux.bazel", "Languages · Bazel", "~/.cache/bazel", medium,
        "Build products and fetched tools. Bazel makes and fetches them again, which can take "
        "hours in a large project."},
    Row{"linux.deno", "Languages · Deno", "~/.cache/deno", low,
        "Modules that Deno fetched and compiled. It fetches them again on the next run."},

    Row{"linux.vscode.cache", "Editors · VS Code", "~/.config/Code/Cache", low, editorNote},
    Row{"linux.vscode.cached-data", "Editors · VS Code", "~/.config/Code/CachedData", low,
        editorNote},
    Row{"linux.vscode.extensions", "Editors · VS Code", "~/.config/Code/CachedExtensionVSIXs", low,
        "Packages of extensions that are installed already. They are only used to go back to an "
        "earlier version."},
    Row{"linux.vscodium.cache", "Editors · VSCodium", "~/.config/VSCodium/Cache", low, editorNote},
    Row{"linux.vscodium.cached-data", "Editors · VSCodium", "~/.config/VSCodium/CachedData", low,
        editorNote},
    Row{"linux.cursor.cache", "Editors · Cursor", "~/.config/Cursor/Cache", low, editorNote},
    Row{"linux.cursor.cached-data", "Editors · Cursor", "~/.config/Cursor/CachedData", low,
        editorNote},
    Row{"linux.jetbrains", "Editors · JetBrains", "~/.cache/JetBrains/*", high,
        "Indexes, which the editor builds again, but also its local history: earlier states of "
        "your files that are kept nowhere else. Better cleared inside the editor."},

    Row{"linux.slack.cache", "Chat · Slack", "~/.config/Slack/Cache", low, chatNote},
    Row{"linux.discord.cache", "Chat · Discord", "~/.config/discord/Cache", low, chatNote},
    Row{"linux.teams.cache", "Chat · Microsoft Teams", "~/.config/Microsoft/Microsoft Teams/Cache",
        low, chatNote},
    Row{"linux.spotify.cache", "Media · Spotify", "~/.cache/spotify/Storage", low,
        "Songs that were streamed. They are fetched again when you listen to them; songs that you "
        "downloaded for listening offline are fetched again too."},
};

} // namespace

std::vector<CustomRule> linuxRulePreset() {
    std::vector<CustomRule> rules;
    rules.reserve(rows.size());
    for (const Row& row : rows) {
        rules.push_back({.id = std::string(row.id),
                         .name = std::string(row.name),
                         .path = std::string(row.path),
                         .note = std::string(row.note),
                         .risk = row.risk,
                         .enumerateChildren = row.enumerateChildren});
    }
    return rules;
}

} // namespace korvane
