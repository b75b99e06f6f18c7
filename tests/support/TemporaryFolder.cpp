#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane::testing {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

FileURL makeUnique(const std::string& parent) {
    std::string path = parent + "/korvane-test-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) {
        fail(path);
    }
    return FileURL(fs::canonical(path).string());
}

void makeParents(const FileURL& url) {
    fs::create_directories(fs::path(url.path()).parent_path());
}

} // namespace

TemporaryFolder::TemporaryFolder() : url_(makeUnique(fs::temp_directory_path().string())) {}

TemporaryFolder::TemporaryFolder(const std::string& parent) : url_(makeUnique(parent)) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    // Tests take rights away; give them back so that everything goes.
    for (auto entry = fs::recursive_directory_iterator(
             url_.path(), fs::directory_options::skip_permission_denied, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(url_.path(), ignored);
}

FileURL TemporaryFolder::at(std::string_view name) const {
    return name.empty() ? url_ : FileURL(url_.path() + "/" + std::string(name));
}

FileURL TemporaryFolder::makeFolder(std::string_view name) const {
    FileURL url = at(name);
    fs::create_directories(url.path());
    return url;
}

FileURL TemporaryFolder::makeFile(std::string_view name, std::string_view content) const {
    FileURL url = at(name);
    makeParents(url);
    std::ofstream file(url.path(), std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) {
        fail(url.path());
    }
    return url;
}

FileURL TemporaryFolder::makeFileOfSize(std::string_view name, std::size_t bytes) const {
    return makeFile(name, std::string(bytes, 'k'));
}

FileURL TemporaryFolder::makeLink(std::string_view name, std::string_view target) const {
    FileURL url = at(name);
    makeParents(url);
    fs::create_symlink(fs::path(target), url.path());
    return url;
}

void TemporaryFolder::setModified(std::string_view name, double unixSeconds) const {
    const auto whole = static_cast<time_t>(unixSeconds);
    const timespec time{whole, static_cast<long>((unixSeconds - static_cast<double>(whole)) * 1e9)};
    const timespec times[2] = {time, time};
    if (utimensat(AT_FDCWD, at(name).path().c_str(), times, AT_SYMLINK_NOFOLLOW) != 0) {
        fail(at(name).path());
    }
}

bool TemporaryFolder::exists(std::string_view name) const {
    struct stat facts {};
    return lstat(at(name).path().c_str(), &facts) == 0;
}

std::string TemporaryFolder::content(std::string_view name) const {
    std::ifstream file(at(name).path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::listing(std::string_view name) const {
    std::vector<std::string> names;
    const std::string base = at(name).path();
    for (const auto& entry : fs::recursive_directory_iterator(base)) {
        std::string relative = entry.path().string().substr(base.size() + 1);
        if (entry.is_symlink()) {
            relative += "@";
        } else if (entry.is_directory()) {
            relative += "/";
        }
        names.push_back(std::move(relative));
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace korvane::testing
