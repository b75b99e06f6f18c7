#include "tests/audit/AuditFixture.h"

namespace korvane::testing {

class AuditChain : public AuditFixture {};

TEST_F(AuditChain, isEmptyWithoutAFolderOrEntries) {
    EXPECT_EQ(log.verifyChain(), AuditChainResult());
    EXPECT_FALSE(log.hasLogFiles());
    EXPECT_EQ(log.entries(), std::vector<AuditEntry>());
    EXPECT_FALSE(folder.exists("Korvane"));
    folder.makeFile("Korvane/Audit/audit-notes.txt");
    EXPECT_EQ(log.verifyChain(), AuditChainResult());
    EXPECT_TRUE(log.hasLogFiles());
}

TEST_F(AuditChain, breaksAtAnEntryWhoseFieldWasChanged) {
    record("/first");
    const UUID second = UUID::random();
    log.record("large-files", {"/kept", "/name"}, 3, 4096, second, {{"/kept", "/bin/kept"}},
               noon(14));
    record("/third");
    expectVerified(3);
    const std::vector<std::string> intact = lines();
    const std::pair<std::string, std::string> edits[] = {
        {"12:00:00Z", "12:00:01Z"},
        {"\"large-files\"", "\"old-files\""},
        {"\"itemCount\":5", "\"itemCount\":4"},
        {"\"succeededCount\":2", "\"succeededCount\":1"},
        {"\"failedCount\":3", "\"failedCount\":0"},
        {"\"bytesReclaimed\":4096", "\"bytesReclaimed\":40960"},
        {"\"/kept\",\"/name\"", "\"/kept\",\"/other\""},
        {"\"/kept\",\"/name\"", "\"/name\",\"/kept\""},
        {"\"original\":\"/kept\"", "\"original\":\"/\""},
        {"\"/bin/kept\"", "\"/etc/kept\""},
        {"\"restorable\":[{", "\"unknown\":[{"},
        {"\"prevHash\":\"", "\"prevHash\":\"0"},
        {"\"prevHash\"", "\"previous\""},
        {"\"entryHash\":\"", "\"entryHash\":\"0"},
        {"\"entryHash\"", "\"hash\""},
        {second.text().substr(0, 8), "00000000"},
    };
    for (const auto& [from, to] : edits) {
        std::vector<std::string> edited = intact;
        ASSERT_NE(edited[1].find(from), std::string::npos) << from;
        edited[1].replace(edited[1].find(from), from.size(), to);
        writeLines(edited);
        const AuditChainResult result = log.verifyChain();
        EXPECT_EQ(result.coverage, Coverage::broken) << from << " -> " << to;
        EXPECT_EQ(result.checkedCount, 1) << from << " -> " << to;
        const std::size_t id = edited[1].find("operationID") + 14;
        EXPECT_EQ(result.firstBrokenOperationID, UUID::fromText(edited[1].substr(id, 36))) << from;
    }
}

TEST_F(AuditChain, breaksBehindWhatWasTakenAwayOrMoved) {
    const UUID first = record("/first");
    const UUID second = record("/second");
    const UUID third = record("/third");
    const std::vector<std::string> all = lines();

    writeLines({all[1], all[2]});
    expectBrokenAt(second, 0);
    writeLines({all[0], all[2]});
    expectBrokenAt(third, 1);
    writeLines({all[0], all[2], all[1]});
    expectBrokenAt(third, 1);
    writeLines({all[0], all[1], all[1], all[2]});
    expectBrokenAt(second, 2);
    writeLines({all[1], all[0], all[2]});
    expectBrokenAt(second, 0);
    writeLines({all[0], "{ not an entry }", "", all[1], all[2]});
    expectVerified(3);
    writeLines({all[0], all[1].substr(0, 40) + "\xFF" + all[1].substr(41), all[2]});
    expectBrokenAt(third, 1);
    ASSERT_EQ(log.entries().size(), 2U);
    EXPECT_EQ(log.entries().back().operationID, first);
}

TEST_F(AuditChain, cannotAttestEntriesOlderThanChaining) {
    record("/chained");
    const std::string chained = lines()[0];
    const std::string old = chained.substr(0, chained.find(",\"entryHash\"")) + "}";
    const UUID id = log.entries()[0].operationID;
    writeLines({old, old});
    EXPECT_EQ(log.verifyChain(), (AuditChainResult{Coverage::unverifiable, 0, std::nullopt, 0}));
    record("/new");
    EXPECT_EQ(log.entries()[0].prevHash, std::nullopt);
    expectVerified(1);
    writeLines({lines()[2], old});
    expectBrokenAt(id, 1);
}

TEST_F(AuditChain, isVerifiedUnderTheRightKeyOnly) {
    const UUID first = record("/first");
    keys.setTestingKey(Key256{});
    expectBrokenAt(first, 0);
}

TEST_F(AuditChain, passesOneAcknowledgedBreak) {
    record("/first");
    record("/second");
    const UUID third = record("/third");
    const UUID fourth = record("/fourth");
    std::vector<std::string> all = lines();
    writeLines({all[0], all[2], all[3]});
    expectBrokenAt(third, 1);

    const std::string head = log.entries()[0].entryHash.value_or("none");
    const AuditEntry restart = log.recordChainRestart("deleted \xFF by hand", third);
    EXPECT_EQ(restart.chainRestart,
              (ChainRestart{"deleted \\xFF by hand", restart.timestamp, third, head}));
    EXPECT_EQ(restart.prevHash, head);
    expectVerified(4, 1);

    // Another break stays a break, and so does a change of the excused entry itself.
    const std::vector<std::string> restarted = lines();
    const std::string today = "audit-" + restart.timestamp.utcDay() + ".jsonl";
    writeLines({restarted[0], restarted[2]});
    expectBrokenAt(fourth, 1);
    writeLines({restarted[0], restarted[1], restarted[2]});
    edit("/third", "/thirt");
    expectBrokenAt(third, 1);
    writeLines({restarted[0], restarted[1], restarted[2]});
    expectVerified(4, 1);

    // An edited restart excuses nothing; a hard break behind does not hide the first one.
    const std::string file = "Korvane/Audit/" + today;
    std::string text = folder.content(file);
    folder.makeFile(file, text.replace(text.find("by hand"), 7, "by mind"));
    expectBrokenAt(third, 1);
}

TEST_F(AuditChain, countsARestartBehindAHardBreakForEarlierLinks) {
    record("/first");
    record("/second");
    const UUID third = record("/third");
    const UUID fourth = record("/fourth");
    const std::vector<std::string> all = lines();
    writeLines({all[0], all[2], all[3]});
    log.recordChainRestart("known", third);
    edit("/fourth", "/forth");
    expectBrokenAt(fourth, 2);
}

TEST_F(AuditChain, linksTheFirstEntryOfADayToTheDayBefore) {
    record("/a", 14);
    record("/b", 14);
    record("/c", 15);
    EXPECT_EQ(folder.listing("Korvane/Audit"),
              (std::vector<std::string>{"audit-2026-11-14.jsonl", "audit-2026-11-15.jsonl"}));
    EXPECT_EQ(log.entries()[0].prevHash, log.entries()[1].entryHash);
    expectVerified(3);
}

TEST_F(AuditChain, verifiesEntriesWithAFractionOfASecond) {
    // The last half second of a day must not end up in the next day's file.
    const Date late = noon(14).adding(43'199.75);
    log.record("trash", {"/a"}, 0, 1, UUID::random(), {}, late);
    expectVerified(1);
    EXPECT_TRUE(folder.exists(fileName(14)));
    EXPECT_EQ(log.entries()[0].timestamp.iso8601(), "2026-11-14T23:59:59Z");
}

} // namespace korvane::testing
