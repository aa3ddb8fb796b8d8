// The names in the preset menu. Choosing a line gives the preset the name that
// stands there: one that is out of date would rename it.
#include "tests/editor/presetmenu.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;

namespace {

class PresetMenu : public testing::Test {
  protected:
    PresetMenu() { editor.open(); }
    std::string nameAt(int preset) { return editor.effect->programNameAt(preset).value_or("?"); }
    // The field that shows the current preset's name, with the pointer elsewhere.
    Pixels shownName() {
        editor.moveTo(150, panelTop);
        return editor.pixels().part(91, 320, 201, 334);
    }

    EditorHost editor;
};

TEST_F(PresetMenu, ShowsTheNameOfTheChosenPresetInTheField) {
    for (int i = 0; i < 4; ++i)
        editor.click(rockerRight.x, rockerRight.y);
    const Pixels fourth = shownName();
    editor.click(rockerLeft.x, rockerLeft.y);
    ASSERT_NE(shownName(), fourth);
    ASSERT_TRUE(chooseFromMenu(editor, 4));
    EXPECT_EQ(shownName(), fourth);
}

TEST_F(PresetMenu, KnowsATypedName) {
    editor.click(nameField.x, nameField.y);
    editor.type("abcdefghijklmnopqrstuvwxyz1234");
    editor.key(XK_Return);
    editor.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(chooseFromMenu(editor, 0));
    EXPECT_EQ(nameAt(0), "abcdefghijklmnopqrstuvwx");
}

TEST_F(PresetMenu, KnowsANameGivenByTheHost) {
    editor.effect->setProgramName("mine");
    editor.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(chooseFromMenu(editor, 0));
    EXPECT_EQ(nameAt(0), "mine");
}

TEST_F(PresetMenu, KnowsANameGivenOnAnotherThreadJustBeforeAStep) {
    editor.moveTo(rockerRight.x, rockerRight.y);
    std::thread([&] { editor.effect->setProgramName("mine"); }).join();
    editor.press(); // no idle in between
    editor.release();
    ASSERT_EQ(editor.effect->programName(), "extended width");
    ASSERT_TRUE(chooseFromMenu(editor, 0));
    EXPECT_EQ(nameAt(0), "mine");
}

TEST_F(PresetMenu, KnowsTheNamesOfANewBank) {
    const auto factory = editor.effect->chunk();
    editor.effect->setProgramName("mine");
    const auto changed = editor.effect->chunk();
    editor.effect->setChunk(factory);
    editor.click(rockerRight.x, rockerRight.y);
    editor.effect->setChunk(changed);
    editor.click(rockerRight.x, rockerRight.y);
    ASSERT_TRUE(chooseFromMenu(editor, 0));
    EXPECT_EQ(nameAt(0), "mine");
}

} // namespace
