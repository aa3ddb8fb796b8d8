// What a typed value of a parameter means.
#include "tools/parametervalue.h"

#include "hosting/hosting.h"
#include "tools/commanderror.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace mirelon::tools {
namespace {

using ::testing::HasSubstr;

class TypedValue : public ::testing::Test {
  protected:
    explicit TypedValue(const std::string& file)
        : module(file)
        , effect(module, host) {}

    ParameterSetting typed(const std::string& text) { return parseSetting(effect, {text}); }
    float value(const std::string& text) { return typed(text).value; }

    hosting::Module module;
    hosting::RecordingHost host;
    hosting::Effect effect;
};

class OfMirelon : public TypedValue {
  protected:
    OfMirelon()
        : TypedValue(MIRELON_PLUGIN_FILE) {}
};

TEST_F(OfMirelon, IsANumberInTheShownUnit) {
    EXPECT_NEAR(value("gain=1"), 0.5 + 1.0 / 24.0, 1e-7);
    EXPECT_NEAR(value("gain=2"), 0.5 + 2.0 / 24.0, 1e-7);
    EXPECT_NEAR(value("gain=0.5"), 0.5 + 0.5 / 24.0, 1e-7);
    EXPECT_NEAR(value("width=1"), std::sqrt(1.0 / 400.0), 1e-7);
}

TEST_F(OfMirelon, IsExactAtTheEndsAndTheDefault) {
    for (const auto& [text, expected] : {std::pair{"gain=12", 1.0F},
                                         {"gain=-12", 0.0F},
                                         {"gain=0", 0.5F},
                                         {"width=0%", 0.0F},
                                         {"width=100", 0.5F},
                                         {"width=400", 1.0F},
                                         {"balance=L50", 1.0F},
                                         {"balance=R50", 0.0F},
                                         {"balance=C", 0.5F},
                                         {"centerPos=50R", 0.0F}})
        EXPECT_EQ(value(text), expected) << text;
}

TEST_F(OfMirelon, IsReadAsTheWindowReadsIt) {
    EXPECT_NEAR(value("balance=L12"), (12.0 + 48.5) / 98.0, 1e-7);
    EXPECT_NEAR(value("balance=12L"), 0.62, 1e-7);
    EXPECT_EQ(value("process=off"), 0.0F);
    EXPECT_EQ(value("process=1"), 1.0F);
    EXPECT_EQ(value("-L=-L"), 1.0F);
    EXPECT_NEAR(value("gain=-6,5 dB"), 0.5 - 6.5 / 24.0, 1e-7);
}

TEST_F(OfMirelon, BeyondTheRangeIsItsEndAndRemarkedUpon) {
    const ParameterSetting setting = typed("gain=99");
    EXPECT_EQ(setting.value, 1.0F);
    EXPECT_EQ(setting.remark, "\"99\" is beyond the range of gain, taken as gain 12.00 dB");
    EXPECT_THAT(typed("balance=80L").remark, HasSubstr("taken as balance 50L"));
    EXPECT_THAT(typed("width=-1").remark, HasSubstr("taken as width 0.00 %"));
    for (const char* const within : {"gain=12", "gain=-12.00", "width=400%", "balance=L50", "-R=1"})
        EXPECT_EQ(typed(within).remark, "") << within;
}

TEST_F(OfMirelon, ThatIsNoneIsRefused) {
    for (const char* const text : {"gain=nan", "gain=inf", "gain=", "gain=loud", "width=6 dB"})
        EXPECT_THROW(value(text), CommandError) << text;
}

TEST_F(OfMirelon, OnTheNormalisedScaleIsItself) {
    EXPECT_EQ(parseSetting(effect, {"gain=1", Scale::normalised}).value, 1.0F);
    EXPECT_EQ(parseSetting(effect, {"width=0.25", Scale::normalised}).value, 0.25F);
    for (const char* const text : {"gain=1.01", "gain=-0.1", "gain=0.5 dB", "gain=", "gain=nan"})
        EXPECT_THROW(parseSetting(effect, {text, Scale::normalised}), CommandError) << text;
}

TEST_F(OfMirelon, OfARampIsReadLikeOne) {
    const ParameterRamp shown = parseRamp(effect, {"gain=-12:1"});
    EXPECT_EQ(shown.first.value, 0.0F);
    EXPECT_NEAR(shown.last.value, 0.5 + 1.0 / 24.0, 1e-7);
    const ParameterRamp normalised = parseRamp(effect, {"gain=0:1", Scale::normalised});
    EXPECT_EQ(normalised.first.value, 0.0F);
    EXPECT_EQ(normalised.last.value, 1.0F);
}

class OfAnotherEffect : public TypedValue {
  protected:
    OfAnotherEffect()
        : TypedValue(std::string(MIRELON_TEST_PLUGINS) + "displays.so") {}
};

TEST_F(OfAnotherEffect, IsFoundWhereverTheUnitStands) {
    for (const char* const text : {"Drive=1", "Drive=1 dB", "Drive=1.0", "Drive=+1,0dB"})
        EXPECT_NEAR(value(text), 25.0 / 48.0, 0.5 / 480.0) << text;
    for (const char* const text : {"Mix=1", "Mix=1%", "Mix=1.0 %"})
        EXPECT_NEAR(value(text), 0.01, 0.005) << text;
    for (const char* const text : {"Release=255", "Release=255,00", "Release=255.0 ms"})
        EXPECT_NEAR(value(text), 0.5, 1e-4) << text;
}

TEST_F(OfAnotherEffect, IsExactAtTheEndsAndWhereItIsAlready) {
    for (const auto& [text, expected] : {std::pair{"Drive=24", 1.0F},
                                         {"Drive=-24", 0.0F},
                                         {"Mix=0", 0.0F},
                                         {"Mix=100%", 1.0F},
                                         {"Damping=100", 0.0F},
                                         {"Damping=0", 1.0F},
                                         {"Voices=8", 1.0F},
                                         {"Mix=30", 0.3F},
                                         {"Release=157", 0.3F}})
        EXPECT_EQ(value(text), expected) << text;
}

TEST_F(OfAnotherEffect, BeyondTheRangeIsItsEndAndRemarkedUpon) {
    for (const auto& [text, expected] : {std::pair{"Drive=99", 1.0F},
                                         {"Drive=-99", 0.0F},
                                         {"Damping=150", 0.0F},
                                         {"Release=900 ms", 1.0F}}) {
        const ParameterSetting setting = typed(text);
        EXPECT_EQ(setting.value, expected) << text;
        EXPECT_THAT(setting.remark, HasSubstr("is beyond the range of")) << text;
    }
}

TEST_F(OfAnotherEffect, MayBeAWord) {
    EXPECT_EQ(value("Mode=hard"), 1.0F);
    EXPECT_EQ(value("Mode=Soft"), 0.0F);
    EXPECT_THROW(value("Mode=1"), CommandError);
}

TEST_F(OfAnotherEffect, NeedsItsUnitWhereSeveralAreShown) {
    EXPECT_NEAR(value("Pan=20R"), 0.6, 0.01);
    EXPECT_NEAR(value("Pan=20l"), 0.4, 0.01);
    EXPECT_THROW(value("Pan=20"), CommandError);
}

TEST_F(OfAnotherEffect, LeavesTheParameterWhereItWas) {
    for (const char* const text : {"Drive=1", "Mode=Hard", "Drive=99"})
        value(text);
    EXPECT_EQ(effect.parameter(0), 0.3F);
    EXPECT_EQ(effect.parameter(4), 0.3F);
}

} // namespace
} // namespace mirelon::tools
