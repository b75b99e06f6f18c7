#include "KorvaneCore/audit/AuditKeyStore.h"
#include "tests/support/FakeSecretStore.h"

#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

const std::pair<std::string, std::string> identity = {"com.ostrel.Korvane.audit",
                                                      "audit-hmac-key-v1"};

std::string bytes(const Key256& key) {
    return {key.begin(), key.end()};
}

} // namespace

class AuditKeyStoreTest : public ::testing::Test {
  protected:
    using Origin = AuditKeyStore::Origin;
    FakeSecretStore secrets;
    AuditKeyStore keys{secrets};
};

TEST_F(AuditKeyStoreTest, makesAKeyOnceAndReadsItFromThenOn) {
    const Key256 key = keys.key();
    EXPECT_EQ(keys.origin(), Origin::made);
    EXPECT_EQ(secrets.secrets.at(identity), bytes(key));
    AuditKeyStore later(secrets);
    EXPECT_EQ(later.key(), key);
    EXPECT_EQ(later.origin(), Origin::stored);
    EXPECT_EQ(later.key(), key);
    EXPECT_EQ(secrets.readings, 2);
}

TEST_F(AuditKeyStoreTest, outlastsAStoreThatIsBusyForAMoment) {
    const std::string stored(32, '\0');
    secrets.secrets[identity] = stored;
    secrets.unavailableReadings = 2;
    EXPECT_EQ(bytes(keys.key()), stored);
    EXPECT_EQ(keys.origin(), Origin::stored);
}

TEST_F(AuditKeyStoreTest, neverReplacesAKeyThatItCouldNotRead) {
    secrets.secrets[identity] = std::string(32, 's');
    secrets.unavailableReadings = 3;
    const Key256 key = keys.key();
    EXPECT_NE(bytes(key), std::string(32, 's'));
    EXPECT_EQ(keys.origin(), Origin::madeUnkept);
    EXPECT_EQ(keys.problem(), "The keyring is locked.");
    EXPECT_EQ(secrets.secrets.at(identity), std::string(32, 's'));
    EXPECT_EQ(keys.key(), key);
}

TEST_F(AuditKeyStoreTest, replacesWhatCannotBeAKey) {
    for (const std::size_t length : {0U, 31U, 33U}) {
        secrets.secrets[identity] = std::string(length, 'x');
        AuditKeyStore fresh(secrets);
        EXPECT_EQ(secrets.secrets.at(identity).size(), length);
        EXPECT_EQ(bytes(fresh.key()), secrets.secrets.at(identity));
        EXPECT_EQ(fresh.origin(), Origin::made);
    }
}

TEST_F(AuditKeyStoreTest, goesOnWithAKeyThatCannotBeStored) {
    secrets.refusesToStore = true;
    const Key256 key = keys.key();
    EXPECT_EQ(keys.origin(), Origin::madeUnkept);
    EXPECT_FALSE(keys.problem().empty());
    EXPECT_EQ(keys.key(), key);
}

TEST_F(AuditKeyStoreTest, prefersATestingKeyAndForgetsTheCachedOne) {
    const Key256 first = keys.key();
    keys.setTestingKey(Key256{});
    EXPECT_EQ(keys.key(), Key256{});
    secrets.secrets.clear();
    keys.setTestingKey(std::nullopt);
    EXPECT_NE(keys.key(), first);
}

} // namespace korvane::testing
