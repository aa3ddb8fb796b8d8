// A line of text while it is typed, and what of it shows.
#include "editor/editableline.h"
#include "editor/textscroll.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using Step = EditableLine::Step;
constexpr auto back = EditableLine::Direction::back;
constexpr auto forward = EditableLine::Direction::forward;

EditableLine lineOf(std::string_view text) {
    EditableLine line;
    line.assign(text);
    return line;
}

// With the caret at `place` and nothing selected.
EditableLine lineAt(std::string_view text, std::size_t place) {
    EditableLine line = lineOf(text);
    line.moveTo(place, false);
    return line;
}

TEST(EditableLineTest, IsSelectedWholeAtFirst) {
    EXPECT_EQ(lineOf("width").selectedText(), "width");
}

TEST(EditableLineTest, TakesATypedCharacterInPlaceOfTheSelection) {
    EditableLine line = lineOf("width");
    line.insert(U'x');
    EXPECT_EQ(line.text(), "x");
    EXPECT_EQ(line.caret(), 1U);
}

TEST(EditableLineTest, TakesATextAtTheCaret) {
    EditableLine line = lineAt("ad", 1);
    line.insert("bc");
    EXPECT_EQ(line.text(), "abcd");
    EXPECT_EQ(line.caret(), 3U);
}

TEST(EditableLineTest, CountsCharactersRatherThanBytes) {
    EditableLine line = lineAt("B\u00e4\u00df\u20ac", 4);
    line.erase(back, Step::character);
    EXPECT_EQ(line.text(), "B\u00e4\u00df");
    EXPECT_EQ(line.size(), 3U);
}

TEST(EditableLineTest, ShowsAReplacementForBytesThatAreNoText) {
    EXPECT_EQ(lineOf("a\xFFz").text(), "a\uFFFDz");
}

TEST(EditableLineTest, TakesOfSeveralLinesTheFirstThatIsNotEmpty) {
    EditableLine line;
    line.insert("\r\n\nfirst\nsecond");
    EXPECT_EQ(line.text(), "first");
}

TEST(EditableLineTest, TakesNoControlCharacters) {
    EditableLine line;
    line.insert("a\tb\x1b\x7f");
    line.insert(U'\x03');
    EXPECT_EQ(line.text(), "ab");
}

TEST(EditableLineTest, DoesNotGrowBeyondItsCapacity) {
    EditableLine line;
    line.insert(std::string(EditableLine::capacity + 10, 'a'));
    line.insert(U'b');
    EXPECT_EQ(line.text(), std::string(EditableLine::capacity, 'a'));
}

TEST(EditableLineTest, ErasesTheSelectionWhicheverWay) {
    for (const auto direction : {back, forward}) {
        EditableLine line = lineAt("abcd", 1);
        line.moveTo(3, true);
        line.erase(direction, Step::word);
        EXPECT_EQ(line.text(), "ad");
        EXPECT_EQ(line.caret(), 1U);
    }
}

TEST(EditableLineTest, ErasesOneCharacterToEitherSide) {
    EditableLine line = lineAt("abcd", 2);
    line.erase(back, Step::character);
    EXPECT_EQ(line.text(), "acd");
    line.erase(forward, Step::character);
    EXPECT_EQ(line.text(), "ad");
}

TEST(EditableLineTest, ErasesNothingBeyondItsEnds) {
    EditableLine line = lineAt("ab", 0);
    line.erase(back, Step::character);
    line.moveTo(2, false);
    line.erase(forward, Step::character);
    EXPECT_EQ(line.text(), "ab");
}

TEST(EditableLineTest, ErasesAWordToEitherSide) {
    EditableLine line = lineAt("one two three", 7);
    line.erase(back, Step::word);
    EXPECT_EQ(line.text(), "one  three");
    line.erase(forward, Step::word);
    EXPECT_EQ(line.text(), "one ");
}

TEST(EditableLineTest, StepsByCharactersWordsAndToItsEnds) {
    EditableLine line = lineAt("one two", 7);
    line.move(back, Step::character, false);
    EXPECT_EQ(line.caret(), 6U);
    line.move(back, Step::word, false);
    EXPECT_EQ(line.caret(), 4U);
    line.move(back, Step::end, false);
    EXPECT_EQ(line.caret(), 0U);
    line.move(back, Step::character, false);
    EXPECT_EQ(line.caret(), 0U);
    line.move(forward, Step::word, false);
    EXPECT_EQ(line.caret(), 3U);
    line.move(forward, Step::end, false);
    EXPECT_EQ(line.caret(), 7U);
    line.move(forward, Step::character, false);
    EXPECT_EQ(line.caret(), 7U);
}

TEST(EditableLineTest, CollapsesASelectionToTheSideOfTheStep) {
    EditableLine line = lineOf("abc");
    line.move(back, Step::character, false);
    EXPECT_EQ(line.caret(), 0U);
    EXPECT_FALSE(line.hasSelection());
    line.selectAll();
    line.move(forward, Step::character, false);
    EXPECT_EQ(line.caret(), 3U);
}

TEST(EditableLineTest, KeepsTheOtherEndOfASelectionThatIsExtended) {
    EditableLine line = lineAt("abcd", 2);
    line.move(forward, Step::end, true);
    EXPECT_EQ(line.selectedText(), "cd");
    line.move(back, Step::end, true);
    EXPECT_EQ(line.selectedText(), "ab");
}

TEST(EditableLineTest, SelectsTheWordAroundAPlace) {
    EditableLine line = lineOf("one two three");
    line.selectWordAt(5);
    EXPECT_EQ(line.selectedText(), "two");
    line.selectWordAt(3);
    EXPECT_EQ(line.selectedText(), " ");
    line.selectWordAt(100);
    EXPECT_EQ(line.selectedText(), "three");
}

TEST(EditableLineTest, HasNoWordToSelectWhenItIsEmpty) {
    EditableLine line;
    line.selectWordAt(0);
    EXPECT_FALSE(line.hasSelection());
}

TEST(TextScrollTest, LeavesATextThatFitsAlone) {
    TextScroll scroll;
    scroll.follow(50, 80, 100);
    EXPECT_EQ(scroll.offset(), 0);
}

TEST(TextScrollTest, ScrollsJustFarEnoughToEitherSide) {
    TextScroll scroll;
    scroll.follow(130, 300, 100);
    EXPECT_EQ(scroll.offset(), 30);
    scroll.follow(60, 300, 100);
    EXPECT_EQ(scroll.offset(), 30);
    scroll.follow(10, 300, 100);
    EXPECT_EQ(scroll.offset(), 10);
}

TEST(TextScrollTest, LeavesNoRoomFreeBehindATextThatHasBecomeShorter) {
    TextScroll scroll;
    scroll.follow(300, 300, 100);
    EXPECT_EQ(scroll.offset(), 200);
    scroll.follow(150, 150, 100);
    EXPECT_EQ(scroll.offset(), 50);
    scroll.follow(20, 20, 100);
    EXPECT_EQ(scroll.offset(), 0);
}

} // namespace
} // namespace mirelon::test
