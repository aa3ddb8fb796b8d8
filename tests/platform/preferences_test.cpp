#include "platform/preferences.h"

#include "tests/support/childprocess.h"
#include "tests/support/temporaryfolder.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace mirelon::test {
namespace {

using namespace std::string_literals;

class PreferencesTest : public testing::Test {
  protected:
    Preferences open() const { return Preferences(storeFolder); }

    const TemporaryFolder folder;
    const std::string storeFolder = (folder / "config" / "example.dravik.mirelon").string();
    const std::filesystem::path storeFile =
        std::filesystem::path(storeFolder) / PreferenceStore::fileName;
};

void storeOne(Preferences preferences, std::string_view key, std::string_view value) {
    preferences.set(key, value);
    EXPECT_TRUE(preferences.synchronise());
}

TEST_F(PreferencesTest, ReadingAMissingStoreFindsNothingAndLeavesNoTrace) {
    EXPECT_EQ(open().get("CurrDir"), std::nullopt);
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(PreferencesTest, RemovingFromAMissingStoreLeavesNoTrace) {
    Preferences preferences = open();
    preferences.remove("CurrDir");
    EXPECT_TRUE(preferences.synchronise());
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(PreferencesTest, SynchronisingNothingLeavesNoTrace) {
    EXPECT_TRUE(open().synchronise());
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(PreferencesTest, AStoredValueIsSeenByEveryOther) {
    storeOne(open(), "CurrDir", "/home/a/");
    EXPECT_EQ(open().get("CurrDir"), "/home/a/");
    EXPECT_EQ(open().get("CurrBank"), std::nullopt);
}

TEST_F(PreferencesTest, TheFolderIsTheUsersAlone) {
    storeOne(open(), "CurrDir", "/home/a/");
    EXPECT_EQ(std::filesystem::status(storeFolder).permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(status(folder / "config").permissions(), std::filesystem::perms(0700));
}

TEST_F(PreferencesTest, OnlyTheStoreFileRemainsAfterStoring) {
    storeOne(open(), "CurrDir", "/home/a/");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(storeFolder), {}), 1);
    EXPECT_TRUE(exists(storeFile));
}

TEST_F(PreferencesTest, ValuesAreBytes) {
    const std::string value = "\0\xFF\x80 \xC3\0"s;
    storeOne(open(), "DefaultPreset", value);
    EXPECT_EQ(open().get("DefaultPreset"), value);
}

TEST_F(PreferencesTest, AnEmptyValueIsAValue) {
    storeOne(open(), "CurrBank", "");
    EXPECT_EQ(open().get("CurrBank"), "");
}

TEST_F(PreferencesTest, AnotherStoringReplacesTheValue) {
    storeOne(open(), "CurrBank", "a longer value");
    storeOne(open(), "CurrBank", "b");
    EXPECT_EQ(open().get("CurrBank"), "b");
}

TEST_F(PreferencesTest, ARemovedKeyIsGoneAndTheOthersStay) {
    storeOne(open(), "CurrBank", "a");
    storeOne(open(), "CurrDir", "b");
    Preferences preferences = open();
    preferences.remove("CurrBank");
    EXPECT_TRUE(preferences.synchronise());
    EXPECT_EQ(open().get("CurrBank"), std::nullopt);
    EXPECT_EQ(open().get("CurrDir"), "b");
}

TEST_F(PreferencesTest, AChangeShowsAtOnceHereAndElsewhereWhenSynchronised) {
    Preferences here = open();
    here.set("CurrBank", "a");
    EXPECT_EQ(here.get("CurrBank"), "a");
    EXPECT_EQ(open().get("CurrBank"), std::nullopt);
    EXPECT_TRUE(here.synchronise());
    EXPECT_EQ(open().get("CurrBank"), "a");
}

TEST_F(PreferencesTest, TheLastOfSeveralChangesOfAKeyCounts) {
    Preferences preferences = open();
    preferences.set("CurrBank", "a");
    preferences.remove("CurrBank");
    EXPECT_EQ(preferences.get("CurrBank"), std::nullopt);
    preferences.set("CurrBank", "b");
    EXPECT_TRUE(preferences.synchronise());
    EXPECT_EQ(open().get("CurrBank"), "b");
}

TEST_F(PreferencesTest, ALaterReaderSeesWhatAnotherHasStoredMeanwhile) {
    const Preferences reader = open();
    EXPECT_EQ(reader.get("MemoAPreset"), std::nullopt);
    storeOne(open(), "MemoAPreset", "a");
    EXPECT_EQ(reader.get("MemoAPreset"), "a");
    storeOne(open(), "MemoAPreset", "b");
    EXPECT_EQ(reader.get("MemoAPreset"), "b");
}

TEST_F(PreferencesTest, ARunningProcessSeesWhatAnotherStores) {
    const Signal hasLooked;
    const Signal stored;
    ChildProcess reader([&] {
        const Preferences preferences = open();
        if (preferences.get("MemoAPreset") || !hasLooked.signal() || !stored.wait())
            return 1;
        return preferences.get("MemoAPreset") == "a" ? 0 : 2;
    });
    ASSERT_TRUE(hasLooked.wait());
    storeOne(open(), "MemoAPreset", "a");
    ASSERT_TRUE(stored.signal());
    EXPECT_EQ(reader.wait(), 0);
}

TEST_F(PreferencesTest, ManyThreadsStoreAtOnce) {
    std::array<std::thread, 4> threads;
    for (std::size_t t = 0; t < threads.size(); ++t) // NOLINT(modernize-loop-convert)
        threads[t] = std::thread([this, key = "key " + std::to_string(t)] {
            // Each storing gives up after a while when the others are busy, as
            // they may be on a loaded machine; then it is tried again.
            const auto stored = [&](int value) {
                Preferences preferences = open();
                preferences.set(key, std::to_string(value));
                return preferences.synchronise();
            };
            int attempts = 0;
            for (int i = 0; i < 25 && attempts < 100; ++attempts)
                i += stored(i) ? 1 : 0;
        });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t t = 0; t < threads.size(); ++t)
        EXPECT_EQ(open().get("key " + std::to_string(t)), "24");
}

TEST_F(PreferencesTest, AValueBeyondAllReasonIsRefusedAndTheOldOneStays) {
    storeOne(open(), "DefaultBank", "old");
    Preferences preferences = open();
    preferences.set("CurrDir", "along with it");
    preferences.set("DefaultBank", std::string(2 << 20, 'x'));
    EXPECT_FALSE(preferences.synchronise());
    EXPECT_EQ(open().get("DefaultBank"), "old");
    EXPECT_EQ(open().get("CurrDir"), std::nullopt);
}

TEST_F(PreferencesTest, WithoutAFolderNothingIsStored) {
    Preferences preferences{std::string()};
    EXPECT_EQ(preferences.get("CurrDir"), std::nullopt);
    preferences.set("CurrDir", "/");
    EXPECT_FALSE(preferences.synchronise());
    EXPECT_EQ(preferences.get("CurrDir"), std::nullopt);
}

TEST_F(PreferencesTest, NoFolderAboveTheConfigurationFolderIsCreated) {
    Preferences preferences((folder / "no" / "such" / "home").string());
    preferences.set("CurrDir", "/");
    EXPECT_FALSE(preferences.synchronise());
    EXPECT_TRUE(is_empty(folder.path));
}

// The environment, as `home` and `config` (null: unset), in a process of its own.
bool folderIs(const char* config, const char* home, std::string_view expected) {
    return inChild([&] {
               for (const auto& [name, value] :
                    {std::pair{"XDG_CONFIG_HOME", config}, {"HOME", home}})
                   if (value != nullptr)
                       setenv(name, value, 1);
                   else
                       unsetenv(name);
               return userPreferencesFolder() == expected ? 0 : 1;
           }) == 0;
}

TEST(PreferencesFolder, IsUnderTheConfigurationHome) {
    EXPECT_TRUE(folderIs("/c", "/home/a", "/c/example.dravik.mirelon"));
    EXPECT_TRUE(folderIs("/c", nullptr, "/c/example.dravik.mirelon"));
}

TEST(PreferencesFolder, IsUnderTheHomeWithoutAConfigurationHome) {
    EXPECT_TRUE(folderIs(nullptr, "/home/a", "/home/a/.config/example.dravik.mirelon"));
    EXPECT_TRUE(folderIs("", "/home/a", "/home/a/.config/example.dravik.mirelon"));
}

TEST(PreferencesFolder, IgnoresRelativePaths) {
    EXPECT_TRUE(folderIs("c", "/home/a", "/home/a/.config/example.dravik.mirelon"));
    EXPECT_TRUE(folderIs("./c", "home", ""));
}

TEST(PreferencesFolder, IsNowhereWithoutAHome) {
    EXPECT_TRUE(folderIs(nullptr, nullptr, ""));
    EXPECT_TRUE(folderIs("", "", ""));
}

} // namespace
} // namespace mirelon::test
