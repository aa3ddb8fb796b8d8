// What several processes do to each other that use the preferences at once.
#include "platform/folderlock.h"
#include "platform/sqliteconnection.h"

#include "tests/platform/preferencefaultstest.h"
#include "tests/support/childprocess.h"

#include <array>
#include <chrono>
#include <memory>
#include <thread>
#include <unistd.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Another process that holds the store for itself for a while.
class BusyHolder {
  public:
    BusyHolder(const std::filesystem::path& file, std::chrono::microseconds time)
        : holder([&] {
            SqliteConnection busy(file, SqliteConnection::Mode::existing, 1s);
            if (busy.execute("BEGIN EXCLUSIVE") != SQLITE_OK || !started.signal())
                return 1;
            usleep(static_cast<useconds_t>(time.count()));
            return busy.execute("COMMIT") == SQLITE_OK ? 0 : 2;
        }) {
        EXPECT_TRUE(started.wait());
    }

  private:
    Signal started;
    ChildProcess holder;
};

TEST_F(PreferenceFaults, AStoreHeldBusyIsGivenUpAfterABoundedWait) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    {
        const BusyHolder holder(storeFile, 60s);
        const auto begin = Clock::now();
        EXPECT_EQ(read("CurrDir"), std::nullopt);
        const auto afterReading = Clock::now();
        EXPECT_FALSE(store("CurrDir", "/new/"));
        const auto afterWriting = Clock::now();
        EXPECT_GE(afterReading - begin, PreferenceStore::readWait);
        EXPECT_LT(afterReading - begin, PreferenceStore::readWait + 2s);
        EXPECT_GE(afterWriting - afterReading, PreferenceStore::writeWait);
        EXPECT_LT(afterWriting - afterReading, PreferenceStore::writeWait + 2s);
    }
    EXPECT_EQ(read("CurrDir"), "/old/");
}

TEST_F(PreferenceFaults, AStoreThatFreesItselfInTimeIsWaitedFor) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    const BusyHolder holder(storeFile, 200ms);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(read("CurrDir"), "/new/");
}

// Of many writers one may be refused when it has waited for as long as it does, on a
// machine that is slow; it may try again then. Whatever fails sooner has failed.
bool storesInTheEnd(const std::filesystem::path& place, const std::string& key) {
    const auto end = Clock::now() + 60s;
    for (auto begin = Clock::now(); begin < end; begin = Clock::now()) {
        Preferences preferences(place.string());
        preferences.set(key, "value");
        if (preferences.synchronise())
            return true;
        if (Clock::now() - begin < PreferenceStore::writeWait)
            return false;
    }
    return false;
}

TEST_F(PreferenceFaults, ManyProcessesThatFindTheSameDamageBeginOneStore) {
    for (int round = 0; round < 5; ++round) {
        const TemporaryFolder place;
        const auto file = place.path / PreferenceStore::fileName;
        writeFile(file, "damage");
        {
            std::array<std::unique_ptr<ChildProcess>, 8> writers;
            for (std::size_t i = 0; i < writers.size(); ++i)
                writers[i] = std::make_unique<ChildProcess>([&, i] {
                    return storesInTheEnd(place.path, "key " + std::to_string(i)) ? 0 : 1;
                });
            for (const auto& writer : writers)
                EXPECT_EQ(writer->wait(), 0);
        }
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(Preferences(place.path.string()).get("key " + std::to_string(i)), "value");
        EXPECT_EQ(contentsOf(file.string() + ".damaged-1"), "damage");
        EXPECT_FALSE(std::filesystem::exists(file.string() + ".damaged-2"));
    }
}

TEST_F(PreferenceFaults, ADamagedStoreIsNotMovedWhileAnotherHasItOpen) {
    writeFile(storeFile, "damage");
    auto other = std::make_unique<FolderLock>(folder.path, FolderLock::Kind::shared, 0s);
    ASSERT_TRUE(other->held());
    bool moved = true;
    std::thread closing([&] {
        std::this_thread::sleep_for(200ms);
        moved = exists(aside(1));
        other.reset();
    });
    EXPECT_TRUE(store("CurrDir", "/new/"));
    closing.join();
    EXPECT_FALSE(moved);
    EXPECT_EQ(contentsOf(aside(1)), "damage");
    EXPECT_EQ(read("CurrDir"), "/new/");
}

TEST_F(PreferenceFaults, NobodyOpensAStoreThatIsBeingReplaced) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    auto replacing = std::make_unique<FolderLock>(folder.path, FolderLock::Kind::exclusive, 0s);
    ASSERT_TRUE(replacing->held());
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_FALSE(store("CurrDir", "/new/"));
    replacing.reset();
    EXPECT_EQ(read("CurrDir"), "/old/");
}

} // namespace
} // namespace mirelon::test
