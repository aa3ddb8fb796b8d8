// The name field and the desktop's clipboard, with another program at its other end.
#include "tests/editor/otherprogram.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

class EditorClipboard : public testing::TestWithParam<Drive> {
  protected:
    EditorClipboard()
        : editor(GetParam())
        , other((editor.open(), editor)) {
        other.clear();
    }
    static void control(EditorHost& where, char letter) {
        where.hold(XK_Control_L);
        where.key(static_cast<unsigned long>(letter));
        where.letGo(XK_Control_L);
    }
    void control(char letter) { control(editor, letter); }
    // All of the name is selected then.
    void clickName() { editor.click(nameField.x, nameField.y); }
    // Until that many of the other program's texts have been taken or refused.
    bool serveUntilSettled(std::size_t texts) {
        return editor.runUntil([&] {
            other.serve();
            return other.settled() >= texts;
        });
    }
    // The time of the server's, of which 0 is none.
    unsigned long copiedAt() {
        const auto told = other.paste("TIMESTAMP");
        unsigned long time = 0;
        if (told && told->size() == sizeof time)
            std::memcpy(&time, told->data(), sizeof time);
        return time;
    }
    std::string nameAfterReturn() {
        editor.key(XK_Return);
        return editor.effect->programName();
    }

    EditorHost editor;
    OtherProgram other;
};
INSTANTIATE_TEST_SUITE_P(BothDrives, EditorClipboard, testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

TEST_P(EditorClipboard, GivesWhatHasBeenCopiedToOtherPrograms) {
    clickName();
    control('c');
    EXPECT_EQ(other.paste(), "init");
    EXPECT_EQ(other.typeOfAnswer(), "UTF8_STRING");
    EXPECT_EQ(other.paste("STRING"), "init");
    EXPECT_EQ(other.typeOfAnswer(), "STRING");
    EXPECT_EQ(nameAfterReturn(), "init");
}

TEST_P(EditorClipboard, GivesItToProgramsThatDoNotSayWhereTheyWantIt) {
    clickName();
    control('c');
    EXPECT_EQ(other.pasteAnywhere(), "init");
}

TEST_P(EditorClipboard, GivesNothingToWhoAskedBeforeItWasCopied) {
    clickName();
    control('c');
    const unsigned long since = copiedAt();
    ASSERT_NE(since, 0U);
    EXPECT_EQ(other.pasteAt(since - 1), std::nullopt);
    EXPECT_EQ(other.pasteAt(since), "init");
}

TEST_P(EditorClipboard, TellsOtherProgramsWhatItOffers) {
    clickName();
    control('c');
    const auto offered = other.targets();
    for (const char* name : {"TARGETS", "TIMESTAMP", "UTF8_STRING", "STRING"})
        EXPECT_TRUE(std::ranges::count(offered, name) == 1) << name;
    EXPECT_EQ(other.typeOfAnswer(), "ATOM");
    EXPECT_EQ(other.paste("image/png"), std::nullopt);
}

TEST_P(EditorClipboard, TellsOtherProgramsSinceWhenItHasTheText) {
    clickName();
    control('c');
    const unsigned long first = copiedAt();
    EXPECT_EQ(other.typeOfAnswer(), "INTEGER");
    editor.run(20ms);
    clickName();
    control('c');
    EXPECT_TRUE(editor.runUntil([&] { return copiedAt() > first; }));
    EXPECT_NE(first, 0U);
}

TEST_P(EditorClipboard, GivesProgramsWithoutUnicodeWhatTheyCanShow) {
    // Of both halves of what is beyond ASCII there, and one that is not in it.
    editor.effect->setProgramName("\u00fcber \u00b1 \u20ac");
    clickName();
    control('c');
    EXPECT_EQ(other.paste(), "\u00fcber \u00b1 \u20ac");
    EXPECT_EQ(other.paste("STRING"), "\xfc"
                                     "ber \xb1 ?");
}

TEST_P(EditorClipboard, TakesWhatIsCutOutOfTheText) {
    clickName();
    editor.type("abcd");
    editor.hold(XK_Shift_L);
    editor.key(XK_Left);
    editor.key(XK_Left);
    editor.letGo(XK_Shift_L);
    control('x');
    EXPECT_EQ(other.paste(), "cd");
    EXPECT_EQ(nameAfterReturn(), "ab");
}

TEST_P(EditorClipboard, KeepsTheTextWhenItHearsLateOfTheLossOfAnEarlierOne) {
    clickName();
    control('c');
    const unsigned long since = copiedAt();
    ASSERT_NE(since, 0U);
    other.tellOwnerOfLoss(since - 1);
    EXPECT_EQ(other.paste(), "init");
    other.tellOwnerOfLoss(since);
    EXPECT_EQ(other.paste(), std::nullopt);
}

TEST_P(EditorClipboard, KeepsTheTextWhenNothingIsSelected) {
    other.copy("theirs");
    clickName();
    editor.key(XK_End);
    control('c');
    control('x');
    EXPECT_TRUE(other.owns());
    EXPECT_EQ(nameAfterReturn(), "init");
}

TEST_P(EditorClipboard, PastesItsOwnTextAtOnce) {
    clickName();
    control('c');
    editor.key(XK_End);
    // All of them wait for the editor when it looks.
    editor.window->keyDown(XK_Control_L);
    editor.window->keyDown('v');
    editor.window->keyUp('v');
    editor.window->keyUp(XK_Control_L);
    EXPECT_EQ(nameAfterReturn(), "initinit");
}

TEST_P(EditorClipboard, PastesWhatAnotherProgramHasCopied) {
    other.copy("B\u00e4r");
    clickName();
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "B\u00e4r");
}

TEST_P(EditorClipboard, PastesAtTheCaret) {
    other.copy("xy");
    clickName();
    editor.type("ab");
    editor.key(XK_Left);
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "axyb");
}

TEST_P(EditorClipboard, PastesOneLine) {
    other.copy("\nfirst\nsecond");
    clickName();
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "first");
}

TEST_P(EditorClipboard, PastesFromProgramsWithoutUnicode) {
    other.copy("B\xe4r", OtherProgram::Offers::latin1Only);
    clickName();
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "B\u00e4r");
}

TEST_P(EditorClipboard, RefusesATextThatComesInPiecesAndTakesTheNext) {
    other.copy("long", OtherProgram::Offers::pieces);
    clickName();
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    other.copy("short");
    control('v');
    ASSERT_TRUE(serveUntilSettled(2));
    EXPECT_EQ(nameAfterReturn(), "short");
}

TEST_P(EditorClipboard, PastesNothingWhenThereIsNothing) {
    clickName();
    control('v');
    editor.key(XK_End);
    editor.type("x"); // comes after the answer
    EXPECT_EQ(nameAfterReturn(), "initx");
}

TEST_P(EditorClipboard, PastesWhatAnotherProgramHasCopiedSince) {
    clickName();
    control('c');
    other.copy("theirs");
    control('v');
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "theirs");
}

TEST_P(EditorClipboard, PastesWhatHasBeenCopiedHere) {
    clickName();
    control('c');
    editor.key(XK_End);
    control('v');
    control('v');
    EXPECT_EQ(nameAfterReturn(), "initinitinit");
}

TEST_P(EditorClipboard, PastesWhatHasBeenCopiedInAnotherWindow) {
    clickName();
    control('c');
    editor.key(XK_Escape);
    editor.moveTo(-10, -10);
    EditorHost second(GetParam());
    second.open();
    second.effect->setProgramName("other");
    second.click(nameField.x, nameField.y);
    const Pixels selected = second.pixels();
    control(second, 'v');
    EXPECT_TRUE(second.runUntil([&] { return second.pixels() != selected; }));
    second.key(XK_Return);
    EXPECT_EQ(second.effect->programName(), "init");
}

TEST_P(EditorClipboard, PastesNothingThatComesAfterTheTyping) {
    other.copy("late");
    clickName();
    control('v');
    editor.key(XK_Escape);
    clickName();
    ASSERT_TRUE(serveUntilSettled(1));
    EXPECT_EQ(nameAfterReturn(), "init");
}

TEST_P(EditorClipboard, IsEmptyWhenTheWindowThatCopiedHasClosed) {
    clickName();
    control('c');
    EXPECT_TRUE(other.anyoneOwns());
    editor.close();
    EXPECT_TRUE(editor.runUntil([&] { return !other.anyoneOwns(); }));
}

TEST_P(EditorClipboard, LeavesAnotherProgramsTextAloneWhenTheWindowCloses) {
    clickName();
    control('c');
    other.copy("theirs");
    editor.close();
    EXPECT_TRUE(editor.window->becomesEmpty());
    EXPECT_TRUE(other.owns());
}

} // namespace
