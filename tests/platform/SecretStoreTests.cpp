#include "KorvaneCore/platform/UserSecretStore.h"
#include "KorvaneCore/platform/linux/FileSecretStore.h"
#include "KorvaneCore/platform/linux/SecretServiceStore.h"
#include "tests/platform/KeyringSession.h"
#include "tests/support/FakeSecretStore.h"

#include <csignal>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using Outcome = SecretReading::Outcome;

constexpr std::string_view service = "com.ostrel.Korvane.audit";
constexpr std::string_view account = "audit-hmac-key-v1";
const std::string key("\0\x01key\xFF\n with every kind of byte\0", 32);

/// What every store must do, whatever it keeps its secrets in.
void expectContract(SecretStore& store) {
    EXPECT_EQ(store.read(service, account).outcome, Outcome::missing);
    ASSERT_TRUE(store.store(service, account, std::string(32, 'o')));
    ASSERT_TRUE(store.store(service, account, key));
    const SecretReading reading = store.read(service, account);
    EXPECT_EQ(reading.outcome, Outcome::found) << reading.reason;
    EXPECT_EQ(reading.data, key);
    EXPECT_EQ(store.read(service, "another").outcome, Outcome::missing);
    EXPECT_EQ(store.read("com.ostrel.Korvane.other", account).outcome, Outcome::missing);
    EXPECT_TRUE(store.store(service, "another", "short"));
    EXPECT_EQ(store.read(service, account).data, key);
}

/// Patient enough for a busy machine, where no answer is to be waited for in vain.
SecretServiceStore quickStore() {
    return SecretServiceStore(SecretServiceStore::Patience{std::chrono::milliseconds(3000),
                                                           std::chrono::milliseconds(3000)});
}

mode_t modeOf(const FileURL& url) {
    struct stat facts {};
    EXPECT_EQ(lstat(url.path().c_str(), &facts), 0);
    return facts.st_mode & 07777;
}

void inASession(const std::function<void(KeyringSession&)>& work) {
    const std::string reason = KeyringSession::run(work);
    if (!reason.empty()) {
        GTEST_SKIP() << reason;
    }
}

} // namespace

TEST(FakeSecretStore, keepsTheContract) {
    FakeSecretStore store;
    expectContract(store);
}

class FileSecretStoreTest : public ::testing::Test {
  protected:
    TemporaryFolder folder;
    FileSecretStore store{folder.at("Korvane/Secrets")};
    const std::string file = "Korvane/Secrets/com.ostrel.Korvane.audit/audit-hmac-key-v1";
};

TEST_F(FileSecretStoreTest, keepsTheContractInFilesOfTheUserAlone) {
    expectContract(store);
    EXPECT_EQ(folder.content(file), key);
    EXPECT_EQ(modeOf(folder.at(file)), 0600U);
    EXPECT_EQ(modeOf(folder.at("Korvane/Secrets")), 0700U);
    EXPECT_EQ(modeOf(folder.at("Korvane/Secrets/com.ostrel.Korvane.audit")), 0700U);
}

TEST_F(FileSecretStoreTest, closesWhatOthersCouldRead) {
    folder.makeFile(file, key);
    ASSERT_EQ(chmod(folder.at(file).path().c_str(), 0666), 0);
    EXPECT_EQ(store.read(service, account).data, key);
    EXPECT_EQ(modeOf(folder.at(file)), 0600U);
}

TEST_F(FileSecretStoreTest, isUnavailableWhereSomethingElseIsInThePlace) {
    const auto expectUnavailable = [&] {
        const SecretReading reading = store.read(service, account);
        EXPECT_EQ(reading.outcome, Outcome::unavailable);
        EXPECT_FALSE(reading.reason.empty());
    };
    folder.makeFile("elsewhere", key);
    folder.makeLink(file, folder.at("elsewhere").path());
    expectUnavailable();
    unlink(folder.at(file).path().c_str());
    folder.makeFolder(file);
    expectUnavailable();
    rmdir(folder.at(file).path().c_str());
    if (geteuid() == 0) {
        folder.makeFile(file, key);
        ASSERT_EQ(chown(folder.at(file).path().c_str(), 65534, 65534), 0);
        EXPECT_EQ(store.read(service, account).data, key);
    } else {
        chmod(folder.makeFile(file, key).path().c_str(), 0);
        expectUnavailable();
    }
    EXPECT_FALSE(store.store("..", "x", key));
    EXPECT_FALSE(store.store(service, "a/b", key));
    EXPECT_FALSE(folder.exists("Korvane/x"));
}

TEST(SecretServiceStore, keepsTheContractAcrossSessions) {
    inASession([](KeyringSession& session) {
        session.startKeyring();
        SecretServiceStore store;
        expectContract(store);
        session.stopKeyring();
        session.startKeyring();
        SecretServiceStore later;
        const SecretReading reading = later.read(service, account);
        EXPECT_EQ(reading.outcome, Outcome::found) << reading.reason;
        EXPECT_EQ(reading.data, key);
    });
}

TEST(SecretServiceStore, isUnavailableAndNotMissingWhenLocked) {
    inASession([](KeyringSession& session) {
        session.startKeyring();
        SecretServiceStore store = quickStore();
        EXPECT_TRUE(store.store(service, account, key));
        session.lockKeyring();
        SecretServiceStore later = quickStore();
        EXPECT_EQ(later.read(service, account).outcome, Outcome::unavailable);
        EXPECT_EQ(later.read(service, account).reason, "The keyring is locked.");
        EXPECT_EQ(later.read(service, "another").outcome, Outcome::unavailable);
        session.stopKeyring();
        session.startKeyring();
        EXPECT_EQ(later.read(service, account).data, key);
    });
}

TEST(SecretServiceStore, isUnavailableWhenTheServiceHangs) {
    inASession([](KeyringSession& session) {
        session.startKeyring();
        session.signalKeyring(SIGSTOP);
        SecretServiceStore store(SecretServiceStore::Patience{std::chrono::milliseconds(300),
                                                              std::chrono::milliseconds(300)});
        EXPECT_EQ(store.read(service, account).outcome, Outcome::unavailable);
        EXPECT_FALSE(store.store(service, account, key));
    });
}

TEST(SecretServiceStore, outlivesTheSession) {
    inASession([](KeyringSession& session) {
        session.startKeyring();
        SecretServiceStore store = quickStore();
        EXPECT_TRUE(store.store(service, account, key));
        session.endBus();
        usleep(200'000); // the library would end the process from a thread of its own
        EXPECT_EQ(store.read(service, account).outcome, Outcome::unavailable);
    });
}

TEST(UserSecretStore, usesAFileWithoutAServiceAndGoesOnWithItUnderOne) {
    inASession([](KeyringSession& session) {
        const UserFolders folders = UserFolders::current();
        const auto store = makeUserSecretStore(folders);
        EXPECT_EQ(store->read(service, account).outcome, Outcome::missing);
        EXPECT_TRUE(store->store(service, account, key));
        EXPECT_EQ(session.folder().content(
                      "XDG_DATA_HOME/Korvane/Secrets/com.ostrel.Korvane.audit/audit-hmac-key-v1"),
                  key);
        session.startKeyring();
        EXPECT_EQ(store->read(service, account).data, key);
        // What is stored under a desktop goes to the keyring alone.
        EXPECT_TRUE(store->store(service, "another", "x"));
        EXPECT_EQ(session.folder().listing("XDG_DATA_HOME/Korvane/Secrets").size(), 2U);
        EXPECT_EQ(makeUserSecretStore(folders)->read(service, "another").data, "x");
        session.lockKeyring();
        EXPECT_EQ(store->read(service, account).data, key);
        EXPECT_EQ(store->read(service, "another").outcome, Outcome::unavailable);
    });
}

TEST(UserSecretStore, usesAFileWithoutASessionBus) {
    inASession([](KeyringSession& session) {
        session.startKeyring();
        KeyringSession::hideBus();
        const auto store = makeUserSecretStore(UserFolders::current());
        expectContract(*store);
        EXPECT_EQ(session.folder().listing("XDG_DATA_HOME/Korvane/Secrets").size(), 3U);
    });
}

} // namespace korvane::testing
