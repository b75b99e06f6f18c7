#include "Korvane/audit/AuditQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

AuditEntry entry(std::string scanner, std::vector<std::string> paths) {
    AuditEntry made;
    made.scannerID = std::move(scanner);
    made.paths = std::move(paths);
    return made;
}

TEST(AuditQuery, findsTextInPathsAndModuleNamesInAnyCaseAndComposition) {
    const std::vector<AuditEntry> log = {
        entry("browser-cache", {"/home/a/Library/Cache\u0301"}),
        entry("trash", {"/home/a/old"}),
        entry("made-up", {"/home/b/other", "/home/b/CACH\u00C9"}),
    };
    struct Row {
        AuditQuery query;
        std::vector<std::string> scanners;
    };
    const std::vector<Row> rows = {
        {{"", ""}, {"browser-cache", "trash", "made-up"}},
        {{"Cach\u00E9", ""}, {"browser-cache", "made-up"}},
        {{"bin", ""}, {"trash"}},
        {{"MADE-UP", ""}, {"made-up"}},
        {{"home", "trash"}, {"trash"}},
        {{"", "Trash"}, {}},
        {{"nowhere", ""}, {}},
    };
    for (const Row& row : rows) {
        std::vector<std::string> found;
        for (const AuditEntry& one : matchingEntries(log, row.query)) {
            found.push_back(one.scannerID);
        }
        EXPECT_EQ(found, row.scanners) << row.query.text << " in " << row.query.module;
    }
}

} // namespace
} // namespace korvane
