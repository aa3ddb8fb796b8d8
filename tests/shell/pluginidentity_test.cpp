// What a host learns about the plug-in and its parameters.
#include "shell/capabilities.h"
#include "tests/support/plugin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using mirelon::test::PluginInstance;

struct ExpectedParameter {
    const char* name;
    const char* label;
    const char* shortName;
    float initial;
    bool isSwitch;
    const char* display;
};

constexpr std::array<ExpectedParameter, 9> expectedParameters{{
    {"width", "    %   ", "width", 0.5F, false, "100.00"},
    {"gain", "   dB   ", "gain", 0.5F, false, "0.00"},
    {"balance", "       ", "balance", 0.5F, false, "C"},
    {"stability", "         ", "stabili", 0.5F, false, "C"},
    {"centerPos", "         ", "centerP", 0.5F, false, "C"},
    {"process", "         ", "process", 1.0F, true, "On"},
    {"phase", "         ", "phase", 0.0F, true, "Off"},
    {"-L", "    ", "-L", 0.0F, true, "+L"},
    {"-R", "    ", "-R", 0.0F, true, "+R"},
}};

bool sameBytes(const VstParameterProperties& a, const VstParameterProperties& b) {
    return std::memcmp(&a, &b, sizeof a) == 0; // NOLINT(bugprone-suspicious-memory-comparison)
}

} // namespace

TEST(PluginIdentity, NamesItself) {
    PluginInstance plugin;
    EXPECT_EQ(plugin.effect.name(), "Dravik Mirelon");
    EXPECT_EQ(plugin.effect.product(), "Mirelon");
    EXPECT_EQ(plugin.effect.vendor(), "dravik.example");
    EXPECT_EQ(plugin.effect.vendorVersion(), 1980);
    EXPECT_EQ(plugin.effect.vstVersion(), 2400);
    EXPECT_EQ(plugin.effect.category(), kPlugCategMastering);
}

TEST(PluginCapabilities, AreThoseOfTheInterface) {
    EXPECT_THAT(kPlugInCapabilities,
                testing::ElementsAre("sendVstEvents", "sendVstMidiEvent", "receiveVstEvents",
                                     "receiveVstMidiEvent", "receiveVstTimeInfo", "offline",
                                     "midiProgramNames", "bypass"));
}

TEST(PluginIdentity, ClaimsNoCapability) {
    PluginInstance plugin;
    for (const std::string_view capability : kPlugInCapabilities)
        EXPECT_EQ(plugin.effect.canDo(std::string(capability)), 0) << capability;
    for (const char* text : {"", "anything else"})
        EXPECT_EQ(plugin.effect.canDo(text), 0) << text;
}

TEST(PluginIdentity, AnswersTheFixedQuestions) {
    PluginInstance plugin;
    EXPECT_EQ(plugin.effect.dispatch(effKeysRequired), 1);
    EXPECT_EQ(plugin.effect.dispatch(effIdentify), 0x4E764566);
    EXPECT_EQ(plugin.effect.dispatch(effConnectInput), 1);
    EXPECT_EQ(plugin.effect.dispatch(effConnectOutput), 1);
    EXPECT_EQ(plugin.effect.dispatch(effSetBlockSizeAndSampleRate, 0, 64, nullptr, 48000.0F), 1);
    EXPECT_EQ(plugin.effect.dispatch(effGetVu), 0);
    EXPECT_EQ(plugin.effect.dispatch(effGetTailSize), 0);
    EXPECT_EQ(plugin.effect.dispatch(80), 0);
    EXPECT_EQ(plugin.effect.dispatch(-1), 0);
}

TEST(PluginParameters, HaveNamesLabelsDefaultsAndDisplays) {
    PluginInstance plugin;
    for (std::size_t i = 0; i < expectedParameters.size(); ++i) {
        const auto index = static_cast<VstInt32>(i);
        EXPECT_EQ(plugin.effect.parameterName(index), expectedParameters[i].name);
        EXPECT_EQ(plugin.effect.parameterLabel(index), expectedParameters[i].label);
        EXPECT_EQ(plugin.effect.parameter(index), expectedParameters[i].initial);
        EXPECT_EQ(plugin.effect.parameterDisplay(index), expectedParameters[i].display);
        EXPECT_TRUE(plugin.effect.canBeAutomated(index));
    }
}

TEST(PluginParameters, DescribeTheirStepsAndWriteNoOtherField) {
    PluginInstance plugin;
    for (std::size_t i = 0; i < expectedParameters.size(); ++i) {
        VstParameterProperties got;
        std::memset(&got, 0x55, sizeof got);
        VstParameterProperties wanted = got;
        const bool isSwitch = expectedParameters[i].isSwitch;
        wanted.stepFloat = isSwitch ? 1.0F : 0.00390625F;
        wanted.smallStepFloat = isSwitch ? 1.0F : 0.0009765625F;
        wanted.largeStepFloat = isSwitch ? 1.0F : 0.015625F;
        wanted.flags = isSwitch ? 5 : 4;
        std::strcpy(wanted.label, expectedParameters[i].name);
        std::strcpy(wanted.shortLabel, expectedParameters[i].shortName);
        EXPECT_EQ(
            plugin.effect.dispatch(effGetParameterProperties, static_cast<VstInt32>(i), 0, &got),
            1);
        EXPECT_TRUE(sameBytes(got, wanted)) << i;
    }
}

TEST(PluginParameters, OfUnknownIndicesWriteNothing) {
    PluginInstance plugin;
    for (const VstInt32 index : {-1, 9}) {
        VstParameterProperties got;
        std::memset(&got, 0x55, sizeof got);
        const VstParameterProperties before = got;
        EXPECT_EQ(plugin.effect.dispatch(effGetParameterProperties, index, 0, &got), 0);
        EXPECT_TRUE(sameBytes(got, before));
        for (const VstInt32 opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay}) {
            std::array<char, 16> text{"as it was"};
            plugin.effect.dispatch(opcode, index, 0, text.data());
            EXPECT_STREQ(text.data(), "as it was");
        }
    }
}

TEST(PluginPins, AreTwoActiveStereoPinsEachWay) {
    PluginInstance plugin;
    for (const VstInt32 index : {0, 1}) {
        const std::string number = std::to_string(index + 1);
        const auto in = plugin.effect.inputProperties(index);
        const auto out = plugin.effect.outputProperties(index);
        ASSERT_TRUE(in && out);
        EXPECT_EQ(std::string(in->label), "My " + number + " In");
        EXPECT_EQ(std::string(out->label), "My " + number + " Out");
        EXPECT_EQ(in->flags, 3);
        EXPECT_EQ(out->flags, 3);
    }
}

TEST(PluginPins, AboveTheSecondAreRefusedAndBelowTheFirstNumberedOn) {
    PluginInstance plugin;
    EXPECT_FALSE(plugin.effect.inputProperties(2).has_value());
    EXPECT_FALSE(plugin.effect.outputProperties(2).has_value());
    const auto pin = plugin.effect.inputProperties(-3);
    ASSERT_TRUE(pin);
    EXPECT_EQ(std::string(pin->label), "My -2 In");
}

TEST(PluginParameters, ReportSwitchesAtTheirThreshold) {
    PluginInstance plugin;
    plugin.effect.setParameter(6, 0.4999F);
    EXPECT_EQ(plugin.effect.parameterDisplay(6), "Off");
    plugin.effect.setParameter(6, 0.5F);
    EXPECT_EQ(plugin.effect.parameterDisplay(6), "On");
    EXPECT_EQ(plugin.effect.parameter(6), 0.5F);
}
