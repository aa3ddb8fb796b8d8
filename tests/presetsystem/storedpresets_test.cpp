#include "presetsystem/storedpresets.h"

#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace mirelon::test {
namespace {

class StoredPresetsTest : public testing::Test {
  protected:
    StoredPresetsTest() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }

    template <typename Image>
    static Image filled(int byte) {
        Image image;
        image.bytes.fill(static_cast<std::byte>(byte));
        return image;
    }
    static void put(PathBuffer& buffer, std::string_view text) {
        buffer = {};
        std::ranges::copy(text, buffer.begin());
    }

    const TemporaryFolder folder;
};

TEST_F(StoredPresetsTest, AnEmptyPlaceHoldsZeros) {
    const StoredPresets stored;
    EXPECT_EQ(stored.preset(PresetSlot::memoryA).bytes, presetfilestruct{}.bytes);
    EXPECT_EQ(stored.defaultBank().bytes, bankfilestruct{}.bytes);
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(StoredPresetsTest, EveryPlaceKeepsItsOwnImage) {
    StoredPresets stored;
    stored.storePreset(PresetSlot::defaultPreset, filled<presetfilestruct>(1));
    stored.storePreset(PresetSlot::memoryA, filled<presetfilestruct>(2));
    stored.storePreset(PresetSlot::memoryB, filled<presetfilestruct>(3));
    stored.storeDefaultBank(filled<bankfilestruct>(4));
    const StoredPresets other; // another instance's
    EXPECT_EQ(other.preset(PresetSlot::defaultPreset).bytes, filled<presetfilestruct>(1).bytes);
    EXPECT_EQ(other.preset(PresetSlot::memoryA).bytes, filled<presetfilestruct>(2).bytes);
    EXPECT_EQ(other.preset(PresetSlot::memoryB).bytes, filled<presetfilestruct>(3).bytes);
    EXPECT_EQ(other.defaultBank().bytes, filled<bankfilestruct>(4).bytes);
}

TEST_F(StoredPresetsTest, ClearingAPlaceLeavesTheOthers) {
    StoredPresets stored;
    stored.storePreset(PresetSlot::memoryA, filled<presetfilestruct>(2));
    stored.storePreset(PresetSlot::memoryB, filled<presetfilestruct>(3));
    stored.storeDefaultBank(filled<bankfilestruct>(4));
    stored.clearPreset(PresetSlot::memoryA);
    EXPECT_EQ(stored.preset(PresetSlot::memoryA).bytes, presetfilestruct{}.bytes);
    EXPECT_EQ(stored.preset(PresetSlot::memoryB).bytes, filled<presetfilestruct>(3).bytes);
    stored.clearDefaultBank();
    EXPECT_EQ(stored.defaultBank().bytes, bankfilestruct{}.bytes);
}

TEST_F(StoredPresetsTest, SaysWhetherAnImageIsKeptOrForgotten) {
    StoredPresets stored;
    EXPECT_TRUE(stored.storePreset(PresetSlot::memoryA, filled<presetfilestruct>(2)));
    EXPECT_TRUE(stored.clearPreset(PresetSlot::memoryA));
    writeFile(folder / "file", "no folder");
    setenv("XDG_CONFIG_HOME", (folder / "file").c_str(), 1);
    StoredPresets nowhere;
    EXPECT_FALSE(nowhere.storePreset(PresetSlot::memoryA, filled<presetfilestruct>(2)));
    EXPECT_FALSE(nowhere.storeDefaultBank(filled<bankfilestruct>(4)));
}

TEST_F(StoredPresetsTest, TheLastFilesAreRecalledAsTheyWereStored) {
    StoredPresets stored;
    LastFiles files;
    put(files.currentDir, "/a/folder/");
    put(files.currentPresetName, "one.dvp");
    stored.storeLastFiles(files);
    LastFiles recalled;
    put(recalled.currentBankName, "was here before");
    stored.recallLastFiles(recalled);
    EXPECT_STREQ(recalled.currentDir.data(), "/a/folder/");
    EXPECT_STREQ(recalled.currentPresetName.data(), "one.dvp");
    EXPECT_STREQ(recalled.currentBankName.data(), "");
}

TEST_F(StoredPresetsTest, NoLastFilesAreNotStored) {
    StoredPresets stored;
    stored.storeLastFiles(LastFiles{});
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(StoredPresetsTest, AShorterTextReplacesALongerOneWhole) {
    StoredPresets stored;
    LastFiles files;
    put(files.currentDir, "/a/");
    stored.storeLastFiles(files);
    LastFiles recalled;
    put(recalled.currentDir, "/a/longer/one/");
    stored.recallLastFiles(recalled);
    EXPECT_STREQ(recalled.currentDir.data(), "/a/");
}

} // namespace
} // namespace mirelon::test
