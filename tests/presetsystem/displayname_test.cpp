#include "presetsystem/displayname.h"

#include <gtest/gtest.h>

using mirelon::validUtf8;

namespace {

constexpr const char* unknown = "\xEF\xBF\xBD";

TEST(ValidUtf8, LeavesWholeCharactersAsTheyAre) {
    for (const char* text : {"", "plain", "Gr\xC3\xB6\xC3\x9F\x65", "\xE2\x82\xAC",
                             "\xF0\x9F\x8E\xB5", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"})
        EXPECT_EQ(validUtf8(text), text);
}

TEST(ValidUtf8, ReplacesACharacterThatWasCutAtTheEnd) {
    EXPECT_EQ(validUtf8("abc\xC3"), std::string("abc") + unknown);
    EXPECT_EQ(validUtf8("abc\xE2\x82"), std::string("abc") + unknown + unknown);
    EXPECT_EQ(validUtf8("\xF0\x9F\x8E"), std::string(unknown) + unknown + unknown);
}

TEST(ValidUtf8, ReplacesBytesThatBelongToNoCharacter) {
    EXPECT_EQ(validUtf8("a\x80z"), std::string("a") + unknown + "z");
    EXPECT_EQ(validUtf8("\xFF\xFE"), std::string(unknown) + unknown);
    EXPECT_EQ(validUtf8("\xC3 "), std::string(unknown) + " ");
}

TEST(ValidUtf8, RefusesOverlongFormsSurrogatesAndWhatIsBeyondUnicode) {
    for (const char* text : {"\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xED\xA0\x80",
                             "\xF0\x80\x80\xAF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
        std::string expected;
        for (std::size_t i = 0; i < std::string_view(text).size(); ++i)
            expected += unknown;
        EXPECT_EQ(validUtf8(text), expected);
    }
}

} // namespace
