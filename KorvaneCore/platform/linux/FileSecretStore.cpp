#include "KorvaneCore/platform/linux/FileSecretStore.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr mode_t othersRights = S_IRWXG | S_IRWXO;

SecretReading unavailable(const FileURL& file, std::string_view reason) {
    return {SecretReading::Outcome::unavailable, "",
            fmt::format("Could not read {}: {}", displayText(file.path()), reason)};
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

/// The rest of an open file; nothing with `errno` set when it cannot be read.
std::optional<std::string> readToEnd(int descriptor) {
    std::string content;
    std::array<char, 4096> block{};
    while (true) {
        const ssize_t got = read(descriptor, block.data(), block.size());
        if (got == 0) {
            return content;
        }
        if (got > 0) {
            content.append(block.data(), static_cast<std::size_t>(got));
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

/// Takes the rights of others away from a folder of the user's own.
void closeToOthers(const FileURL& folder) {
    struct stat facts {};
    const FileDescriptor descriptor(
        open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (descriptor && fstat(descriptor.get(), &facts) == 0 && facts.st_uid == geteuid() &&
        (facts.st_mode & othersRights) != 0) {
        // Best effort: the secret's own file is closed in any case.
        static_cast<void>(fchmod(descriptor.get(), facts.st_mode & S_IRWXU));
    }
}

} // namespace

std::optional<FileURL> FileSecretStore::fileOf(std::string_view service,
                                               std::string_view account) const {
    if (!isPlainName(service) || !isPlainName(account)) {
        return std::nullopt;
    }
    return root_.appending(service).appending(account);
}

SecretReading FileSecretStore::read(std::string_view service, std::string_view account) {
    const auto file = fileOf(service, account);
    if (!file) {
        return {SecretReading::Outcome::unavailable, "", "The name of a secret is not valid."};
    }
    const FileDescriptor descriptor(
        open(file->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor) {
        const int error = errno;
        return error == ENOENT ? SecretReading{} : unavailable(*file, errorText(error));
    }
    struct stat facts {};
    if (fstat(descriptor.get(), &facts) != 0) {
        return unavailable(*file, errorText(errno));
    }
    if (!S_ISREG(facts.st_mode)) {
        return unavailable(*file, "It is not a file.");
    }
    if (facts.st_uid != geteuid() && geteuid() != 0) {
        return unavailable(*file, "It belongs to another user.");
    }
    if ((facts.st_mode & othersRights) != 0 &&
        fchmod(descriptor.get(), facts.st_mode & (S_IRUSR | S_IWUSR)) != 0) {
        return unavailable(*file, errorText(errno));
    }
    auto content = readToEnd(descriptor.get());
    if (!content) {
        return unavailable(*file, errorText(errno));
    }
    return {SecretReading::Outcome::found, std::move(*content), ""};
}

bool FileSecretStore::store(std::string_view service, std::string_view account,
                            std::string_view data) {
    const auto file = fileOf(service, account);
    if (!file) {
        return false;
    }
    try {
        const FileURL folder = root_.appending(service);
        createDirectories(folder);
        closeToOthers(root_);
        closeToOthers(folder);
        writeFileAtomically(*file, data);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

} // namespace korvane
