#pragma once

#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "tests/support/FakeSecretStore.h"
#include "tests/support/TemporaryFolder.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace korvane::testing {

/// A log in a temporary folder under a key of its own.
class AuditFixture : public ::testing::Test {
  protected:
    using Coverage = AuditChainResult::Coverage;

    AuditFixture() : keys(secrets), log(folder.at("Korvane/Audit"), keys) {
        Key256 key{};
        key.fill(0x4B);
        keys.setTestingKey(key);
    }

    /// Records one operation of that path, at 12:00 UTC of a day of November 2026.
    UUID record(std::string path, int day = 14) {
        const UUID id = UUID::random();
        log.record("trash", {std::move(path)}, 0, 7, id, {}, noon(day));
        return id;
    }

    static Date noon(int day) {
        return Date::fromUnixSeconds(1'793'534'400).adding((day - 1) * 86'400.0);
    }

    static std::string fileName(int day) {
        return "Korvane/Audit/audit-2026-11-" + std::to_string(day) + ".jsonl";
    }

    /// The lines of a day's file, without their line feeds.
    [[nodiscard]] std::vector<std::string> lines(int day = 14) const {
        std::vector<std::string> lines;
        std::istringstream text(folder.content(fileName(day)));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    void writeLines(const std::vector<std::string>& lines, int day = 14) const {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        folder.makeFile(fileName(day), text);
    }

    /// Replaces the first occurrence in a day's file, as an editor would.
    void edit(std::string_view from, std::string_view to, int day = 14) const {
        std::string text = folder.content(fileName(day));
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        folder.makeFile(fileName(day), text.replace(at, from.size(), to));
    }

    void expectVerified(std::int64_t count, std::int64_t restarts = 0) const {
        EXPECT_EQ(log.verifyChain(),
                  (AuditChainResult{Coverage::verified, count, std::nullopt, restarts}));
    }

    void expectBrokenAt(const UUID& id, std::int64_t checkedBefore) const {
        EXPECT_EQ(log.verifyChain(), (AuditChainResult{Coverage::broken, checkedBefore, id, 0}));
    }

    TemporaryFolder folder;
    FakeSecretStore secrets;
    AuditKeyStore keys;
    AuditLog log;
};

} // namespace korvane::testing
