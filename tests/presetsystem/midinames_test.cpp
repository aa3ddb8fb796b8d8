#include "presetsystem/midinames.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::string controllerAt(float value) {
    std::array<char, mirelon::controllerNameSize> text{};
    text.fill('#');
    convertCC(value, text.data());
    return text.data();
}

TEST(ControllerNames, OfUnnamedControllersAreNumbered) {
    for (const std::size_t controller : {3U, 9U, 12U, 41U, 63U, 90U, 119U})
        EXPECT_EQ(ccnames[controller].data(), "control " + std::to_string(controller));
}

TEST(ControllerNames, OfNamedControllersAreTheirs) {
    EXPECT_STREQ(ccnames[0].data(), "bank sel MSB");
    EXPECT_STREQ(ccnames[7].data(), "main volume");
    EXPECT_STREQ(ccnames[43].data(), "express. LSB");
    EXPECT_STREQ(ccnames[74].data(), "brightness");
    EXPECT_STREQ(ccnames[101].data(), "RPN MSB");
    EXPECT_STREQ(ccnames[127].data(), "poly mode on");
    EXPECT_STREQ(ccnames[128].data(), "not assigned");
    EXPECT_STREQ(ccnames[129].data(), "");
}

TEST(ControllerNames, AreNumberedOutsideTheNamedOnes) {
    int numbered = 0;
    for (std::size_t controller = 0; controller < 128; ++controller)
        if (ccnames[controller].data() == "control " + std::to_string(controller))
            ++numbered;
    EXPECT_EQ(numbered, 128 - 59);
}

TEST(ConvertingToAController, CoversTheTable) {
    EXPECT_EQ(controllerAt(0.0F), "bank sel MSB");
    EXPECT_EQ(controllerAt(1.0F), "");
    EXPECT_EQ(controllerAt(0.985F), "not assigned");
    EXPECT_EQ(controllerAt(0.0540F), "main volume"); // 7.02 of 130
}

TEST(ConvertingToAController, OutsideTheRangeStaysInsideTheTable) {
    EXPECT_EQ(controllerAt(-0.5F), "");
    EXPECT_EQ(controllerAt(-infinity), "");
    EXPECT_EQ(controllerAt(2.0F), "");
    EXPECT_EQ(controllerAt(infinity), "");
    EXPECT_EQ(controllerAt(notANumber), "bank sel MSB");
}

TEST(FloatToStep, TakesTheStepBelowAndTheLastAtTheEnd) {
    EXPECT_EQ(float2long(1.0F, 130), 129);
    EXPECT_EQ(float2long(0.0F, 130), 0);
    EXPECT_EQ(float2long(0.999F, 2), 1);
    EXPECT_EQ(float2long(0.49F, 2), 0);
    EXPECT_EQ(float2long(0.5F, 2), 1);
}

TEST(FloatToStep, DoesNotStopAtZero) {
    EXPECT_EQ(float2long(-0.3F, 1), 0);
    EXPECT_EQ(float2long(-1.5F, 1), -1);
}

TEST(FloatToStep, OfWhatNoIntegerHoldsGoesToTheNearestEnd) {
    EXPECT_EQ(float2long(infinity, 130), 129);
    EXPECT_EQ(float2long(1e30F, 130), 129);
    EXPECT_EQ(float2long(-infinity, 130), std::numeric_limits<long>::min());
    EXPECT_EQ(float2long(notANumber, 130), 0);
}

TEST(StepToFloat, IsTheMiddleOfTheStep) {
    EXPECT_EQ(long2float(0, 2), 0.25F);
    EXPECT_EQ(long2float(129, 130), 129.5F / 130.0F);
    for (long i = 0; i < 130; ++i)
        EXPECT_EQ(float2long(long2float(i, 130), 130), i);
}

TEST(ContinuousToStep, TruncatesAndStopsAtTheLast) {
    EXPECT_EQ(paramContToLong(1.0F, 128), 127);
    EXPECT_EQ(paramContToLong(0.999F, 128), 127);
    EXPECT_EQ(paramContToLong(0.5F, 128), 64);
    EXPECT_EQ(paramContToLong(-0.5F, 3), -1);
    EXPECT_EQ(paramContToLong(-0.3F, 3), 0);
    EXPECT_EQ(paramContToLong(infinity, 128), 127);
    EXPECT_EQ(paramContToLong(-infinity, 128), std::numeric_limits<int>::min());
    EXPECT_EQ(paramContToLong(notANumber, 128), 0);
}

TEST(StepToContinuous, IsTheMiddleOfTheStep) {
    EXPECT_EQ(paramLongToCont(0, 2), 0.25F);
    EXPECT_EQ(paramLongToCont(3, 4), 0.875F);
    EXPECT_EQ(paramLongToCont(1, 3), 0.5F / 3.0F + 1.0F / 3.0F);
}

} // namespace
