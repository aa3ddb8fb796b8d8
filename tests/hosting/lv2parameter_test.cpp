// Control ports as parameters: a port of every kind, and Mirelon's own.
#include "hosting/lv2parameter.h"

#include "formats/lv2/names.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace mirelon::hosting {
namespace {

class Lv2ParameterTest : public testing::Test {
  protected:
    const Lv2Parameter& named(const std::string& symbol) const {
        return *std::ranges::find(parameters, symbol, &Lv2Parameter::symbol);
    }

    std::unique_ptr<Lv2Bundle> bundle = Lv2Bundle::inFolder(MIRELON_TEST_AMPLIFIER);
    std::vector<Lv2Parameter> parameters = lv2Parameters(*bundle);
};

TEST_F(Lv2ParameterTest, AreTheControlInputsInTheirOrder) {
    std::vector<std::string> symbols;
    for (const Lv2Parameter& each : parameters)
        symbols.push_back(each.symbol);
    EXPECT_EQ(symbols, (std::vector<std::string>{"factor", "mode", "mute", "tone", "steps"}));
    EXPECT_EQ(named("mute").port, 4U);
    EXPECT_EQ(named("mute").name, "Mute");
}

TEST_F(Lv2ParameterTest, OfAPlainPortGoesEvenlyOverItsRange) {
    const Lv2Parameter& factor = named("factor");
    EXPECT_EQ(factor.numberOf(0.0F), 0.0F);
    EXPECT_EQ(factor.numberOf(0.25F), 1.0F);
    EXPECT_EQ(factor.numberOf(1.0F), 4.0F);
    EXPECT_EQ(factor.valueOf(3.0F), 0.75F);
    EXPECT_EQ(factor.display(1.5F), "1.50");
    EXPECT_EQ(factor.unit, "x");
}

TEST_F(Lv2ParameterTest, OfAnEnumerationCountsItsNamedNumbers) {
    const Lv2Parameter& mode = named("mode");
    EXPECT_EQ(mode.numberOf(0.0F), 0.0F);
    EXPECT_EQ(mode.numberOf(0.4F), 2.0F);
    EXPECT_EQ(mode.numberOf(0.5F), 2.0F);
    EXPECT_EQ(mode.numberOf(1.0F), 10.0F);
    EXPECT_EQ(mode.valueOf(2.0F), 0.5F);
    EXPECT_EQ(mode.valueOf(3.0F), 0.5F); // the nearest one
    EXPECT_EQ(mode.display(10.0F), "Inverted");
    EXPECT_EQ(mode.read("inverted"), 10.0F);
}

TEST_F(Lv2ParameterTest, OfASwitchIsOnFromTheMiddle) {
    const Lv2Parameter& mute = named("mute");
    EXPECT_EQ(mute.numberOf(0.49F), 0.0F);
    EXPECT_EQ(mute.numberOf(0.5F), 1.0F);
    EXPECT_EQ(mute.valueOf(0.1F), 1.0F);
    EXPECT_EQ(mute.display(0.0F), "Off");
    EXPECT_EQ(mute.display(1.0F), "On");
    EXPECT_EQ(mute.read("ON"), 1.0F);
}

TEST_F(Lv2ParameterTest, OfALogarithmicPortGoesByFactors) {
    const Lv2Parameter& tone = named("tone");
    EXPECT_FLOAT_EQ(tone.numberOf(0.5F), 1000.0F);
    EXPECT_FLOAT_EQ(tone.valueOf(1000.0F), 0.5F);
    EXPECT_EQ(tone.unit, "Hz");
}

TEST_F(Lv2ParameterTest, OfAnIntegerPortIsRounded) {
    const Lv2Parameter& steps = named("steps");
    EXPECT_EQ(steps.numberOf(0.3F), 2.0F);
    EXPECT_EQ(steps.display(2.0F), "2");
}

TEST_F(Lv2ParameterTest, ReadsWhatItShowsWithAndWithoutTheUnit) {
    const Lv2Parameter& tone = named("tone");
    EXPECT_EQ(tone.read("440"), 440.0F);
    EXPECT_EQ(tone.read(" 440 Hz "), 440.0F);
    EXPECT_EQ(tone.read("+440hz"), 440.0F);
    for (const char* const nothing : {"", "Hz", "440 kHz", "99", "10001", "nan", "x"})
        EXPECT_FALSE(tone.read(nothing)) << nothing;
}

TEST_F(Lv2ParameterTest, PassesOnWhatIsNoValueAndReadsWhatIsNoNumber) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Lv2Parameter& each : parameters) {
        EXPECT_TRUE(std::isnan(each.numberOf(nan))) << each.symbol;
        EXPECT_GT(each.numberOf(2.0F), each.maximum) << each.symbol;
        EXPECT_LT(each.numberOf(-1.0F), each.minimum) << each.symbol;
        EXPECT_EQ(each.valueOf(nan), 0.0F) << each.symbol;
        EXPECT_EQ(each.valueOf(each.minimum - 1.0F), 0.0F) << each.symbol;
        EXPECT_EQ(each.valueOf(each.maximum + 1.0F), 1.0F) << each.symbol;
    }
}

TEST(Lv2ParametersOfMirelon, HaveTheValuesOfTheVst2Plugin) {
    const auto bundle = Lv2Bundle::inFolder(MIRELON_LV2_BUNDLE);
    const auto parameters = lv2Parameters(*bundle);
    ASSERT_EQ(parameters.size(), 9U);
    const Lv2Parameter& width = parameters[kParamWidth];
    EXPECT_EQ(width.numberOf(0.75F), 225.0F); // not linear
    EXPECT_EQ(width.valueOf(225.0F), 0.75F);
    EXPECT_EQ(width.unit, "%");
    EXPECT_EQ(parameters[kParamGain].unit, "dB");
    EXPECT_EQ(parameters[kParamBalance].display(0.0F), "C");
    EXPECT_EQ(parameters[kParamProcess].display(1.0F), "On");
}

} // namespace
} // namespace mirelon::hosting
