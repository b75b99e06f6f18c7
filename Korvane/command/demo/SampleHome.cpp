#include "Korvane/command/demo/SampleHome.h"

#include "Korvane/command/demo/SamplePictures.h"
#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"

#include <array>
#include <cerrno>
#include <random>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr int daySeconds = 86'400;

/// Writes into the sample home; every random choice comes from one seed.
class Builder {
  public:
    explicit Builder(FileURL home) : home_(std::move(home)) {}

    void file(const std::string& name, std::string_view content, int daysOld = 3) {
        const FileURL url = home_.appending(name);
        createDirectories(url.deletingLastPathComponent());
        const FileDescriptor descriptor(
            open(url.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        if (!descriptor) {
            throw FileError(errno, "write", url.path());
        }
        writeAll(descriptor.get(), content, url.path());
        age(name, daysOld);
    }

    void noise(const std::string& name, std::size_t bytes, int daysOld = 3) {
        file(name, bytesOf(bytes), daysOld);
    }

    void noiseFiles(const std::string& folder, std::string_view pattern, int count,
                    std::size_t bytes) {
        for (int i = 0; i < count; ++i) {
            std::uniform_int_distribution<std::size_t> size(bytes / 4, bytes);
            noise(fmt::format("{}/{}", folder, fmt::format(fmt::runtime(pattern), i)),
                  size(random_));
        }
    }

    void link(const std::string& name, const std::string& target) {
        const FileURL url = home_.appending(name);
        createDirectories(url.deletingLastPathComponent());
        if (symlink(target.c_str(), url.path().c_str()) != 0) {
            throw FileError(errno, "make the link", url.path());
        }
    }

    void folder(const std::string& name) { createDirectories(home_.appending(name)); }

    void picture(const std::string& name, const SamplePicture& picture) {
        const FileURL url = home_.appending(name);
        createDirectories(url.deletingLastPathComponent());
        writeSamplePicture(url, picture);
    }

    std::string bytesOf(std::size_t count) {
        std::string bytes(count, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random_() & 0xFFU);
        }
        return bytes;
    }

    void age(const std::string& name, int daysOld) {
        const FileURL url = home_.appending(name);
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const timespec then{now.tv_sec - static_cast<time_t>(daysOld) * daySeconds, 0};
        const std::array<timespec, 2> times = {then, then};
        if (utimensat(AT_FDCWD, url.path().c_str(), times.data(), 0) != 0) {
            throw FileError(errno, "set the date of", url.path());
        }
    }

  private:
    FileURL home_;
    std::mt19937_64 random_{20261114};
};

void layOutBrowsers(Builder& home) {
    const std::string support = "Library/Application Support/";
    home.noiseFiles("Library/Caches/com.apple.Safari/WebKitCache", "record-{}", 6, 200'000);
    const std::array<std::string, 6> chromiumRoots = {
        support + "Google/Chrome",           support + "BraveSoftware/Brave-Browser",
        support + "Arc/User Data",           support + "Microsoft Edge",
        support + "com.operasoftware.Opera", support + "Vivaldi"};
    for (const std::string& root : chromiumRoots) {
        home.noiseFiles(root + "/Default/Cache/Cache_Data", "f_{:06}", 5, 160'000);
        home.noiseFiles(root + "/Default/Code Cache/js", "index-{}", 3, 60'000);
        home.noiseFiles(root + "/Default/GPUCache", "data_{}", 2, 40'000);
        home.noise(root + "/Default/Bookmarks", 900);
        home.noise(root + "/Default/Login Data", 4'000);
    }
    const std::string chrome = support + "Google/Chrome/";
    home.noiseFiles(chrome + "Default/Service Worker/CacheStorage", "cache-{}", 3, 90'000);
    home.noiseFiles(chrome + "Profile 2/Cache/Cache_Data", "f_{:06}", 8, 220'000);
    home.noise(chrome + "Profile 2/History", 12'000);
    home.noiseFiles(chrome + "Guest Profile/Cache", "f_{:06}", 2, 10'000);
    home.folder(chrome + "Profile 2/GPUCache");
    for (const std::string profile : {"ab12cd34.default-release", "zx98yw76.work"}) {
        const std::string folder = support + "Firefox/Profiles/" + profile;
        home.noiseFiles(folder + "/cache2/entries", "E{:04X}", 6, 150'000);
        home.noiseFiles(folder + "/startupCache", "startup-{}.lz4", 2, 50'000);
        home.noise(folder + "/places.sqlite", 30'000);
    }
}

void layOutCaches(Builder& home) {
    for (const std::string name : {"com.example.notes", "com.example.mail", "org.example.player",
                                   "Homebrew", "go-build", "pip"}) {
        home.noiseFiles("Library/Caches/" + name, "blob-{}", 5, 90'000);
    }
    home.noiseFiles("Library/Logs/Example", "run-{}.log", 5, 30'000);
    home.noiseFiles("Library/Logs/DiagnosticReports", "crash-{}.ips", 3, 20'000);
    home.noiseFiles(".cache/thumbnails/large", "{:032x}.png", 10, 12'000);
    home.noiseFiles(".gradle/caches/modules", "module-{}.jar", 4, 200'000);
}

void layOutDeveloper(Builder& home) {
    home.noiseFiles("Library/Developer/Xcode/DerivedData/Weather-aaaa/Build", "object-{}.o", 6,
                    120'000);
    home.noiseFiles("Projects/site/node_modules/left-pad", "index-{}.js", 8, 9'000);
    home.noiseFiles("Projects/site/node_modules/left-pad/node_modules/deep", "index-{}.js", 4,
                    4'000);
    home.noiseFiles("Projects/model/.venv/lib/python3.11/site-packages", "module_{}.py", 10, 6'000);
    home.file("Projects/site/package.json", "{\"name\":\"site\",\"private\":true}\n");
    home.file("Projects/model/train.py", "print('the work itself')\n");
}

void layOutDocuments(Builder& home) {
    home.file("Documents/Letter.txt", "Dear reader,\nthis must never be touched.\n");
    home.file(".ssh/id_ed25519", "not a real key\n");
    home.file(".gnupg/pubring.kbx", "not a real keyring\n");
    home.link("Documents/shortcut to the keys", "../.ssh");
    const std::string report = home.bytesOf(400'000);
    for (const std::string name : {"report.pdf", "report (1).pdf", "old/report final.pdf"}) {
        home.file("Downloads/" + name, report, 20);
    }
    home.noise("Downloads/installer.dmg", 1'500'000, 120);
    home.noiseFiles("Downloads", "photo-{}.zip", 4, 150'000);
    home.noise("Desktop/Screenshot 2026-01-07 at 09.41.00.png", 300'000, 45);
    home.noise("Desktop/Screenshot of today.png", 200'000, 0);
    home.noise("Library/Application Support/org.example.forgotten/store.db", 250'000, 400);
    home.age("Library/Application Support/org.example.forgotten", 400);
    for (std::uint32_t scene = 1; scene <= 4; ++scene) {
        const std::string name = fmt::format("Pictures/Walk {}/IMG_{}", scene, scene);
        home.picture(name + ".jpg", {scene, 640, 0, 90});
        home.picture(name + " edited.jpg", {scene, 640, 8, 80});
        home.picture(name + " small.jpg", {scene, 320, 0, 70});
    }
}

/// Names that break programs which believe that a name is text, a line or an option.
void layOutHostileNames(Builder& home) {
    const std::string cache = "Library/Application Support/Vivaldi/Default/Cache/";
    home.noise(cache + "-rf", 3'000);
    home.noise(cache + "two\nlines", 3'000);
    home.noise(cache + "not utf-8 \xFF\xFE", 3'000);
    home.noise(cache + "$(touch gotcha); `id` *?[]", 3'000);
    home.noise(cache + "e\xCC\x81 and \xC3\xA9", 3'000);
    home.noise(cache + "right to left \xE2\x80\xAE"
                       "gpj.exe",
               3'000);
    home.noise(cache + std::string(255, 'n'), 3'000);
    home.link(cache + "link to my documents", "../../../../../Documents");
    home.noise("Library/Application Support/Google/Chrome/Profile \xFF\n3/Cache/data", 5'000);
}

} // namespace

void layOutSampleHome(const FileURL& home) {
    Builder builder(home);
    layOutBrowsers(builder);
    layOutCaches(builder);
    layOutDeveloper(builder);
    layOutDocuments(builder);
    layOutHostileNames(builder);
}

} // namespace korvane
