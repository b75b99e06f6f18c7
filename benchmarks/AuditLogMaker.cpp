#include "benchmarks/AuditLogMaker.h"

#include "KorvaneCore/audit/AuditEntry.h"
#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/foundation/StateFile.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace korvane::benchmarks {

namespace {

constexpr std::uint64_t entriesADay = 1000;
constexpr std::int64_t firstDay = 1'700'006'400;
constexpr std::int64_t secondsADay = 86'400;
constexpr std::int64_t itemsAnEntry = 4;

AuditEntry makeEntry(std::uint64_t number) {
    AuditEntry entry;
    const auto day = static_cast<std::int64_t>(number / entriesADay);
    const auto second = static_cast<std::int64_t>(number % entriesADay);
    entry.timestamp = Date::fromUnixSeconds(firstDay + day * secondsADay + second * 60);
    entry.operationID = UUID::random();
    entry.scannerID = number % 3 == 0 ? "cache-cleaner" : "duplicate-finder";
    entry.itemCount = itemsAnEntry;
    entry.succeededCount = itemsAnEntry;
    entry.bytesReclaimed = static_cast<std::int64_t>(number % 977) * 4096;
    std::vector<RestorableItem> restorable;
    for (std::int64_t i = 0; i < itemsAnEntry; ++i) {
        const std::string name = fmt::format("item-{}-{}.data", number, i);
        const std::string path = "/home/ann/.cache/application/" + name;
        entry.paths.push_back(path);
        restorable.push_back({path, "/home/ann/.local/share/Trash/files/" + name});
    }
    entry.restorable = std::move(restorable);
    return entry;
}

} // namespace

void makeAuditLog(const FileURL& applicationSupport, std::uint64_t entries) {
    const FileURL folder = applicationSupport.appending("Korvane").appending("Audit");
    const FileURL secrets = applicationSupport.appending("Korvane").appending("Secrets").appending(
        AuditKeyStore::service);
    createDirectories(folder);
    createDirectories(secrets);
    Key256 key{};
    key.fill('k');
    writeFileAtomically(secrets.appending(AuditKeyStore::account),
                        std::string(key.begin(), key.end()));

    HMACSHA256 authenticator(key);
    std::optional<std::string> head;
    for (std::uint64_t first = 0; first < entries; first += entriesADay) {
        std::string lines;
        std::string day;
        for (std::uint64_t i = first; i < std::min(first + entriesADay, entries); ++i) {
            AuditEntry entry = makeEntry(i);
            entry.prevHash = head;
            entry.entryHash = entry.computeHash(authenticator);
            head = entry.entryHash;
            day = entry.timestamp.utcDay();
            lines += entry.encodeLine() + "\n";
        }
        writeFileAtomically(folder.appending("audit-" + day + ".jsonl"), lines);
    }
}

} // namespace korvane::benchmarks
