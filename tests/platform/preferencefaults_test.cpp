// What disks, other programs and killed processes can do to the preferences.
#include "platform/sqliteconnection.h"

#include "tests/platform/preferencefaultstest.h"
#include "tests/support/allocations.h"
#include "tests/support/childprocess.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

std::string randomBytes(std::size_t size) {
    std::mt19937 generator(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator());
    return bytes;
}

TEST_F(PreferenceFaults, AChangeWithoutMemoryForItIsRefusedOrMade) {
    bool reached = true;
    int refused = 0;
    for (long number = 1; reached; ++number) {
        ASSERT_TRUE(store("CurrDir", "/old/"));
        Preferences preferences(folder.path.string());
        preferences.set("CurrDir", "/new/");
        bool made = false;
        {
            const AtAllocation outOfMemory(number, [](void*) { throw std::bad_alloc(); });
            made = preferences.synchronise();
            reached = outOfMemory.reached();
        }
        refused += made ? 0 : 1;
        EXPECT_EQ(read("CurrDir"), made ? "/new/" : "/old/") << "allocation " << number;
    }
    EXPECT_GT(refused, 0);
}

class PreferenceDamage : public PreferenceFaults,
                         public testing::WithParamInterface<std::size_t> {};

TEST_P(PreferenceDamage, ReadsAsEmptyAndReadingLeavesItAlone) {
    const std::string damage = randomBytes(GetParam());
    writeFile(storeFile, damage);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_EQ(contentsOf(storeFile), damage);
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_P(PreferenceDamage, IsKeptAsideByTheFirstStoring) {
    const std::string damage = randomBytes(GetParam());
    writeFile(storeFile, damage);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(contentsOf(aside(1)), damage);
    EXPECT_EQ(read("CurrDir"), "/new/");
}

INSTANTIATE_TEST_SUITE_P(OfSize, PreferenceDamage,
                         testing::Values(2, 15, 99, 100, 511, 512, 513, 4095, 4096, 20000));

TEST_F(PreferenceFaults, EveryDamagedStoreIsKept) {
    writeFile(storeFile, "first damage");
    ASSERT_TRUE(store("CurrDir", "/1/"));
    writeFile(storeFile, "second damage");
    ASSERT_TRUE(store("CurrDir", "/2/"));
    EXPECT_EQ(contentsOf(aside(1)), "first damage");
    EXPECT_EQ(contentsOf(aside(2)), "second damage");
    EXPECT_EQ(read("CurrDir"), "/2/");
}

TEST_F(PreferenceFaults, AnEmptyFileBecomesTheStore) {
    writeFile(storeFile, "");
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/"));
    EXPECT_EQ(read("CurrDir"), "/");
    EXPECT_FALSE(exists(aside(1)));
}

TEST_F(PreferenceFaults, AStoreCutShortIsKeptAside) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    std::filesystem::resize_file(storeFile, 4096);
    const std::string damage = contentsOf(storeFile);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(contentsOf(aside(1)), damage);
    EXPECT_EQ(read("CurrDir"), "/new/");
}

TEST_F(PreferenceFaults, AStoreDamagedInItsTableIsKeptAside) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    std::string damage = contentsOf(storeFile);
    damage.replace(4096, 4096, randomBytes(4096));
    writeFile(storeFile, damage);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(contentsOf(aside(1)), damage);
    EXPECT_EQ(read("CurrDir"), "/new/");
}

TEST_F(PreferenceFaults, AnotherProgramsDatabaseIsKeptAside) {
    {
        SqliteConnection foreign(storeFile, SqliteConnection::Mode::createMissing, 1s);
        ASSERT_EQ(foreign.execute("CREATE TABLE preferences (key, value);"
                                  "INSERT INTO preferences VALUES ('CurrDir', '/theirs/')"),
                  SQLITE_OK);
    }
    const std::string theirs = contentsOf(storeFile);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/ours/"));
    EXPECT_EQ(contentsOf(aside(1)), theirs);
    EXPECT_EQ(read("CurrDir"), "/ours/");
}

TEST_F(PreferenceFaults, AStoreOfALaterVersionIsLeftAlone) {
    ASSERT_TRUE(store("CurrDir", "/later/"));
    {
        SqliteConnection later(storeFile, SqliteConnection::Mode::existing, 1s);
        ASSERT_EQ(later.execute("PRAGMA user_version = 2"), SQLITE_OK);
    }
    const std::string before = contentsOf(storeFile);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_FALSE(store("CurrDir", "/new/"));
    EXPECT_EQ(contentsOf(storeFile), before);
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(PreferenceFaults, AFolderInTheStoresPlaceIsMovedAside) {
    create_directory(storeFile);
    writeFile(storeFile / "inside", "kept");
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(contentsOf(aside(1) / "inside"), "kept");
    EXPECT_EQ(read("CurrDir"), "/new/");
}

TEST_F(PreferenceFaults, APipeInTheStoresPlaceDoesNotBlock) {
    ASSERT_EQ(mkfifo(storeFile.c_str(), 0600), 0);
    EXPECT_EQ(read("CurrDir"), std::nullopt);
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(read("CurrDir"), "/new/");
}

TEST_F(PreferenceFaults, AFileInTheFoldersPlaceStoresNothingAndStays) {
    const std::filesystem::path file = folder / "file";
    writeFile(file, "mine");
    Preferences preferences(file.string());
    EXPECT_EQ(preferences.get("CurrDir"), std::nullopt);
    preferences.set("CurrDir", "/");
    EXPECT_FALSE(preferences.synchronise());
    EXPECT_EQ(contentsOf(file), "mine");
}

TEST_F(PreferenceFaults, AReadOnlyFolderIsReadAndNotWritten) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    permissions(folder.path, std::filesystem::perms(0555));
    permissions(storeFile, std::filesystem::perms(0444));
    EXPECT_EQ(inChild([&] {
                  becomeOrdinaryUser();
                  if (read("CurrDir") != "/old/")
                      return 1;
                  if (store("CurrDir", "/new/"))
                      return 2;
                  return read("CurrDir") == "/old/" ? 0 : 3;
              }),
              0);
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(PreferenceFaults, AReadOnlyEmptyFolderStoresNothing) {
    permissions(folder.path, std::filesystem::perms(0555));
    EXPECT_EQ(inChild([&] {
                  becomeOrdinaryUser();
                  return !read("CurrDir") && !store("CurrDir", "/new/") && !read("CurrDir") ? 0 : 1;
              }),
              0);
}

TEST_F(PreferenceFaults, AnUnreadableFolderReadsAsEmpty) {
    ASSERT_TRUE(store("CurrDir", "/old/"));
    permissions(folder.path, std::filesystem::perms(0000));
    EXPECT_EQ(inChild([&] {
                  becomeOrdinaryUser();
                  return !read("CurrDir") && !store("CurrDir", "/new/") ? 0 : 1;
              }),
              0);
    permissions(folder.path, std::filesystem::perms(0755));
    EXPECT_EQ(read("CurrDir"), "/old/");
}

// The limit on a file's size makes writing fail as a full disk does, at every
// point of the transaction in turn.
TEST_F(PreferenceFaults, OnAFullDiskAValueIsTheOldOrTheNewOne) {
    const std::string oldValue(665, 'o');
    const std::string newValue(6000, 'n');
    int refused = 0;
    for (rlim_t limit = 0; limit <= 28672; limit += 512) {
        std::filesystem::remove(storeFile);
        ASSERT_TRUE(store("DefaultBank", oldValue));
        const int code = inChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit size{limit, limit};
            setrlimit(RLIMIT_FSIZE, &size);
            return store("DefaultBank", newValue) ? 0 : 1;
        });
        ASSERT_GE(code, 0) << "killed at a limit of " << limit;
        refused += code;
        ASSERT_EQ(read("DefaultBank"), code == 0 ? newValue : oldValue) << limit;
        ASSERT_FALSE(exists(aside(1))) << limit;
    }
    EXPECT_GT(refused, 5);
    EXPECT_LT(refused, 57);
}

TEST_F(PreferenceFaults, OnAFullDiskANewStoreCanBeginLater) {
    for (rlim_t limit = 0; limit <= 20480; limit += 512) {
        std::filesystem::remove(storeFile);
        const int code = inChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit size{limit, limit};
            setrlimit(RLIMIT_FSIZE, &size);
            return store("CurrDir", "/1/") ? 0 : 1;
        });
        ASSERT_GE(code, 0) << "killed at a limit of " << limit;
        ASSERT_EQ(read("CurrDir").has_value(), code == 0) << limit;
        ASSERT_TRUE(store("CurrDir", "/2/")) << limit;
        ASSERT_EQ(read("CurrDir"), "/2/") << limit;
    }
}

// A writer killed after it has begun to change the store itself: the journal
// that undoes it is left.
class KilledWriter : public PreferenceFaults {
  protected:
    void SetUp() override {
        ASSERT_TRUE(store("CurrDir", "/old/"));
        ASSERT_TRUE(store("DefaultBank", std::string(60000, 'o')));
        ASSERT_EQ(inChild([&] {
                      SqliteConnection writer(storeFile, SqliteConnection::Mode::existing, 1s);
                      // A cache of one page forces changes out before the end.
                      writer.execute("PRAGMA cache_size = 1; BEGIN IMMEDIATE;"
                                     "UPDATE preferences SET value = zeroblob(60000);"
                                     "UPDATE preferences SET value = zeroblob(50000)");
                      kill(getpid(), SIGKILL);
                      return 0;
                  }),
                  -SIGKILL);
        ASSERT_TRUE(exists(journal));
        ASSERT_GT(file_size(journal), 0U);
        ASSERT_EQ(contentsOf(storeFile).find(std::string(10000, 'o')), std::string::npos);
        permissions(temporary.path, std::filesystem::perms(0777));
    }
    // What `work` answers as a user who may change nothing in the folder, and whose
    // temporary files lie in one of their own.
    int asVisitor(const std::function<int()>& work) const {
        return inChild([&] {
            becomeOrdinaryUser();
            setenv("TMPDIR", temporary.path.c_str(), 1);
            return work();
        });
    }
    void expectNothingTemporary() const {
        EXPECT_TRUE(std::filesystem::is_empty(temporary.path)) << "a copy has been left";
    }

    const TemporaryFolder temporary;
    const std::filesystem::path journal = storeFile.string() + "-journal";
};

TEST_F(KilledWriter, LeavesTheOldValuesToTheNextReader) {
    EXPECT_EQ(read("CurrDir"), "/old/");
    EXPECT_EQ(read("DefaultBank"), std::string(60000, 'o'));
    EXPECT_FALSE(exists(journal));
}

TEST_F(KilledWriter, LeavesTheOldValuesToTheNextWriter) {
    EXPECT_TRUE(store("CurrDir", "/new/"));
    EXPECT_EQ(read("CurrDir"), "/new/");
    EXPECT_EQ(read("DefaultBank"), std::string(60000, 'o'));
    EXPECT_FALSE(exists(aside(1)));
}

TEST_F(KilledWriter, LeavesTheOldValuesInAFolderThatHasBecomeReadOnly) {
    for (const auto& file : {storeFile, journal})
        permissions(file, std::filesystem::perms(0444));
    permissions(folder.path, std::filesystem::perms(0555));
    const std::string damaged = contentsOf(storeFile);
    EXPECT_EQ(asVisitor([&] {
                  return read("CurrDir") == "/old/" &&
                                 read("DefaultBank") == std::string(60000, 'o')
                             ? 0
                             : 1;
              }),
              0);
    expectNothingTemporary();
    EXPECT_EQ(contentsOf(storeFile), damaged);
    EXPECT_TRUE(exists(journal));
}

TEST_F(KilledWriter, LeavesTheOldValuesInAFolderThatTakesNoNewFiles) {
    for (const auto& file : {storeFile, journal})
        permissions(file, std::filesystem::perms(0666));
    permissions(folder.path, std::filesystem::perms(0555));
    EXPECT_EQ(asVisitor([&] { return read("CurrDir") == "/old/" ? 0 : 1; }), 0);
    expectNothingTemporary();
}

} // namespace
} // namespace mirelon::test
