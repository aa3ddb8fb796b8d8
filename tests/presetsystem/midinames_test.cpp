#include "presetsystem/midinames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::string controllerAt(float value) {
    std::array<char, mirelon::controllerNameSize> text{};
    text.fill('#');
    convertCC(value, text.data());
    return text.data();
}

// The named controllers: the first of each row and those that follow it.
struct Row {
    std::size_t first;
    std::vector<std::string> names;
};
const std::vector<Row> namedControllers{
    {0, {"bank sel MSB", "modulation", "breath"}},
    {4, {"foot", "portamento", "data ent MSB", "main volume", "balance"}},
    {10, {"pan", "expression"}},
    {16, {"gen purp 1", "gen purp 2", "gen purp 3", "gen purp 4"}},
    {32, {"bank sel LSB", "modul. LSB", "breath LSB"}},
    {36, {"foot LSB", "porta LSB", "data ent LSB", "main vol LSB", "balance LSB"}},
    {42, {"pan LSB", "express. LSB"}},
    {64,
     {"sustain", "porta on/off", "sostenuto", "soft pedal", "legato FS", "hold 2", "sound var",
      "harmonic", "release time", "attack time", "brightness"}},
    {80, {"gen purp 5", "gen purp 6", "gen purp 7", "gen purp 8", "porta ctrl"}},
    {91,
     {"ext FX", "tremolo", "chorus", "detune", "phaser", "data incr", "data decr", "NRPN LSB",
      "NRPN MSB", "RPN LSB", "RPN MSB"}},
    {120,
     {"all snd off", "reset ctrl", "local ctrl", "all note off", "omni off", "omni on",
      "mono mode on", "poly mode on", "not assigned"}},
};

TEST(ControllerNames, AreTheirOwnOrTheirNumber) {
    std::array<std::string, kNumControllerNames> expected;
    for (std::size_t controller = 0; controller < 128; ++controller)
        expected[controller] = "control " + std::to_string(controller);
    for (const Row& row : namedControllers)
        std::ranges::copy(row.names, expected.begin() + static_cast<std::ptrdiff_t>(row.first));
    for (std::size_t controller = 0; controller < expected.size(); ++controller)
        EXPECT_EQ(ccnames[controller].data(), expected[controller]) << controller;
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

TEST(FloatToStep, StopsAtTheLastAlsoJustBeyondTheIntegers) {
    EXPECT_EQ(float2long(0x1p62F, 2), 1);
    EXPECT_EQ(paramContToLong(0x1p30F, 2), 1);
}

// The half that is added is rounded with the sum: to the even of two steps where
// a float has no halves any more.
TEST(FloatToStep, IsReckonedInSinglePrecision) {
    constexpr long steps = 0x1000000;
    EXPECT_EQ(float2long(0x800000.0p-24F, steps), 0x800000);
    EXPECT_EQ(float2long(0x800001.0p-24F, steps), 0x800002);
    EXPECT_EQ(float2long(0x3FFFFF.0p-24F, steps), 0x3FFFFF);
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
