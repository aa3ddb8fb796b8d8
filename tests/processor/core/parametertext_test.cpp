#include "processor/core/parametertext.h"

#include "processor/core/displaytext.h"
#include "processor/core/parameters.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace mirelon {
namespace {

Coefficients coefficientsOf(int index, float value) {
    Coefficients coefficients;
    applyParameter(coefficients, index, value);
    return coefficients;
}

std::string shownByHosts(int index, float value) {
    char text[32] = "";
    parameterDisplay(index, value, coefficientsOf(index, value), text);
    return text;
}

std::string shownByTheWindow(int index, float value) {
    char text[32] = "";
    if (index == kParamWidth)
        percentStringConvert(2.0F * coefficientsOf(index, value).widthSide, text);
    else if (index == kParamGain)
        dBStringConvert(coefficientsOf(index, value).gainLin, text);
    else
        panoramaStringConvert(value, text);
    return text;
}

// Everywhere, with both neighbours of the places where texts change.
std::vector<float> denseValues() {
    std::vector<float> values;
    for (const int steps : {20000, 2400, 9800, 4000})
        for (int i = 0; i <= steps; ++i) {
            const float value = static_cast<float>(i) / static_cast<float>(steps);
            values.push_back(std::nextafter(value, 0.0F));
            values.push_back(value);
            values.push_back(std::nextafter(value, 1.0F));
        }
    values.front() = 0.0F;
    return values;
}

struct Reading {
    int index;
    const char* text;
    float value;
};

void PrintTo(const Reading& reading, std::ostream* out) {
    *out << reading.index << " \"" << reading.text << '"';
}

class ParameterText : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Every, ParameterText, testing::Range(0, int{kNumParams}));

TEST_P(ParameterText, ThatHostsShowIsShownAgainForItsValue) {
    for (const float value : denseValues()) {
        const std::string text = shownByHosts(GetParam(), value);
        const auto read = parameterValueOf(GetParam(), text);
        ASSERT_TRUE(read) << text;
        ASSERT_EQ(shownByHosts(GetParam(), *read), text) << value;
    }
}

// The window shows switches as pictures.
class ReadOutText : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Every, ReadOutText, testing::Range(0, int{kParamProcess}));

TEST_P(ReadOutText, IsShownAgainForItsValue) {
    for (const float value : denseValues()) {
        const std::string text = shownByTheWindow(GetParam(), value);
        const auto read = parameterValueOf(GetParam(), text);
        ASSERT_TRUE(read) << text;
        ASSERT_EQ(shownByTheWindow(GetParam(), *read), text) << value;
    }
}

TEST_P(ParameterText, OfBothEndsAndTheMiddleHasExactlyTheirValues) {
    for (const float value : {0.0F, 0.5F, 1.0F}) {
        if (value == 0.5F && GetParam() >= kParamProcess)
            continue;
        EXPECT_EQ(parameterValueOf(GetParam(), shownByHosts(GetParam(), value)), value);
        if (GetParam() < kParamProcess) {
            EXPECT_EQ(parameterValueOf(GetParam(), shownByTheWindow(GetParam(), value)), value);
        }
    }
}

TEST_P(ParameterText, HasNoValueWhenItIsNonsense) {
    for (const char* text :
         {"",  " ",  "x", "nan", "inf", "1e3", "--1", "+-1", "1.2.3", "4 dBx",  "0x10",
          "%", "dB", "L", "R",   "L-3", "-3L", "LL3", "1 2", "3 Hz",  "On Off", "\xC3\xA4"})
        EXPECT_EQ(parameterValueOf(GetParam(), text), std::nullopt) << text;
    EXPECT_EQ(parameterValueOf(GetParam(), std::string(1000, '1')), std::nullopt);
}

class ParameterReading : public testing::TestWithParam<Reading> {};

TEST_P(ParameterReading, IsExactlyTheValue) {
    EXPECT_EQ(parameterValueOf(GetParam().index, GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Units, ParameterReading,
    testing::Values(Reading{kParamWidth, "156.25", 0.625F},
                    Reading{kParamWidth, "156.25 %", 0.625F},
                    Reading{kParamWidth, "156.25%", 0.625F}, Reading{kParamGain, "-12", 0.0F},
                    Reading{kParamGain, "6.00", 0.75F}, Reading{kParamGain, "+3 dB", 0.625F},
                    Reading{kParamGain, "-oo dB", 0.0F}, Reading{kParamGain, "-oo", 0.0F},
                    Reading{kParamBalance, "25L", 0.75F}, Reading{kParamBalance, "25R", 0.25F},
                    Reading{kParamStability, "L25", 0.75F}, Reading{kParamStability, "R25", 0.25F},
                    Reading{kParamCenterPos, "20L", 0.7F}, Reading{kParamCenterPos, "25", 0.75F},
                    Reading{kParamCenterPos, "-25", 0.25F}, Reading{kParamCenterPos, "C", 0.5F},
                    Reading{kParamCenterPos, "0", 0.5F}, Reading{kParamCenterPos, "L0", 0.5F},
                    Reading{kParamCenterPos, "0R", 0.5F}, Reading{kParamProcess, "1", 1.0F},
                    Reading{kParamProcess, "0.49", 0.0F}, Reading{kParamPhase, "0.5", 1.0F},
                    Reading{kParamInvertL, "-L", 1.0F}, Reading{kParamInvertL, "+L", 0.0F},
                    Reading{kParamInvertR, "on", 1.0F}, Reading{kParamInvertR, "off", 0.0F}));

INSTANTIATE_TEST_SUITE_P(
    Writing, ParameterReading,
    testing::Values(Reading{kParamWidth, "156,25 %", 0.625F}, Reading{kParamGain, "  3\t", 0.625F},
                    Reading{kParamGain, "3 DB", 0.625F}, Reading{kParamGain, "3   db", 0.625F},
                    Reading{kParamBalance, "25 l", 0.75F}, Reading{kParamBalance, "r 25", 0.25F},
                    Reading{kParamBalance, "c", 0.5F}, Reading{kParamProcess, "ON", 1.0F},
                    Reading{kParamInvertR, "-r", 1.0F}));

INSTANTIATE_TEST_SUITE_P(
    BeyondTheEnds, ParameterReading,
    testing::Values(Reading{kParamGain, "200 dB", 1.0F}, Reading{kParamGain, "-96.5 dB", 0.0F},
                    Reading{kParamWidth, "401 %", 1.0F}, Reading{kParamWidth, "-1", 0.0F},
                    Reading{kParamBalance, "51L", 1.0F}, Reading{kParamBalance, "R400", 0.0F},
                    Reading{kParamBalance, "-60", 0.0F}, Reading{kParamProcess, "7", 1.0F},
                    Reading{kParamProcess, "-7", 0.0F}));

TEST(ParameterTextOfGain, ThatIsAWholeNumberIsShownByTheWindowAsThatNumber) {
    for (int decibels = -12; decibels <= 12; ++decibels) {
        const auto value = parameterValueOf(kParamGain, std::to_string(decibels)).value();
        EXPECT_EQ(shownByTheWindow(kParamGain, value), std::to_string(decibels) + " dB");
    }
}

TEST(ParameterTextOfWidth, ThatIsAWholeNumberIsShownByTheWindowAsThatNumber) {
    for (int percent = 0; percent <= 400; ++percent) {
        const auto value = parameterValueOf(kParamWidth, std::to_string(percent)).value();
        EXPECT_EQ(shownByTheWindow(kParamWidth, value), std::to_string(percent) + "%");
    }
}

TEST(ParameterTextOfGain, ThatIsWrittenWithDecimalsIsAsNearAsAValueCanBe) {
    const float value = parameterValueOf(kParamGain, "4.3 dB").value();
    EXPECT_NEAR(value, 0.5 + 4.3 / 24.0, 2e-7);
    EXPECT_EQ(shownByHosts(kParamGain, value), "4.30");
}

TEST(ParameterTextOfASwitch, OfTheOtherChannelIsNonsense) {
    EXPECT_EQ(parameterValueOf(kParamInvertL, "-R"), std::nullopt);
    EXPECT_EQ(parameterValueOf(kParamInvertR, "+L"), std::nullopt);
}

TEST(ParameterTextOfUnknownParameters, HasNoValue) {
    EXPECT_EQ(parameterValueOf(-1, "1"), std::nullopt);
    EXPECT_EQ(parameterValueOf(kNumParams, "1"), std::nullopt);
}

} // namespace
} // namespace mirelon
