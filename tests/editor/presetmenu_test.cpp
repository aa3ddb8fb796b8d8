// The names in the preset menu. Choosing a line gives the preset the name that
// stands there: one that is out of date would rename it.
#include "tests/editor/presetmenu.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;
using namespace std::chrono_literals;

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

TEST_F(PresetMenu, IsClosedUnchangedByASecondClickOnItsButton) {
    editor.click(rockerRight.x, rockerRight.y);
    editor.moveTo(nowhere.x, nowhere.y);
    const Pixels closed = editor.pixels();
    // A double click, one that is none, and a menu that has long been open.
    for (const auto apart : {100ms, 420ms, 800ms})
        for (const int x : {menuButtonLeft, menuButton.x}) {
            editor.host.forgetCalls();
            editor.click(x, menuButton.y);
            editor.run(apart);
            editor.click(x, menuButton.y);
            editor.moveTo(nowhere.x, nowhere.y);
            EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() == closed; }))
                << apart.count() << ' ' << x;
            EXPECT_TRUE(editor.host.calls().empty()) << apart.count() << ' ' << x;
        }
    EXPECT_EQ(editor.effect->programName(), "extended width");
}

TEST_F(PresetMenu, StaysOpenAfterALongClickOnItsButton) {
    editor.host.forgetCalls();
    editor.moveTo(menuButton.x, menuButton.y);
    const Pixels closed = editor.pixels();
    editor.press();
    ASSERT_TRUE(editor.runUntilStill(closed));
    editor.run(500ms); // what makes the click a long one
    const Pixels open = editor.window->pixels();
    editor.release();
    EXPECT_EQ(editor.pixels(), open);
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_F(PresetMenu, TakesThePresetThatThePointerIsDraggedTo) {
    editor.moveTo(menuButton.x, menuButton.y);
    const Pixels closed = editor.pixels();
    editor.press();
    ASSERT_TRUE(editor.runUntilStill(closed));
    const Position line = menuLine(4, closed, editor.pixels());
    editor.moveTo(line.x - 10, line.y);
    editor.moveTo(line.x, line.y);
    editor.release();
    EXPECT_TRUE(
        editor.runUntil([&] { return editor.effect->programName() == "balanse to the right"; }));
}

TEST_F(PresetMenu, IsClosedUnchangedByTheEscapeKey) {
    editor.click(rockerRight.x, rockerRight.y);
    editor.host.forgetCalls();
    const Pixels closed = editor.pixels();
    editor.click(menuButton.x, menuButton.y);
    ASSERT_TRUE(editor.runUntilStill(closed));
    const Pixels open = editor.window->pixels();
    editor.key(XK_Escape);
    ASSERT_TRUE(editor.runUntilStill(open));
    EXPECT_TRUE(editor.host.calls().empty());
    EXPECT_EQ(editor.effect->programName(), "extended width");
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
