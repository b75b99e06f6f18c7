#include "tests/updater/ReleaseArchive.h"

#include "KorvaneCore/foundation/Hashing.h"

#include <cstdio>
#include <cstring>
#include <set>
#include <span>

namespace korvane::testing {

namespace {

constexpr const char* signature = "Contents/_CodeSignature/manifest";

void writeOctal(std::string& header, std::size_t offset, std::size_t width, std::size_t value) {
    std::string digits(width, '\0');
    std::snprintf(digits.data(), width, "%0*zo", static_cast<int>(width - 1), value);
    header.replace(offset, width, digits);
}

std::string header(const ArchiveEntry& entry) {
    std::string block(512, '\0');
    block.replace(0, entry.path.size(), entry.path);
    writeOctal(block, 100, 8, static_cast<std::size_t>(entry.mode));
    writeOctal(block, 108, 8, 0);
    writeOctal(block, 116, 8, 0);
    writeOctal(block, 124, 12, entry.content.size());
    writeOctal(block, 136, 12, 0);
    block.replace(148, 8, 8, ' ');
    block[156] = entry.type;
    block.replace(157, entry.target.size(), entry.target);
    block.replace(257, 8, std::string("ustar\00000", 8));
    std::size_t sum = 0;
    for (const char c : block) {
        sum += static_cast<unsigned char>(c);
    }
    writeOctal(block, 148, 7, sum);
    return block;
}

} // namespace

std::string tarArchive(const std::vector<ArchiveEntry>& entries) {
    std::string archive;
    for (const ArchiveEntry& entry : entries) {
        archive += header(entry) + entry.content;
        archive.append((512 - entry.content.size() % 512) % 512, '\0');
    }
    return archive + std::string(1024, '\0');
}

ReleaseArchive::ReleaseArchive(const std::string& version) {
    files["Contents/Info.plist"] =
        "<plist><dict><key>CFBundleExecutable</key><string>korvane</string>"
        "<key>CFBundleShortVersionString</key><string>" +
        version + "</string></dict></plist>";
    files["Contents/Linux/bin/korvane"] = "#!/bin/sh\necho " + version + "\n";
}

std::string ReleaseArchive::manifest() const {
    std::string text;
    for (const auto& [path, content] : files) {
        SHA256 hash;
        hash.update(std::as_bytes(std::span(content)));
        text += hexText(hash.finish()) + "  " + path + "\n";
    }
    return text;
}

void ReleaseArchive::sign(const Credential& signer) {
    const std::string text = manifest();
    files[signature] = text;
    files[std::string(signature) + ".cms"] = signedMessage(text, signer);
}

std::vector<ArchiveEntry> ReleaseArchive::entries() const {
    std::vector<ArchiveEntry> list{{"Korvane.app/", "", '5', "", 0755}};
    std::set<std::string> folders;
    for (const auto& [path, content] : files) {
        for (std::size_t slash = path.find('/'); slash != std::string::npos;
             slash = path.find('/', slash + 1)) {
            if (folders.insert(path.substr(0, slash)).second) {
                list.push_back({"Korvane.app/" + path.substr(0, slash) + "/", "", '5', "", 0755});
            }
        }
        const bool isProgram = path.find("/bin/") != std::string::npos;
        list.push_back({"Korvane.app/" + path, content, '0', "", isProgram ? 0755 : 0644});
    }
    return list;
}

} // namespace korvane::testing
