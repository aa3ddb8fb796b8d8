// Values and texts between the effect and a CLAP host.
#include "formats/clap/parametervalues.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace mirelon::clap {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::string textOf(int index, double value) {
    std::array<char, 64> text{};
    EXPECT_TRUE(textOfHostValue(index, value, text));
    return text.data();
}

TEST(ClapParameterValue, OfAContinuousParameterComesBackExactly) {
    std::mt19937 random(1);
    for (int i = 0; i < 1'000'000; ++i) {
        const float value = static_cast<float>(random()) / static_cast<float>(random.max());
        const double read = hostValueOf(kParamWidth, value);
        ASSERT_EQ(changeByHost(kParamWidth, 2.0F, read), value);
        ASSERT_EQ(changeByHost(kParamWidth, value, read), std::nullopt);
    }
}

TEST(ClapParameterValue, OfASwitchIsOneOfTwo) {
    for (const float value : {0.0F, 0.3F, 0.49999F, -5.0F, notANumber})
        EXPECT_EQ(hostValueOf(kParamPhase, value), 0.0) << value;
    for (const float value : {0.5F, 0.7F, 1.0F, 8.0F, infinity})
        EXPECT_EQ(hostValueOf(kParamPhase, value), 1.0) << value;
    EXPECT_EQ(changeByHost(kParamPhase, 0.0F, 0.8), 1.0F);
    EXPECT_EQ(changeByHost(kParamPhase, 1.0F, 0.2), 0.0F);
}

// A state may hold any number for a switch, and hosts give back what they read.
TEST(ClapParameterValue, ThatTheHostCouldHaveReadChangesNothing) {
    EXPECT_EQ(changeByHost(kParamProcess, 0.7F, 1.0), std::nullopt);
    EXPECT_EQ(changeByHost(kParamProcess, 0.7F, 0.0), 0.0F);
    EXPECT_EQ(changeByHost(kParamGain, 3.0F, 1.0), std::nullopt);
    EXPECT_EQ(changeByHost(kParamGain, notANumber, 0.0), std::nullopt);
}

TEST(ClapParameterValue, LiesBetweenTheEndsWhateverTheEffectHolds) {
    for (int index = 0; index < kNumParams; ++index)
        for (const float value : {-1.0F, 2.0F, infinity, -infinity, notANumber, -0.0F}) {
            const double read = hostValueOf(index, value);
            EXPECT_GE(read, 0.0);
            EXPECT_LE(read, 1.0);
            EXPECT_FALSE(std::signbit(read));
        }
}

TEST(ClapParameterValue, FromTheHostIsTakenToTheNearerEnd) {
    EXPECT_EQ(changeByHost(kParamGain, 0.5F, 1.5), 1.0F);
    EXPECT_EQ(changeByHost(kParamGain, 0.5F, -1e300), 0.0F);
    EXPECT_EQ(changeByHost(kParamGain, 0.5F, std::nan("")), std::nullopt);
}

TEST(ClapParameterText, IsTheDisplayWithItsUnit) {
    EXPECT_EQ(textOf(kParamWidth, 0.5), "100.00 %");
    EXPECT_EQ(textOf(kParamGain, 0.6), "2.40 dB");
    EXPECT_EQ(textOf(kParamBalance, 0.7), "20L");
    EXPECT_EQ(textOf(kParamBalance, 0.5), "C");
    EXPECT_EQ(textOf(kParamProcess, 1.0), "On");
    EXPECT_EQ(textOf(kParamInvertL, 0.0), "+L");
}

TEST(ClapParameterText, IsUnderstoodAndShownAgainAsItWasRead) {
    for (int index = 0; index < kNumParams; ++index)
        for (int step = 0; step <= 1000; ++step) {
            const std::string text = textOf(index, step / 1000.0);
            const auto value = hostValueOfText(index, text);
            ASSERT_TRUE(value) << text;
            ASSERT_EQ(textOf(index, *value), text) << index;
        }
}

TEST(ClapParameterText, GoesIntoTheBufferCompleteOrNotAtAll) {
    std::array<char, 9> text{"ABCDEFGH"};
    EXPECT_FALSE(textOfHostValue(kParamWidth, 0.5, std::span(text).first(8))); // "100.00 %"
    EXPECT_STREQ(text.data(), "ABCDEFGH");
    EXPECT_FALSE(textOfHostValue(kParamWidth, 0.5, {}));
    EXPECT_TRUE(textOfHostValue(kParamWidth, 0.5, text));
    EXPECT_STREQ(text.data(), "100.00 %");
}

TEST(ClapParameterText, OfWhatIsNoNumberThereIsNone) {
    std::array<char, 64> text{"kept"};
    EXPECT_FALSE(textOfHostValue(kParamWidth, std::nan(""), text));
    EXPECT_FALSE(textOfHostValue(kParamGain, 1e308, text));
    EXPECT_STREQ(text.data(), "kept");
    EXPECT_EQ(hostValueOfText(kParamGain, "loud"), std::nullopt);
    EXPECT_EQ(hostValueOfText(kParamGain, ""), std::nullopt);
}

} // namespace
} // namespace mirelon::clap
