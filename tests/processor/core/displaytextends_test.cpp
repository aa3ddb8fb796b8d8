// The display texts at the ends of their formats.
#include "processor/core/parameters.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

std::string number(float value, int digits) {
    char text[32] = "untouched";
    float2string2(value, digits, text);
    return text;
}

TEST(NumberText, OutsideItsRangeIsNotWritten) {
    EXPECT_EQ(number(2e8F, 0), "untouched");
    EXPECT_EQ(number(-2e7F, 0), "untouched");
}

// Seven digits of a positive number and six of a negative one, the last ones:
// the eighth place is the point's, the sign takes another.
TEST(NumberText, KeepsTheLastDigitsOfALongNumber) {
    EXPECT_EQ(number(9999999.0F, 0), "9999999");
    EXPECT_EQ(number(12345678.0F, 0), "2345678");
    EXPECT_EQ(number(-999999.0F, 0), "-999999");
    EXPECT_EQ(number(-9999999.0F, 0), "-999999");
}

TEST(NumberText, WithoutACutFillsItsEightPlaces) {
    EXPECT_EQ(number(0.5F, -1), "0.500000");
    EXPECT_EQ(number(-1.25F, -1), "-1.25000");
    EXPECT_EQ(number(123.456F, -1), "123.4560");
    EXPECT_EQ(number(99999.0F, 8), "99999.00");
}

template <typename Convert>
std::string written(Convert convert, float value) {
    char text[32] = "untouched";
    convert(value, text);
    return text;
}

TEST(NumberText, BeyondEightDigitsIsNotWritten) {
    EXPECT_EQ(number(1e8F, 0), "untouched");
    EXPECT_EQ(number(99999992.0F, 0), "9999992");
}

TEST(StepText, EndsWhereAnIntegerDoes) {
    EXPECT_EQ(written(stepStringConvert, -2147483648.0F), "-2147483648");
    EXPECT_EQ(written(stepStringConvert, 2147483520.0F), "2147483520");
    for (const float beyond : {2147483648.0F, 2.5e9F, -2147483904.0F, -2.5e9F})
        EXPECT_EQ(written(stepStringConvert, beyond), "untouched") << beyond;
}

TEST(FrequencyText, ChangesItsDecimalsAtEachStep) {
    EXPECT_EQ(written(frequencyStringConvert, 0.1875F), "0.187Hz");
    EXPECT_EQ(written(frequencyStringConvert, 0.2F), "0.20Hz");
    EXPECT_EQ(written(frequencyStringConvert, 0.21875F), "0.21Hz");
    EXPECT_EQ(written(frequencyStringConvert, 0.75F), "0.75Hz");
    EXPECT_EQ(written(frequencyStringConvert, 1.125F), "1.1Hz");
    EXPECT_EQ(written(frequencyStringConvert, 9.5F), "9.5Hz");
    EXPECT_EQ(written(frequencyStringConvert, 10.0F), "10Hz");
    EXPECT_EQ(written(frequencyStringConvert, 11.0F), "11Hz");
    EXPECT_EQ(written(frequencyStringConvert, 999.0F), "999Hz");
    EXPECT_EQ(written(frequencyStringConvert, 1000.0F), "1.0kHz");
}

TEST(DampText, IsClosedUpToATenThousandth) {
    EXPECT_EQ(written(dampStringConvert, 0.0001F), "closed");
    EXPECT_EQ(written(dampStringConvert, 0.00011F), "0%");
}

TEST(DecibelText, IsANumberJustAboveSilence) {
    EXPECT_EQ(written(dBStringConvert, 1e-8F), "-oo dB");
    EXPECT_EQ(written(dBStringConvert, 1.1e-8F), "-159 dB");
}

TEST(SwitchText, IsOnFromAHalf) {
    mirelon::Coefficients coefficients;
    for (const auto& [working, expected] :
         {std::pair{0.499F, "Off"}, std::pair{0.5F, "On"}, std::pair{0.55F, "On"}}) {
        coefficients.processOn = working;
        char text[32] = "untouched";
        mirelon::parameterDisplay(kParamProcess, 1.0F, coefficients, text);
        EXPECT_STREQ(text, expected);
    }
}

} // namespace
