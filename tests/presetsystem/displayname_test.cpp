#include "presetsystem/displayname.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

using mirelon::validUtf8;

namespace {

constexpr const char* unknown = "\xEF\xBF\xBD";

// A code point in `size` bytes, whether it takes so many or not.
std::string encoded(std::uint32_t codePoint, int size) {
    if (size == 1)
        return {static_cast<char>(codePoint)};
    constexpr std::uint32_t marks[] = {0xC0, 0xE0, 0xF0};
    std::string bytes(1, static_cast<char>(marks[size - 2] | codePoint >> 6 * (size - 1)));
    for (int rest = size - 2; rest >= 0; --rest)
        bytes += static_cast<char>(0x80 | (codePoint >> 6 * rest & 0x3F));
    return bytes;
}

constexpr bool isSurrogate(std::uint32_t codePoint) {
    return codePoint / 0x800 == 0x1B;
}

void expectAllReplaced(const std::string& bytes) {
    std::string expected;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        expected += unknown;
    EXPECT_EQ(validUtf8(bytes), expected) << testing::PrintToString(bytes);
}

TEST(ValidUtf8, OfNothingIsNothing) {
    EXPECT_EQ(validUtf8({}), "");
}

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
                             "\xF0\x80\x80\xAF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"})
        expectAllReplaced(text);
}

TEST(ValidUtf8, LeavesEveryCharacterOfUnicode) {
    std::string all;
    for (std::uint32_t codePoint = 1; codePoint <= 0x10FFFF; ++codePoint)
        if (!isSurrogate(codePoint))
            all += encoded(codePoint, codePoint < 0x80      ? 1
                                      : codePoint < 0x800   ? 2
                                      : codePoint < 0x10000 ? 3
                                                            : 4);
    EXPECT_TRUE(validUtf8(all) == all);
}

TEST(ValidUtf8, RefusesEveryOverlongFormAndEverySurrogate) {
    for (std::uint32_t codePoint = 0; codePoint < 0x10000; ++codePoint) {
        if (codePoint < 0x80)
            expectAllReplaced(encoded(codePoint, 2));
        if (codePoint < 0x800 || isSurrogate(codePoint))
            expectAllReplaced(encoded(codePoint, 3));
        expectAllReplaced(encoded(codePoint, 4));
    }
}

TEST(ValidUtf8, RefusesWhatIsBeyondUnicodeUpToTheLastOfFourBytes) {
    for (std::uint32_t codePoint = 0x110000; codePoint < 0x200000; codePoint += 0x40)
        expectAllReplaced(encoded(codePoint, 4));
}

} // namespace
