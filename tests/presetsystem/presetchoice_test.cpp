// Choosing, stepping and naming in the panel: what the user has called a preset stays
// with that preset.
#include "tests/presetsystem/scriptededitor.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace mirelon::test {
namespace {

class PresetChoice : public testing::Test {
  protected:
    PresetChoice() { setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1); }
    ~PresetChoice() override { editor.dropFrame(); }

    void choose(int preset) {
        editor.presetMenu().setValue(static_cast<float>(preset));
        editor.valueChanged(&editor.presetMenu());
    }
    void step(float direction) {
        VSTGUI::CControl* const rocker = editor.control(rockerTag);
        rocker->setValue(direction);
        editor.valueChanged(rocker);
    }
    void typeName(const char* name) {
        editor.nameField().setText(name);
        editor.valueChanged(&editor.nameField());
    }
    std::string field() const { return editor.nameField().getText().getString(); }
    std::string title(int preset) const {
        return editor.presetMenu().getEntry(preset)->getTitle().getString();
    }
    // The names as they are stored and as the menu has them, but for that of `except`.
    void expectOthersUnchanged(int except) {
        for (int preset = 0; preset < kNumPresets; ++preset) {
            if (preset == except)
                continue;
            const std::string name = "preset " + std::to_string(preset);
            EXPECT_EQ(effect.name(preset), name);
            EXPECT_EQ(title(preset), name);
        }
    }

    static constexpr int rockerTag = 1001;
    const TemporaryFolder folder;
    RecordingEffect effect;
    ScriptedEditor& editor = *new ScriptedEditor(&effect); // the effect's
};

TEST_F(PresetChoice, InTheMenuRenamesNoPreset) {
    editor.makePanel();
    for (const int preset : {3, 10, 0}) {
        choose(preset);
        EXPECT_EQ(effect.getPresetNo(), preset);
        EXPECT_EQ(field(), "preset " + std::to_string(preset));
        expectOthersUnchanged(-1);
    }
}

TEST_F(PresetChoice, ByAStepRenamesNoPreset) {
    editor.makePanel();
    step(1.0F);
    step(1.0F);
    step(-1.0F);
    EXPECT_EQ(effect.getPresetNo(), 1);
    EXPECT_EQ(field(), "preset 1");
    expectOthersUnchanged(-1);
}

TEST_F(PresetChoice, ByAStepMovesTheMenusMark) {
    editor.makePanel();
    step(1.0F);
    EXPECT_EQ(editor.presetMenu().getCurrentIndex(), 1);
    step(1.0F);
    EXPECT_EQ(editor.presetMenu().getCurrentIndex(), 2);
    step(-1.0F);
    EXPECT_EQ(editor.presetMenu().getCurrentIndex(), 1);
}

TEST_F(PresetChoice, ByAStepEndsAtTheFirstAndTheLastPreset) {
    editor.makePanel();
    step(-1.0F);
    EXPECT_EQ(effect.getPresetNo(), 0);
    choose(kNumPresets - 1);
    step(1.0F);
    EXPECT_EQ(effect.getPresetNo(), kNumPresets - 1);
    EXPECT_EQ(field(), "preset 10");
    EXPECT_EQ(editor.presetMenu().getCurrentIndex(), kNumPresets - 1);
    expectOthersUnchanged(-1);
}

TEST_F(PresetChoice, OfAnEntryThatThereIsNotChangesNothing) {
    editor.makePanel();
    choose(2);
    const std::string before = effect.bytes();
    choose(kNumPresets); // which the menu does not take
    const auto other = VSTGUI::makeOwned<VSTGUI::CTextLabel>(VSTGUI::CRect(0, 0, 1, 1));
    other->setTag(editor.presetMenu().getTag());
    other->setMax(static_cast<float>(kNumPresets));
    other->setValue(static_cast<float>(kNumPresets));
    editor.valueChanged(other);
    EXPECT_EQ(effect.getPresetNo(), 2);
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_EQ(field(), "preset 2");
}

TEST_F(PresetChoice, IsWhatATypedNameIsFor) {
    editor.makePanel();
    step(1.0F);
    typeName("mine");
    EXPECT_EQ(effect.name(1), "mine");
    EXPECT_EQ(title(1), "mine");
    expectOthersUnchanged(1);
}

TEST_F(PresetChoice, KeepsTheBytesOfANameThatCannotBeShown) {
    effect.record(3).setName("caf\xE9");
    editor.makePanel();
    const std::string before = effect.bytes();
    choose(3);
    EXPECT_EQ(effect.bytes(), before);
    choose(0);
    step(1.0F);
    step(1.0F);
    step(1.0F);
    EXPECT_EQ(effect.getPresetNo(), 3);
    EXPECT_EQ(effect.bytes(), before);
}

TEST_F(PresetChoice, OfAPresetCalledLikeASeparatorIsLikeAnyOther) {
    effect.record(3).setName("-");
    editor.makePanel();
    ASSERT_EQ(editor.presetMenu().getNbEntries(), kNumPresets);
    EXPECT_FALSE(editor.presetMenu().getEntry(3)->isSeparator());
    choose(3);
    EXPECT_EQ(effect.getPresetNo(), 3);
    EXPECT_EQ(effect.name(3), "-");
    expectOthersUnchanged(3);
}

TEST_F(PresetChoice, ANameThatIsBeingTypedIsOverwrittenByNoLaterIdle) {
    editor.makePanel();
    std::string name = "from the host";
    std::thread([&] { effect.setProgramName(name.data()); }).join();
    editor.idle();
    ASSERT_EQ(field(), name);
    editor.nameField().setText("half ty");
    for (int i = 0; i < 3; ++i)
        editor.idle();
    EXPECT_EQ(field(), "half ty");
}

} // namespace
} // namespace mirelon::test
