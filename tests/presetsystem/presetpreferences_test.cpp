#include "platform/preferences.h"

#include "tests/presetsystem/scriptededitor.h"
#include "tests/support/childprocess.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::string_literals;

class PresetPreferences : public testing::Test {
  protected:
    std::optional<std::string> stored(std::string_view key) const {
        return Preferences((config / "example.dravik.mirelon").string()).get(key);
    }
    void put(std::string_view key, std::string_view value) const {
        Preferences preferences((config / "example.dravik.mirelon").string());
        preferences.set(key, value);
        ASSERT_TRUE(preferences.synchronise());
    }

    const TemporaryFolder folder;
    const std::filesystem::path config = folder.path / "config";
};

TEST_F(PresetPreferences, BuildingAndDroppingAnInstanceLeavesNoTrace) {
    {
        ScriptedInstance instance(config);
        instance.effect.loadDefaults();
    }
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(PresetPreferences, TheCompareMemoriesHoldImagesOfTheCurrentPreset) {
    ScriptedInstance instance(config);
    instance.effect.setPresetNo(4);
    instance.editor->storeA();
    instance.effect.setPresetNo(5);
    instance.editor->storeB();
    EXPECT_EQ(stored("MemoAPreset"), "tSeT\x21" + instance.effect.bytes().substr(240, 60));
    EXPECT_EQ(stored("MemoBPreset"), "tSeT\x21" + instance.effect.bytes().substr(300, 60));
}

TEST_F(PresetPreferences, AMemoryIsRecalledIntoTheCurrentPreset) {
    ScriptedInstance instance(config);
    instance.effect.setPresetNo(4);
    instance.editor->storeA();
    instance.effect.setPresetNo(1);
    instance.editor->recallA();
    EXPECT_EQ(instance.effect.name(1), "preset 4");
    EXPECT_EQ(instance.effect.getParameter(2), RecordingEffect::startValue(4, 2));
    EXPECT_EQ(instance.effect.getPresetNo(), 1);
}

TEST_F(PresetPreferences, TheUserIsToldWhichMemoryIsStoredAndRecalled) {
    ScriptedInstance instance(config);
    instance.editor->storeA();
    instance.editor->storeB();
    instance.editor->saveDefaultPreset();
    instance.editor->recallA();
    instance.editor->recallB();
    EXPECT_EQ(instance.editor->told,
              (std::vector<std::string>{"stored as A", "stored as B", "stored as default preset",
                                        "recalled A", "recalled B"}));
}

TEST_F(PresetPreferences, RecallingAnEmptyMemoryChangesNothing) {
    ScriptedInstance instance(config);
    const std::string before = instance.effect.bytes();
    instance.editor->recallA();
    instance.editor->recallB();
    instance.editor->loadDefaultPreset();
    EXPECT_EQ(instance.effect.bytes(), before);
    EXPECT_TRUE(instance.effect.sets.empty());
}

TEST_F(PresetPreferences, WithoutADefaultBankPresetZeroIsApplied) {
    ScriptedInstance instance(config);
    instance.effect.setPresetNo(7);
    const std::string before = instance.effect.bytes();
    instance.editor->loadDefaultBank();
    EXPECT_EQ(instance.effect.getPresetNo(), 0);
    EXPECT_EQ(instance.effect.bytes(), before);
}

TEST_F(PresetPreferences, DefaultsAreClearedOneByOne) {
    ScriptedInstance instance(config);
    instance.editor->saveDefaultBank();
    instance.editor->saveDefaultPreset();
    put("DefaultMidi", "an old map");
    instance.editor->resetDefaultBank();
    EXPECT_FALSE(stored("DefaultBank"));
    EXPECT_TRUE(stored("DefaultPreset"));
    instance.editor->resetDefaultPreset();
    EXPECT_FALSE(stored("DefaultPreset"));
    instance.editor->resetDefaultMidi();
    EXPECT_FALSE(stored("DefaultMidi"));
}

TEST_F(PresetPreferences, AShortStoredImageIsPaddedWithZeros) {
    ScriptedInstance instance(config);
    put("MemoAPreset", "tSeT\x21short"s + std::string(19, '\0') + "\x3F\x80\0\0"s);
    instance.editor->recallA();
    EXPECT_EQ(instance.effect.name(0), "short");
    EXPECT_EQ(instance.effect.getParameter(0), 1.0F);
    EXPECT_EQ(instance.effect.getParameter(1), 0.0F);
}

TEST_F(PresetPreferences, ALongStoredImageIsCut) {
    ScriptedInstance instance(config);
    put("MemoAPreset",
        "tSeT\x21" + instance.effect.bytes().substr(120, 60) + std::string(100, '\xFF'));
    instance.editor->recallA();
    EXPECT_EQ(instance.effect.bytes().substr(0, 60), instance.effect.bytes().substr(120, 60));
}

TEST_F(PresetPreferences, DefaultBankThenDefaultPresetThenPathsAreLoaded) {
    {
        ScriptedInstance instance(config);
        instance.effect.record(0).setName("bank 0");
        instance.effect.record(9).setName("bank 9");
        instance.editor->saveDefaultBank();
        instance.effect.setPresetNo(4);
        instance.editor->saveDefaultPreset();
        instance.editor->setDir("/the/folder/");
    }
    ScriptedInstance next(config);
    next.effect.setPresetNo(6);
    next.effect.loadDefaults();
    EXPECT_EQ(next.effect.name(9), "bank 9");
    EXPECT_EQ(next.effect.name(0), "preset 4");
    EXPECT_EQ(next.effect.getPresetNo(), 0);
    EXPECT_STREQ(next.editor->lastFiles.currentDir.data(), "/the/folder/");
}

TEST_F(PresetPreferences, PathsAreStoredWhenTheEditorGoes) {
    {
        ScriptedInstance instance(config);
        instance.editor->makeFrame();
        instance.editor->user->answers.emplace_back((folder / "a.dvp").string());
        instance.editor->savePreset();
        instance.editor->dropFrame();
        EXPECT_FALSE(stored("CurrDir"));
    }
    EXPECT_EQ(stored("CurrDir"), folder.directory());
    EXPECT_EQ(stored("CurrPreset"), "a.dvp");
    EXPECT_EQ(stored("CurrBank"), "");
}

TEST_F(PresetPreferences, PathsAreWrittenOnlyWhenOneDiffers) {
    put("CurrDir", "/a/");
    put("CurrBank", "b.dvb");
    const auto file = config / "example.dravik.mirelon" / PreferenceStore::fileName;
    const std::string before = contentsOf(file);
    {
        ScriptedInstance instance(config);
        instance.effect.loadDefaults();
    }
    EXPECT_EQ(contentsOf(file), before);
    EXPECT_FALSE(stored("CurrPreset"));
    {
        ScriptedInstance instance(config);
        instance.effect.loadDefaults();
        instance.editor->setDir("/b/");
    }
    EXPECT_EQ(stored("CurrDir"), "/b/");
    EXPECT_EQ(stored("CurrBank"), "b.dvb");
    EXPECT_EQ(stored("CurrPreset"), "");
}

TEST_F(PresetPreferences, AnInstanceThatKnowsNoPathsForgetsNobodyElses) {
    {
        ScriptedInstance instance(config);
        instance.effect.loadDefaults();
        put("CurrDir", "/stored/meanwhile/");
    }
    EXPECT_EQ(stored("CurrDir"), "/stored/meanwhile/");
}

TEST_F(PresetPreferences, PathsAreBytesAndCutAt256) {
    put("CurrDir", "/\xFF\xE9/");
    put("CurrBank", std::string(300, 'b'));
    put("CurrPreset", "a\0b"s);
    ScriptedInstance instance(config);
    instance.editor->recallPathsAndFilenames();
    EXPECT_STREQ(instance.editor->lastFiles.currentDir.data(), "/\xFF\xE9/");
    EXPECT_EQ(instance.editor->lastFiles.currentBankName.data(), std::string(256, 'b'));
    EXPECT_STREQ(instance.editor->lastFiles.currentPresetName.data(), "a");
}

TEST_F(PresetPreferences, AMissingPathLeavesItsBuffer) {
    put("CurrBank", "b.dvb");
    ScriptedInstance instance(config);
    instance.editor->setDir("/as/it/was/");
    instance.editor->recallPathsAndFilenames();
    EXPECT_STREQ(instance.editor->lastFiles.currentDir.data(), "/as/it/was/");
    EXPECT_STREQ(instance.editor->lastFiles.currentBankName.data(), "b.dvb");
}

TEST_F(PresetPreferences, WithoutAHomeEverythingStillWorks) {
    unsetenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    const std::string savedHome = home != nullptr ? home : "";
    unsetenv("HOME");
    {
        RecordingEffect homeless;
        auto* editor = new ScriptedEditor(&homeless); // owned by the effect
        editor->storeA();
        editor->saveDefaultBank();
        homeless.setPresetName("changed");
        editor->recallA();
        homeless.loadDefaults();
        EXPECT_EQ(homeless.name(0), "changed");
        editor->setDir("/x/");
    }
    setenv("HOME", savedHome.c_str(), 1);
    EXPECT_TRUE(is_empty(folder.path));
}

TEST_F(PresetPreferences, MemoriesAndDefaultsSurviveARestartOfTheHost) {
    ASSERT_EQ(inChild([&] {
                  ScriptedInstance instance(config);
                  instance.effect.setPresetNo(1);
                  instance.editor->storeA();
                  instance.effect.setPresetNo(2);
                  instance.editor->storeB();
                  instance.effect.record(10).setName("of the default bank");
                  instance.editor->saveDefaultBank();
                  instance.effect.setPresetNo(3);
                  instance.editor->saveDefaultPreset();
                  return 0;
              }),
              0);
    ASSERT_EQ(inChild([&] {
                  ScriptedInstance instance(config);
                  instance.effect.loadDefaults();
                  if (instance.effect.name(10) != "of the default bank" ||
                      instance.effect.name(0) != "preset 3")
                      return 1;
                  instance.editor->recallA();
                  if (instance.effect.name(0) != "preset 1")
                      return 2;
                  instance.editor->recallB();
                  return instance.effect.name(0) == "preset 2" ? 0 : 3;
              }),
              0);
}

TEST_F(PresetPreferences, AHostThatIsAlreadyRunningSeesThem) {
    const Signal isRunning;
    const Signal isStored;
    ChildProcess running([&] {
        ScriptedInstance instance(config);
        instance.effect.loadDefaults();
        if (!isRunning.signal() || !isStored.wait())
            return 1;
        instance.editor->recallB();
        if (instance.effect.name(0) != "preset 9")
            return 2;
        instance.effect.loadDefaults();
        return instance.effect.name(5) == "of the default bank" ? 0 : 3;
    });
    ASSERT_TRUE(isRunning.wait());
    ScriptedInstance instance(config);
    instance.effect.setPresetNo(9);
    instance.editor->storeB();
    instance.effect.record(5).setName("of the default bank");
    instance.editor->saveDefaultBank();
    ASSERT_TRUE(isStored.signal());
    EXPECT_EQ(running.wait(), 0);
}

} // namespace
} // namespace mirelon::test
