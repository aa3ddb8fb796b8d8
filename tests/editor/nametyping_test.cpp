// A name while it is typed, and one that is longer than its field.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <algorithm>
#include <gtest/gtest.h>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t selectionColor = 0x7ED6E2;
constexpr int fieldTop = 320;
constexpr int fieldBottom = 334;
constexpr int fieldLeft = 91;
constexpr int fieldRight = 201;

class NameTyping : public testing::TestWithParam<const char*> {
  protected:
    NameTyping() {
        setenv("MIRELON_SCALE", GetParam(), 1);
        editor = std::make_unique<EditorHost>();
        editor->open();
        unsetenv("MIRELON_SCALE");
    }
    void click() { editor->click(nameField.x, nameField.y); }
    // No second click of two: the pointer has been away.
    void clickAt(int x) {
        editor->moveTo(x, nameField.y - 20);
        editor->click(x, nameField.y);
    }
    void key(unsigned long keysym, int times = 1) {
        for (int i = 0; i < times; ++i)
            editor->key(keysym);
    }
    void keyWith(unsigned long modifier, unsigned long keysym, int times = 1) {
        editor->hold(modifier);
        key(keysym, times);
        editor->letGo(modifier);
    }
    // Another name than the field has, so that it comes to the effect.
    std::string nameAfterReturn() {
        editor->key(XK_Return);
        return editor->effect->programName();
    }
    // The part of the window between two places of scale 1.
    Pixels part(int left, int right) {
        const auto scaled = [this](int at) { return static_cast<int>(at * editor->scale); };
        return editor->pixels().part(scaled(left), scaled(fieldTop), scaled(right),
                                     scaled(fieldBottom));
    }
    bool isSelected(int left, int right) {
        const Pixels pixels = part(left, right);
        int marked = 0;
        for (int y = 0; y < pixels.height; ++y)
            for (int x = 0; x < pixels.width; ++x)
                marked += pixels.at(x, y) == selectionColor ? 1 : 0;
        return marked > 0;
    }
    Pixels shown(const std::string& name) {
        editor->effect->setProgramName(name);
        editor->moveTo(150, 305);
        return part(fieldLeft, fieldRight);
    }

    std::unique_ptr<EditorHost> editor;
};
INSTANTIATE_TEST_SUITE_P(AtScale, NameTyping, testing::Values("1", "1.5", "3"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             std::ranges::replace(name, '.', '_');
                             return name;
                         });

TEST_P(NameTyping, ALongNameEndsInAnEllipsisWhileNobodyTypes) {
    const Pixels whole = shown(std::string(24, 'w'));
    constexpr std::size_t lettersThatFit = 11;
    bool found = false;
    for (std::size_t letters = lettersThatFit; letters > 3 && !found; --letters)
        found = shown(std::string(letters, 'w') + "\u2026") == whole;
    EXPECT_TRUE(found);
}

TEST_P(NameTyping, ShowsTheEndOfALongNameWhileItIsTypedThere) {
    click();
    editor->type(std::string(40, 'w'));
    keyWith(XK_Shift_L, XK_Left);
    EXPECT_TRUE(isSelected(fieldRight - 12, fieldRight));
    EXPECT_FALSE(isSelected(fieldLeft, fieldRight - 20));
}

TEST_P(NameTyping, ScrollsToTheBeginningWithHomeAndBackWithEnd) {
    click();
    editor->type(std::string(40, 'w'));
    key(XK_Home);
    keyWith(XK_Shift_L, XK_Right);
    EXPECT_TRUE(isSelected(fieldLeft, fieldLeft + 12));
    EXPECT_FALSE(isSelected(fieldLeft + 20, fieldRight));
    key(XK_End);
    keyWith(XK_Shift_L, XK_Left);
    EXPECT_TRUE(isSelected(fieldRight - 12, fieldRight));
}

TEST_P(NameTyping, ScrollsWithTheArrows) {
    click();
    editor->type(std::string(20, 'w'));
    key(XK_Left, 18);
    keyWith(XK_Shift_L, XK_Left);
    EXPECT_TRUE(isSelected(fieldLeft, fieldLeft + 12));
    EXPECT_FALSE(isSelected(fieldLeft + 20, fieldRight));
}

TEST_P(NameTyping, MovesTheCaretWithTheKeys) {
    click();
    editor->type("one two");
    keyWith(XK_Control_L, XK_Left);
    editor->type("a");
    key(XK_Home);
    editor->type("b");
    key(XK_Right);
    key(XK_Delete);
    key(XK_End);
    key(XK_BackSpace);
    EXPECT_EQ(nameAfterReturn(), "boe atw");
}

TEST_P(NameTyping, SelectsAllWithControlA) {
    click();
    editor->type("abc");
    keyWith(XK_Control_L, 'a');
    EXPECT_TRUE(isSelected(fieldLeft, fieldRight));
    editor->type("x");
    EXPECT_EQ(nameAfterReturn(), "x");
}

TEST_P(NameTyping, PutsTheCaretWhereTheMouseClicks) {
    click();
    editor->type("ww");
    // The text stands in the middle of the field.
    clickAt(nameField.x + 1);
    editor->type("a");
    clickAt(fieldLeft + 2);
    editor->type("b");
    clickAt(fieldRight - 2);
    editor->type("c");
    EXPECT_EQ(nameAfterReturn(), "bwawc");
}

TEST_P(NameTyping, SelectsWhatTheMouseIsDraggedOver) {
    click();
    editor->type("wwww");
    editor->drag(fieldRight - 2, nameField.y, nameField.x, nameField.y);
    editor->type("x");
    EXPECT_EQ(nameAfterReturn(), "wwx");
}

TEST_P(NameTyping, SelectsAWordWithADoubleClick) {
    click();
    editor->type("wwww wwww");
    editor->moveTo(nameField.x + 20, nameField.y + 20);
    editor->moveTo(nameField.x + 20, nameField.y);
    for (int i = 0; i < 2; ++i) {
        editor->window->press();
        editor->window->release();
    }
    editor->run();
    editor->type("x");
    EXPECT_EQ(nameAfterReturn(), "wwww x");
}

TEST_P(NameTyping, SelectsInTheColoursOfTheWindow) {
    click();
    EXPECT_TRUE(isSelected(fieldLeft, fieldRight));
}

TEST_P(NameTyping, TakesTheKeysOfTheNumberBlock) {
    click();
    for (const int keysym : {XK_KP_Add, XK_KP_Subtract, XK_KP_Multiply, XK_KP_Divide})
        key(static_cast<unsigned long>(keysym));
    key(XK_KP_Enter);
    EXPECT_EQ(editor->effect->programName(), "+-*/");
}

TEST_P(NameTyping, StartsAnewWhenTheHostRenamesThePresetMeanwhile) {
    click();
    editor->type("abc");
    editor->effect->setProgramName("theirs");
    EXPECT_EQ(nameAfterReturn(), "theirs");
}

// The host may close the window at any moment.
TEST(NameTypingEnds, WithTheWindowAndCountsAsTyped) {
    EditorHost editor;
    editor.open();
    editor.click(nameField.x, nameField.y);
    editor.type("evening");
    editor.close();
    EXPECT_EQ(editor.effect->programName(), "evening");
}

} // namespace
