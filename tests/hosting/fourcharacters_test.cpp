#include "hosting/fourcharacters.h"

#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

TEST(FourCharacters, AreReadFromTheMostSignificantByte) {
    EXPECT_EQ(fourCharacterText(0x4D724C6E), "MrLn");
}

TEST(FourCharacters, ThatCannotBeShownAreQuestionMarks) {
    EXPECT_EQ(fourCharacterText(0x41001F7F), "A???");
    EXPECT_EQ(fourCharacterText(-1), "????");
}

} // namespace
} // namespace mirelon::hosting
