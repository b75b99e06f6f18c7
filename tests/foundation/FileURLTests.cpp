#include "KorvaneCore/foundation/FileURL.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using ::testing::AnyOf;
using testing::TemporaryFolder;

TEST(FileURL, takesAPathApart) {
    struct Row {
        const char* path;
        std::vector<std::string> components;
        const char* last;
        const char* extension;
        const char* parent;
        const char* standardized;
    };
    const Row rows[] = {
        {"/", {"/"}, "/", "", "/", "/"},
        {"", {}, "", "", "", ""},
        {"/a", {"/", "a"}, "a", "", "/", "/a"},
        {"/a/b.txt/", {"/", "a", "b.txt"}, "b.txt", "txt", "/a", "/a/b.txt"},
        {"//a//b", {"/", "a", "b"}, "b", "", "//a/", "/a/b"},
        {"/a/../b", {"/", "a", "..", "b"}, "b", "", "/a/..", "/b"},
        {"/../../a/.", {"/", "..", "..", "a", "."}, ".", "", "/../../a", "/a"},
        {"/a/b/../..", {"/", "a", "b", "..", ".."}, "..", "", "/a/b/..", "/"},
        {"a/../../b", {"a", "..", "..", "b"}, "b", "", "a/../..", "../b"},
        {"a/..", {"a", ".."}, "..", "", "a", ""},
        {"./a", {".", "a"}, "a", "", ".", "a"},
        {"/a/...", {"/", "a", "..."}, "...", "", "/a", "/a/..."},
        {"/a/..b", {"/", "a", "..b"}, "..b", "b", "/a", "/a/..b"},
        {"/.bashrc", {"/", ".bashrc"}, ".bashrc", "", "/", "/.bashrc"},
        {"/.a.tar.gz", {"/", ".a.tar.gz"}, ".a.tar.gz", "gz", "/", "/.a.tar.gz"},
        {"/a.b/name", {"/", "a.b", "name"}, "name", "", "/a.b", "/a.b/name"},
        {"/name.", {"/", "name."}, "name.", "", "/", "/name."},
        {"/a/\xFF.\xFE", {"/", "a", "\xFF.\xFE"}, "\xFF.\xFE", "\xFE", "/a", "/a/\xFF.\xFE"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        const FileURL url(row.path);
        EXPECT_EQ(url.pathComponents(), row.components);
        EXPECT_EQ(url.componentCount(), row.components.size());
        EXPECT_EQ(url.lastPathComponent(), row.last);
        EXPECT_EQ(url.pathExtension(), row.extension);
        EXPECT_EQ(url.deletingLastPathComponent(), FileURL(row.parent));
        EXPECT_EQ(url.standardized().path(), row.standardized);
        EXPECT_EQ(url.standardized().standardized(), url.standardized());
        const std::set<std::string> names(row.components.begin(), row.components.end());
        EXPECT_EQ(url.hasParentTraversal(), names.contains(".."));
    }
}

TEST(FileURL, neverKeepsATrailingSlash) {
    for (const char* path : {"/a/link/", "/a/link///", "/a/link"}) {
        EXPECT_EQ(FileURL(path).path(), "/a/link");
    }
    EXPECT_EQ(FileURL("///").path(), "/");
    EXPECT_EQ(FileURL("/").appending("a/").path(), "/a");
    EXPECT_EQ(FileURL("/a").appending("b/c").path(), "/a/b/c");
    EXPECT_EQ(FileURL("/a").appending("").path(), "/a");
}

TEST(FileURL, everyByteSurvivesTheURLText) {
    std::string path = "/";
    for (int byte = 1; byte < 256; ++byte) {
        path += static_cast<char>(byte);
    }
    const std::string text = FileURL(path).absoluteString();
    EXPECT_TRUE(
        std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; }));
    EXPECT_EQ(text.find_first_of("?#[]\"<>\\^`{|}; "), std::string::npos);
    EXPECT_EQ(FileURL::fromAbsoluteString(text), FileURL(path));
    EXPECT_EQ(FileURL("/a b/ä%20;~").absoluteString(), "file:///a%20b/%C3%A4%2520%3B~");
    EXPECT_EQ(FileURL("/").absoluteString(), "file:///");
}

RC_GTEST_PROP(FileURLProperty, textIsReadBackAsTheSamePath, (const std::string& tail)) {
    std::string path = "/" + tail;
    std::erase(path, '\0');
    const FileURL url(path);
    RC_ASSERT(FileURL::fromAbsoluteString(url.absoluteString()) == url);
    RC_ASSERT(!url.standardized().hasParentTraversal());
}

TEST(FileURL, readsOnlyLocalAbsoluteURLs) {
    const std::pair<const char*, const char*> accepted[] = {
        {"file:///a%20b", "/a b"}, {"file://localhost/a", "/a"}, {"file:///a%c3%A4/", "/a\xC3\xA4"},
        {"file:///", "/"},         {"file:///a%2Fb", "/a/b"},
    };
    for (const auto& [text, path] : accepted) {
        EXPECT_EQ(FileURL::fromAbsoluteString(text), FileURL(path)) << text;
    }
    for (const std::string_view text :
         {"", "/a", "file:", "file://", "file:/a", "file:a", "file://host/a", "file://localhost",
          "file://localhosta/b", "http:///a", "https://example.org/a", "file:///a?b", "file:///a#b",
          "file:///a%", "file:///a%4", "file:///a%zz", "file:///a%00", " file:///a"}) {
        EXPECT_EQ(FileURL::fromAbsoluteString(text), std::nullopt) << text;
    }
    EXPECT_EQ(FileURL::fromAbsoluteString(std::string_view("file:///a\0b", 11)), std::nullopt);
}

TEST(FileURL, expandsALeadingTildeOnly) {
    const std::pair<const char*, const char*> rows[] = {
        {"~", "/home/ann"}, {"~/x/~", "/home/ann/x/~"}, {"~ann/x", "~ann/x"}, {"/a/~/b", "/a/~/b"},
        {"", ""},           {"~/", "/home/ann/"}};
    for (const auto& [text, expanded] : rows) {
        EXPECT_EQ(expandingTilde(text, FileURL("/home/ann")), expanded);
    }
    EXPECT_EQ(expandingTilde("~/x", FileURL("/")), "/x");
}

TEST(FileURL, parentPathIsWhatComesBeforeTheLastSlash) {
    const std::pair<const char*, const char*> rows[] = {{"/a/b", "/a"}, {"/a", "/"}, {"a", ""},
                                                        {"", ""},       {"/", ""},   {"a/b", "a"}};
    for (const auto& [path, parent] : rows) {
        EXPECT_EQ(parentPath(path), parent) << path;
    }
}

TEST(FileURL, resolvesLinksOnDisk) {
    const TemporaryFolder folder;
    folder.makeFile("real/sub/file");
    folder.makeLink("toReal", "real");
    folder.makeLink("absolute", folder.at("real/sub").path());
    folder.makeLink("real/up", "../real/./sub//");
    folder.makeLink("chain1", "chain2/sub");
    folder.makeLink("chain2", "toReal");
    folder.makeLink("dangling", "gone/x");
    folder.makeLink("outOfGone", "gone/../real");
    folder.makeLink("dot", ".");
    const std::pair<const char*, const char*> rows[] = {
        {"real/sub/file", "real/sub/file"},
        {"toReal", "real"},
        {"toReal/sub/file", "real/sub/file"},
        {"absolute/file", "real/sub/file"},
        {"absolute/..", "real"},
        {"absolute/../up/file", "real/sub/file"},
        {"real/up/file", "real/sub/file"},
        {"chain1/file", "real/sub/file"},
        {"dot/dot/./toReal", "real"},
        {"toReal/none/deeper", "real/none/deeper"},
        {"toReal/none/../sub", "real/sub"},
        {"none/toReal", "none/toReal"},
        {"real/sub/file/below", "real/sub/file/below"},
        {"dangling", "gone/x"},
        {"dangling/tail", "gone/x/tail"},
        {"outOfGone/sub", "real/sub"},
    };
    for (const auto& [path, resolved] : rows) {
        EXPECT_EQ(folder.at(path).resolvingSymlinks(), folder.at(resolved)) << path;
    }
    EXPECT_EQ(FileURL("a/../b").resolvingSymlinks(), FileURL("b"));
    EXPECT_EQ(FileURL("/..").resolvingSymlinks(), FileURL("/"));
}

TEST(FileURL, resolvingEndsInACycleAndFollowsWhatTheKernelFollows) {
    const TemporaryFolder folder;
    folder.makeLink("self", "self");
    folder.makeLink("tick", "tock");
    folder.makeLink("tock", "tick");
    folder.makeLink("grows", "grows/x");
    EXPECT_EQ(folder.at("self/tail").resolvingSymlinks(), folder.at("self/tail"));
    EXPECT_THAT(folder.at("tick/tail").resolvingSymlinks(),
                AnyOf(folder.at("tick/tail"), folder.at("tock/tail")));
    EXPECT_TRUE(folder.at("grows").resolvingSymlinks().path().starts_with(folder.path() + "/"));
    folder.makeFile("link0/file");
    for (int i = 1; i <= 39; ++i) {
        folder.makeLink("link" + std::to_string(i), "link" + std::to_string(i - 1));
    }
    ASSERT_EQ(folder.content("link39/file"), "x");
    EXPECT_EQ(folder.at("link39/file").resolvingSymlinks(), folder.at("link0/file"));
}

} // namespace
} // namespace korvane
