#include "processor/core/parameters.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr const char* untouched = "left alone"; // longer than a number by two
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

// What stands in the buffer afterwards. Behind the text nothing is written.
template <typename Write>
std::string written(Write write) {
    std::string before(64, '#');
    before.replace(0, std::string_view(untouched).size(), untouched);
    before[std::string_view(untouched).size()] = '\0';
    std::string buffer = before;
    write(buffer.data());
    const std::string text = buffer.substr(0, buffer.find('\0'));
    EXPECT_EQ(buffer.substr(text.size() + 1), before.substr(text.size() + 1)) << text;
    return text;
}

std::string number(float value, int digits) {
    return written([&](char* text) { float2string2(value, digits, text); });
}

std::string converted(void (*converter)(float, char*) noexcept, float value) {
    return written([&](char* text) { converter(value, text); });
}

std::string shown(int index, float value) {
    mirelon::Coefficients coefficients;
    mirelon::applyParameter(coefficients, index, value);
    return written(
        [&](char* text) { mirelon::parameterDisplay(index, value, coefficients, text); });
}

} // namespace

TEST(NumberText, RoundsHalfAwayFromZero) {
    EXPECT_EQ(number(2.345F, 2), "2.35");
    EXPECT_EQ(number(-2.345F, 2), "-2.35");
    EXPECT_EQ(number(-0.5F, 0), "-1");
    EXPECT_EQ(number(0.5F, 0), "1");
    EXPECT_EQ(number(0.4999F, 0), "0");
}

TEST(NumberText, TakesJustBelowAHalfAsAHalf) {
    EXPECT_EQ(number(0.499995F, 0), "1");
    EXPECT_EQ(number(0.49998F, 0), "0");
}

TEST(NumberText, CarriesIntoTheIntegerPart) {
    EXPECT_EQ(number(19.9999F, 0), "20");
    EXPECT_EQ(number(9.999F, 2), "10.00");
    EXPECT_EQ(number(99.999F, 2), "100.00");
}

TEST(NumberText, KeepsTheAskedDecimals) {
    EXPECT_EQ(number(100.0F, 2), "100.00");
    EXPECT_EQ(number(0.0F, 2), "0.00");
    EXPECT_EQ(number(0.0F, 0), "0");
    EXPECT_EQ(number(0.25F, 1), "0.3");
    EXPECT_EQ(number(0.25F, 2), "0.25");
}

TEST(NumberText, ShowsFewerDecimalsWhenEightPlacesAreFull) {
    EXPECT_EQ(number(12345.0F, 4), "12345.00");
    EXPECT_EQ(number(1234567.0F, 2), "1234567.");
    EXPECT_EQ(number(-12345.0F, 4), "-12345.0");
}

TEST(NumberText, IsNotCutWithNegativeDigits) {
    EXPECT_EQ(number(1.5F, -1), "1.500000");
    EXPECT_EQ(number(-1.5F, -1), "-1.50000");
}

TEST(NumberText, OutsideItsRangeLeavesTheBufferAlone) {
    EXPECT_EQ(number(1e9F, 2), untouched);
    EXPECT_EQ(number(-1e7F, 2), untouched);
    EXPECT_EQ(number(notANumber, 2), untouched);
    EXPECT_EQ(number(infinite, 2), untouched);
    EXPECT_EQ(number(-infinite, 0), untouched);
}

TEST(NumberText, AgreesWithExactDecimalRoundingAwayFromTheThreshold) {
    int compared = 0;
    for (int i = -99999; i <= 99999; i += 7) {
        const float value = static_cast<float>(i) / 128.0F; // exact
        const long scaled = std::labs(static_cast<long>(i) * 100);
        const long rest = scaled % 128;
        const long hundredths = scaled / 128 + (rest >= 64 ? 1 : 0);
        std::array<char, 32> expected{};
        std::snprintf(expected.data(), expected.size(), "%s%ld.%02ld",
                      i < 0 && hundredths > 0 ? "-" : "", hundredths / 100, hundredths % 100);
        if (i < 0 && hundredths == 0)
            continue; // a negative value too small to show keeps its sign
        EXPECT_EQ(number(value, 2), expected.data()) << value;
        ++compared;
    }
    EXPECT_GT(compared, 28000);
}

TEST(Rounding, MovesUpOneUnitOrKeepsTheValue) {
    EXPECT_DOUBLE_EQ(::round(2.345, 2), 2.355);
    EXPECT_DOUBLE_EQ(::round(2.344, 2), 2.344);
    EXPECT_DOUBLE_EQ(::round(-0.5, 0), -1.5);
    EXPECT_DOUBLE_EQ(::round(0.3, 0), 0.3);
}

TEST(Rounding, StartsAtTheThresholdItself) {
    EXPECT_DOUBLE_EQ(::round(0.49999, 0), 1.49999);
    EXPECT_DOUBLE_EQ(::round(std::nextafter(0.49999, 0.0), 0), 0.49999);
    EXPECT_DOUBLE_EQ(::round(-0.49999, 0), -1.49999);
    EXPECT_DOUBLE_EQ(::round(std::nextafter(-0.49999, 0.0), 0), -0.49999);
}

TEST(WidthDisplay, IsInPercentOfTheSide) {
    EXPECT_EQ(shown(kParamWidth, 0.0F), "0.00");
    EXPECT_EQ(shown(kParamWidth, 0.5F), "100.00");
    EXPECT_EQ(shown(kParamWidth, 1.0F), "400.00");
    EXPECT_EQ(shown(kParamWidth, 0.625F), "156.25");
    EXPECT_EQ(shown(kParamWidth, 0.375F), "56.25");
}

TEST(GainDisplay, IsInDecibels) {
    EXPECT_EQ(shown(kParamGain, 0.0F), "-12.00");
    EXPECT_EQ(shown(kParamGain, 0.5F), "0.00");
    EXPECT_EQ(shown(kParamGain, 1.0F), "12.00");
    EXPECT_EQ(shown(kParamGain, 0.75F), "6.00");
}

TEST(PositionDisplay, HasABandInTheMiddle) {
    for (const int index : {kParamBalance, kParamStability, kParamCenterPos})
        for (const float value : {0.49F, 0.5F, 0.51F})
            EXPECT_EQ(shown(index, value), "C") << index << " " << value;
}

TEST(PositionDisplay, CountsToFiftyOnBothSides) {
    EXPECT_EQ(shown(kParamBalance, 0.7F), "20L");
    EXPECT_EQ(shown(kParamBalance, 0.3F), "20R");
    EXPECT_EQ(shown(kParamBalance, 0.52F), "2L");
    EXPECT_EQ(shown(kParamBalance, 0.4375F), "6R");
    EXPECT_EQ(shown(kParamBalance, 0.375F), "13R");
    EXPECT_EQ(shown(kParamBalance, 0.2F), "30R");
    EXPECT_EQ(shown(kParamBalance, 0.0F), "50R");
    EXPECT_EQ(shown(kParamBalance, 1.0F), "50L");
    EXPECT_EQ(shown(kParamStability, 0.75F), "25L");
    EXPECT_EQ(shown(kParamStability, 0.25F), "25R");
    EXPECT_EQ(shown(kParamCenterPos, 0.8F), "30L");
    EXPECT_EQ(shown(kParamCenterPos, 0.2F), "30R");
}

TEST(SwitchDisplay, NamesBothStates) {
    EXPECT_EQ(shown(kParamProcess, 1.0F), "On");
    EXPECT_EQ(shown(kParamProcess, 0.4999F), "Off");
    EXPECT_EQ(shown(kParamPhase, 0.5F), "On");
    EXPECT_EQ(shown(kParamPhase, 0.0F), "Off");
    EXPECT_EQ(shown(kParamInvertL, 1.0F), "-L");
    EXPECT_EQ(shown(kParamInvertL, 0.0F), "+L");
    EXPECT_EQ(shown(kParamInvertR, 1.0F), "-R");
    EXPECT_EQ(shown(kParamInvertR, 0.0F), "+R");
}

TEST(ParameterDisplay, OfAnUnknownIndexLeavesTheBufferAlone) {
    EXPECT_EQ(shown(-1, 0.5F), untouched);
    EXPECT_EQ(shown(kNumParams, 0.5F), untouched);
}

TEST(ParameterDisplay, OfValuesNoHostShouldSendIsDefined) {
    for (const int index : {kParamWidth, kParamGain})
        EXPECT_EQ(shown(index, notANumber), untouched) << index;
    for (const int index : {kParamBalance, kParamStability, kParamCenterPos})
        EXPECT_EQ(shown(index, notANumber), "C") << index;
    EXPECT_EQ(shown(kParamWidth, infinite), untouched);
    EXPECT_EQ(shown(kParamBalance, infinite), untouched);
    EXPECT_EQ(shown(kParamBalance, -infinite), untouched);
    EXPECT_EQ(shown(kParamWidth, 2.0F), "1600.00");
    EXPECT_EQ(shown(kParamProcess, notANumber), "Off");
    EXPECT_EQ(shown(kParamProcess, infinite), "On");
}

TEST(CaptionText, FollowsTheIndex) {
    const std::array<const char*, 9> captions{"S",    "M",     "L",      "R",     "width",
                                              "gain", "balan", "stabil", "center"};
    for (std::size_t i = 0; i < captions.size(); ++i) {
        EXPECT_EQ(converted(parameterNameStringConvert, static_cast<float>(i)), captions[i]);
        EXPECT_EQ(converted(parameterNameStringConvert, static_cast<float>(i) + 0.9F), captions[i]);
    }
}

TEST(CaptionText, IsEmptyForOtherIndices) {
    for (const float value : {9.0F, 10.0F, -1.0F, 1e20F, -1e20F, infinite, notANumber})
        EXPECT_EQ(converted(parameterNameStringConvert, value), "") << value;
}

TEST(PercentText, CutsToAWholePercent) {
    EXPECT_EQ(converted(percentStringConvert, 1.0F), "100%");
    EXPECT_EQ(converted(percentStringConvert, 0.999F), "99%");
    EXPECT_EQ(converted(percentStringConvert, 4.0F), "400%");
    EXPECT_EQ(converted(percentStringConvert, 0.0F), "0%");
    EXPECT_EQ(converted(percentStringConvert, -0.5F), "-50%");
}

TEST(DecibelText, CutsTowardsZero) {
    EXPECT_EQ(converted(dBStringConvert, 1.0F), "0 dB");
    EXPECT_EQ(converted(dBStringConvert, 0.95F), "0 dB");
    EXPECT_EQ(converted(dBStringConvert, 3.98F), "11 dB");
    EXPECT_EQ(converted(dBStringConvert, 3.9810717F), "12 dB");
    EXPECT_EQ(converted(dBStringConvert, 0.25118864F), "-12 dB");
    EXPECT_EQ(converted(dBStringConvert, 10.0F), "20 dB");
}

TEST(DecibelText, ShowsSilenceAsMinusInfinity) {
    EXPECT_EQ(converted(dBStringConvert, 0.0F), "-oo dB");
    EXPECT_EQ(converted(dBStringConvert, 1e-8F), "-oo dB");
    EXPECT_EQ(converted(dBStringConvert, -1.0F), "-oo dB");
    EXPECT_EQ(converted(dBStringConvert, notANumber), "-oo dB");
    EXPECT_EQ(converted(dBStringConvert, 2e-8F), "-153 dB");
}

TEST(PanoramaText, ScalesItsSidesDifferently) {
    EXPECT_EQ(converted(panoramaStringConvert, 0.5F), "C");
    EXPECT_EQ(converted(panoramaStringConvert, 0.4995F), "C");
    EXPECT_EQ(converted(panoramaStringConvert, 0.501F), "L1");
    EXPECT_EQ(converted(panoramaStringConvert, 0.75F), "L25");
    EXPECT_EQ(converted(panoramaStringConvert, 1.0F), "L50");
    EXPECT_EQ(converted(panoramaStringConvert, 0.499F), "R1");
    EXPECT_EQ(converted(panoramaStringConvert, 0.25F), "R25");
    EXPECT_EQ(converted(panoramaStringConvert, 0.0F), "R50");
}

TEST(FrequencyText, ChangesItsDecimalsWithTheSize) {
    EXPECT_EQ(converted(frequencyStringConvert, 0.05F), "0.50Hz");
    EXPECT_EQ(converted(frequencyStringConvert, 0.25F), "0.25Hz");
    EXPECT_EQ(converted(frequencyStringConvert, 2.5F), "2.5Hz");
    EXPECT_EQ(converted(frequencyStringConvert, 440.7F), "440Hz");
    EXPECT_EQ(converted(frequencyStringConvert, 1050.0F), "1.0kHz");
    EXPECT_EQ(converted(frequencyStringConvert, 2500.0F), "2.5kHz");
    EXPECT_EQ(converted(frequencyStringConvert, 3000000512.0F), "3000000.5kHz");
}

TEST(DampText, NamesItsEnds) {
    EXPECT_EQ(converted(dampStringConvert, 0.0F), "closed");
    EXPECT_EQ(converted(dampStringConvert, 0.0001F), "closed");
    EXPECT_EQ(converted(dampStringConvert, 0.5F), "50%");
    EXPECT_EQ(converted(dampStringConvert, 0.875F), "87%");
    EXPECT_EQ(converted(dampStringConvert, 1.0F), "thru");
    EXPECT_EQ(converted(dampStringConvert, infinite), "thru");
    EXPECT_EQ(converted(dampStringConvert, notANumber), "thru");
}

TEST(StepText, IsTheIntegerPart) {
    EXPECT_EQ(converted(stepStringConvert, 3.9F), "3");
    EXPECT_EQ(converted(stepStringConvert, -3.9F), "-3");
    EXPECT_EQ(converted(strictStringConvert, 7.0F), "7");
}

TEST(Converters, LeaveTheBufferAloneForWhatHasNoText) {
    for (const auto converter : {percentStringConvert, panoramaStringConvert, stepStringConvert,
                                 strictStringConvert, frequencyStringConvert})
        EXPECT_EQ(converted(converter, notANumber), untouched);
    for (const auto converter :
         {percentStringConvert, panoramaStringConvert, stepStringConvert, frequencyStringConvert})
        for (const float value : {infinite, 1e30F, -1e30F})
            EXPECT_EQ(converted(converter, value), untouched) << value;
    EXPECT_EQ(converted(dBStringConvert, infinite), untouched);
}
