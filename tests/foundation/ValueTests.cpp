#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cerrno>
#include <limits>
#include <unordered_set>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(UUID, isReadInEitherCaseAndWrittenInUpperCase) {
    const std::string text = "0F8FAD5B-D9CB-469F-A165-70867728950E";
    const auto id = UUID::fromText(text);
    ASSERT_TRUE(id);
    EXPECT_EQ(id->text(), text);
    EXPECT_EQ(UUID::fromText("0f8fad5b-d9cb-469f-a165-70867728950e"), id);
    EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
    for (const char* bad :
         {"", "0F8FAD5B", "0F8FAD5BD9CB469FA16570867728950E",
          "{0F8FAD5B-D9CB-469F-A165-7086772895}", "0F8FAD5B-D9CB-469F-A165-70867728950",
          "0F8FAD5B-D9CB-469F-A165-70867728950G", "0F8FAD5BD-9CB-469F-A165-70867728950E",
          "0F8FAD5B-D9CB-469F-A165-70867728950E ", "0F8FAD5B-D9CB-469F-A165-7086772895-E"}) {
        EXPECT_EQ(UUID::fromText(bad), std::nullopt) << bad;
    }
}

TEST(UUID, isRandomOfVersion4AndNeverTheSame) {
    constexpr std::size_t count = 2000;
    std::vector<UUID> ids(count);
    concurrentPerform(count, [&](std::size_t index) { ids[index] = UUID::random(); });
    EXPECT_EQ(std::unordered_set<UUID>(ids.begin(), ids.end()).size(), count);
    for (const UUID& id : ids) {
        const std::string text = id.text();
        ASSERT_EQ(text[14], '4');
        ASSERT_NE(std::string("89AB").find(text[19]), std::string::npos);
        ASSERT_EQ(UUID::fromText(text), id);
    }
}

TEST(CheckedArithmeticDeathTest, overflowEndsTheProcess) {
    constexpr std::int64_t top = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t bottom = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(checkedAdd(top - 1, std::int64_t{1}), top);
    EXPECT_EQ(checkedSubtract(bottom + 1, std::int64_t{1}), bottom);
    EXPECT_DEATH((void)checkedAdd(top, std::int64_t{1}), "korvane: fatal: .*overflow");
    EXPECT_DEATH((void)checkedAdd(bottom, std::int64_t{-1}), "overflow");
    EXPECT_DEATH((void)checkedSubtract(std::int64_t{0}, bottom), "overflow");
    EXPECT_DEATH((void)checkedSubtract(0U, 1U), "overflow");
}

TEST(FileError, readsAsASentence) {
    const FileError error(EACCES, "remove", "/a\n\xFF");
    EXPECT_EQ(error.reason(), "Could not remove /a\\n\\xFF: Permission denied");
    EXPECT_EQ(error.path(), "/a\n\xFF");
    EXPECT_EQ(error.posixError(), EACCES);
    EXPECT_EQ(localizedDescription(error), error.reason());
    EXPECT_EQ(localizedDescription(FileError(EIO, "The disk is gone.", "read", "/a")),
              "The disk is gone.");
    EXPECT_EQ(localizedDescription(std::runtime_error("plain")), "plain");
    EXPECT_EQ(errorText(ENOENT), "No such file or directory");
}

TEST(FileDescriptor, closesOnceAndKeepsErrno) {
    const auto isOpen = [](int descriptor) { return fcntl(descriptor, F_GETFD) >= 0; };
    FileDescriptor first(open("/", O_RDONLY | O_CLOEXEC));
    const int number = first.get();
    FileDescriptor second(std::move(first));
    EXPECT_EQ(second.get(), number);
    second = FileDescriptor(open("/", O_RDONLY | O_CLOEXEC));
    EXPECT_FALSE(isOpen(number)) << "the assignment closes the old one";
    const int released = second.release();
    EXPECT_FALSE(second);
    EXPECT_TRUE(isOpen(released));
    {
        const FileDescriptor last(released);
        errno = EXDEV;
    }
    EXPECT_EQ(errno, EXDEV);
    EXPECT_FALSE(isOpen(released));
}

} // namespace
} // namespace korvane
