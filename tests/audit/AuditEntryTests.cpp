#include "KorvaneCore/audit/AuditEntry.h"
#include "KorvaneCore/audit/AuditEntryDecoder.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {

namespace {

Date date(std::string_view text) {
    return Date::fromISO8601(text).value_or(Date());
}

UUID uuid(std::string_view text) {
    return UUID::fromText(text).value_or(UUID());
}

AuditEntry fullEntry() {
    AuditEntry entry;
    entry.timestamp = date("2026-11-14T18:52:44Z");
    entry.operationID = uuid("0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0");
    entry.scannerID = "collector";
    entry.itemCount = 3;
    entry.succeededCount = 2;
    entry.failedCount = 1;
    entry.bytesReclaimed = 1234567890123;
    entry.paths = {"/Users/ann/Caches/a|b", "/Users/ann/é;>", "file:///home/x%FF"};
    entry.restorable = {{"/Users/ann/a", "/Users/ann/.Trash/a"},
                        {"/Users/ann/b", "/Users/ann/.Trash/b 2"}};
    for (int i = 0; i < 32; ++i) {
        entry.prevHash = entry.prevHash.value_or("") + "ab";
    }
    entry.chainRestart = ChainRestart{"restored a \"backup\"\n", date("2026-11-14T18:52:43Z"),
                                      uuid("00000000-0000-0000-0000-00000000000A"), std::nullopt};
    return entry;
}

const std::string plainLine =
    R"({"timestamp":"2026-11-14T18:52:44Z","operationID":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0",)"
    R"("scannerID":"trash","itemCount":1,"succeededCount":1,"failedCount":0,"bytesReclaimed":7,)"
    R"("paths":["/a"]})";

std::optional<AuditEntry> decoded(const std::string& line) {
    AuditEntry entry;
    return AuditEntryDecoder().decode(line, entry) ? std::optional(entry) : std::nullopt;
}

std::string replaced(std::string line, std::string_view from, std::string_view to) {
    return line.replace(line.find(from), from.size(), to);
}

} // namespace

// The expected code was computed with another implementation from the fields written out by hand.
TEST(AuditEntry, hashesItsCanonicalText) {
    HMACSHA256 authenticator([] {
        Key256 key{};
        key.fill(0x4B);
        return key;
    }());
    AuditEntry entry = fullEntry();
    const std::string hash = "ac4275530d123ca1ecdcbcbae8463750ac9dbf1cdac3af3854e534deb2ff56bc";
    EXPECT_EQ(entry.computeHash(authenticator), hash);
    entry.entryHash = "not part of it";
    entry.timestamp = entry.timestamp.adding(0.875);
    EXPECT_EQ(entry.computeHash(authenticator), hash);
}

TEST(AuditEntry, writesItsMembersInOrderAndLeavesAbsentOnesOut) {
    AuditEntry entry = fullEntry();
    entry.entryHash = "ef";
    EXPECT_EQ(
        entry.encodeLine(),
        R"({"timestamp":"2026-11-14T18:52:44Z","operationID":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0",)"
        R"("scannerID":"collector","itemCount":3,"succeededCount":2,"failedCount":1,)"
        R"("bytesReclaimed":1234567890123,)"
        R"("paths":["/Users/ann/Caches/a|b","/Users/ann/é;>","file:///home/x%FF"],)"
        R"("restorable":[{"original":"/Users/ann/a","trashed":"/Users/ann/.Trash/a"},)"
        R"({"original":"/Users/ann/b","trashed":"/Users/ann/.Trash/b 2"}],)"
        R"("prevHash":")" +
            entry.prevHash.value_or("") +
            R"(","entryHash":"ef","chainRestart":{"reason":"restored a \"backup\"\n",)"
            R"("recordedAt":"2026-11-14T18:52:43Z",)"
            R"("acknowledgedOperationID":"00000000-0000-0000-0000-00000000000A"}})");

    AuditEntry plain;
    ASSERT_TRUE(AuditEntryDecoder().decode(plainLine, plain));
    EXPECT_EQ(plain.encodeLine(), plainLine);
}

TEST(AuditEntryDecoder, readsOtherSpellingsOfTheSameEntry) {
    const auto plain = decoded(plainLine);
    ASSERT_TRUE(plain.has_value());
    const std::pair<const char*, std::string> spellings[] = {
        {"blanks and a carriage return", " " + replaced(plainLine, ":1,", " : 1 ,\t") + " \r"},
        {"another order",
         replaced(replaced(plainLine, R"("itemCount":1,)", ""), "{", R"({"itemCount":1,)")},
        {"an unknown key",
         replaced(plainLine, "{", R"({"more":[{"paths":[1,[]]},null],"more":2,)")},
        {"an escaped key", replaced(plainLine, "\"paths\"", R"("p\u0061ths")")},
        {"a lower-case id", replaced(plainLine, "0F1E2D3C", "0f1e2d3c")},
        {"null where a key may be absent",
         replaced(plainLine, "]}",
                  R"(],"restorable":null,"prevHash":null,"entryHash":null,"chainRestart":null})")},
    };
    for (const auto& [name, line] : spellings) {
        EXPECT_EQ(decoded(line), plain) << name;
    }
    EXPECT_EQ(decoded(replaced(plainLine, "\"/a\"", R"("/a\u0000\u001f\/\ud83d\ude00")"))
                  .value_or(AuditEntry())
                  .paths,
              std::vector<std::string>{std::string("/a\0\x1F/😀", 9)});
}

TEST(AuditEntryDecoder, refusesWhatIsNoEntry) {
    const std::pair<const char*, std::string> lines[] = {
        {"a known key twice", replaced(plainLine, "{", R"({"itemCount":1,)")},
        {"a known key twice, once escaped", replaced(plainLine, "{", R"({"p\u0061ths":["/b"],)")},
        {"null and the key again",
         replaced(plainLine, "]}", R"(],"prevHash":null,"prevHash":"a"})")},
        {"a key missing", replaced(plainLine, R"("failedCount":0,)", "")},
        {"null for a required key", replaced(plainLine, R"(["/a"])", "null")},
        {"a number as text", replaced(plainLine, ":1,", R"(:"1",)")},
        {"a fraction", replaced(plainLine, ":1,", ":1.0,")},
        {"a number too large", replaced(plainLine, ":1,", ":9223372036854775808,")},
        {"true for a number", replaced(plainLine, ":1,", ":true,")},
        {"a number for text", replaced(plainLine, R"("trash")", "1")},
        {"text for a list", replaced(plainLine, R"(["/a"])", R"("/a")")},
        {"a number in the list", replaced(plainLine, R"(["/a"])", R"(["/a",2])")},
        {"a fraction of a second", replaced(plainLine, "44Z", "44.5Z")},
        {"no such day", replaced(plainLine, "11-14", "11-31")},
        {"no UUID", replaced(plainLine, "0F1E2D3C", "0F1E2D3G")},
        {"bytes that are not UTF-8", replaced(plainLine, "/a", "/\xFF")},
        {"half a surrogate pair", replaced(plainLine, "/a", R"(/\ud83d)")},
        {"a bare control character", replaced(plainLine, "/a", std::string("/\0", 2))},
        {"something behind the object", plainLine + "{}"},
        {"cut short", plainLine.substr(0, plainLine.size() - 1)},
        {"cut short in a text", plainLine.substr(0, plainLine.size() - 3)},
        {"a list", "[" + plainLine + "]"},
        {"nothing but blanks", "  "},
        {"a restorable item without its place",
         replaced(plainLine, "]}", R"(],"restorable":[{"original":"/a"}]})")},
        {"a restart without its entry",
         replaced(plainLine, "]}",
                  R"(],"chainRestart":{"reason":"","recordedAt":"2026-11-14T18:52:43Z"}})")},
    };
    for (const auto& [name, line] : lines) {
        EXPECT_EQ(decoded(line), std::nullopt) << name;
    }
}

RC_GTEST_PROP(AuditEntryDecoder, readsBackWhatWasWrittenLineAfterLine, ()) {
    // One decoder and one entry for all lines: nothing of an earlier line may show in a later one.
    AuditEntryDecoder decoder;
    AuditEntry read;
    const auto text = [] { // ASCII with control characters
        return *rc::gen::container<std::string>(rc::gen::inRange<char>(0, 127));
    };
    const auto optionalText = [&] {
        return *rc::gen::arbitrary<bool>() ? std::optional(text()) : std::nullopt;
    };
    for (int line = 0; line < 4; ++line) {
        AuditEntry entry = fullEntry();
        entry.scannerID = text();
        entry.bytesReclaimed = *rc::gen::arbitrary<std::int64_t>();
        entry.paths.assign(*rc::gen::inRange<std::size_t>(0, 4), text());
        entry.prevHash = optionalText();
        entry.entryHash = optionalText();
        if (*rc::gen::arbitrary<bool>()) {
            entry.restorable.reset();
        }
        if (*rc::gen::arbitrary<bool>()) {
            entry.chainRestart.reset();
        } else {
            entry.chainRestart = ChainRestart{text(), entry.timestamp, UUID(), optionalText()};
        }
        RC_ASSERT(decoder.decode(entry.encodeLine(), read));
        RC_ASSERT(read == entry);
    }
}

} // namespace korvane
