#include "hosting/effect.h"

#include "hosting/hostingerror.h"
#include "hosting/module.h"
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gmock/gmock.h>

namespace mirelon::hosting {
namespace {

using test::Dispatched;
using testing::HasSubstr;

Module testPlugin(const std::string& name) {
    return Module(MIRELON_TEST_PLUGINS + name + ".so");
}

std::string refusalOf(const std::string& name) {
    const Module module = testPlugin(name);
    RecordingHost host;
    try {
        const Effect effect(module, host);
    } catch (const PluginError& error) {
        return error.what();
    }
    return "";
}

// The gain effect of the test plug-ins, with what it was asked.
class GainEffect : public testing::Test {
  protected:
    void SetUp() override { calls().clear(); }
    std::vector<Dispatched>& calls() {
        return *static_cast<std::vector<Dispatched>*>(module.symbol("dispatched"));
    }
    std::vector<VstInt32> asked() {
        std::vector<VstInt32> opcodes;
        for (const Dispatched& call : calls())
            opcodes.push_back(call.opcode);
        return opcodes;
    }

    Module module = testPlugin("gain");
    RecordingHost host;
};

TEST_F(GainEffect, IsOpenedAtOnceAndClosedAtTheEnd) {
    {
        const Effect effect(module, host);
        EXPECT_EQ(asked(), std::vector<VstInt32>{effOpen});
    }
    EXPECT_EQ(asked(), (std::vector<VstInt32>{effOpen, effClose}));
}

TEST_F(GainEffect, IsSuspendedBeforeItIsClosed) {
    {
        Effect effect(module, host);
        effect.resume();
    }
    EXPECT_EQ(asked(), (std::vector<VstInt32>{effOpen, effMainsChanged, effStartProcess,
                                              effStopProcess, effMainsChanged, effClose}));
}

TEST_F(GainEffect, IsNotSuspendedTwice) {
    {
        Effect effect(module, host);
        effect.resume();
        effect.suspend();
    }
    EXPECT_EQ(std::ranges::count(asked(), effStopProcess), 1);
}

TEST_F(GainEffect, IsAskedWithWhatTheInterfaceHasForEachQuestion) {
    Effect effect(module, host);
    calls().clear();
    effect.name();
    effect.vendor();
    effect.product();
    effect.vendorVersion();
    effect.vstVersion();
    effect.category();
    effect.canDo("bypass");
    effect.parameterName(3);
    effect.parameterLabel(4);
    effect.parameterDisplay(5);
    effect.parameterProperties(6);
    effect.canBeAutomated(7);
    effect.setParameterText(8, "a quarter");
    effect.inputProperties(1);
    effect.outputProperties(2);
    effect.program();
    effect.programName();
    effect.setProgramName("name");
    effect.programNameAt(2);
    EXPECT_EQ(calls(), (std::vector<Dispatched>{{effGetEffectName},
                                                {effGetVendorString},
                                                {effGetProductString},
                                                {effGetVendorVersion},
                                                {effGetVstVersion},
                                                {effGetPlugCategory},
                                                {effCanDo},
                                                {effGetParamName, 3},
                                                {effGetParamLabel, 4},
                                                {effGetParamDisplay, 5},
                                                {effGetParameterProperties, 6},
                                                {effCanBeAutomated, 7},
                                                {effString2Parameter, 8},
                                                {effGetInputProperties, 1},
                                                {effGetOutputProperties, 2},
                                                {effGetProgram},
                                                {effGetProgramName},
                                                {effSetProgramName},
                                                {effGetProgramNameIndexed, 2, -1}}));
}

TEST_F(GainEffect, IsToldWithWhatTheInterfaceHasForEachMessage) {
    Effect effect(module, host);
    calls().clear();
    effect.setProgram(2);
    effect.chunk(ChunkKind::bank);
    effect.chunk(ChunkKind::program);
    effect.setChunk(std::array<std::byte, 3>{}, ChunkKind::bank);
    effect.setChunk(std::array<std::byte, 5>{}, ChunkKind::program);
    effect.setSampleRate(96000.0F);
    effect.setBlockSize(512);
    effect.setPrecision(kVstProcessPrecision64);
    effect.resume();
    effect.suspend();
    EXPECT_EQ(calls(), (std::vector<Dispatched>{{effBeginSetProgram},
                                                {effSetProgram, 0, 2},
                                                {effEndSetProgram},
                                                {effGetChunk, 0},
                                                {effGetChunk, 1},
                                                {effSetChunk, 0, 3},
                                                {effSetChunk, 1, 5},
                                                {effSetSampleRate, 0, 0, 96000.0F},
                                                {effSetBlockSize, 0, 512},
                                                {effSetProcessPrecision, 0, 1},
                                                {effMainsChanged, 0, 1},
                                                {effStartProcess},
                                                {effStopProcess},
                                                {effMainsChanged, 0, 0}}));
}

TEST_F(GainEffect, MakesItsCallsToItsOwnHost) {
    RecordingHost other;
    Effect effect(module, host);
    EXPECT_EQ(host.count(audioMasterUpdateDisplay), 1U);
    EXPECT_EQ(host.calls(audioMasterUpdateDisplay).front().effect, &effect.record());
    EXPECT_TRUE(other.calls().empty());
}

TEST_F(GainEffect, HasParametersAndTheirTexts) {
    Effect effect(module, host);
    effect.setParameter(0, 0.375F);
    EXPECT_EQ(effect.parameter(0), 0.375F);
    EXPECT_EQ(effect.parameterName(0), "Level");
    EXPECT_EQ(effect.parameterDisplay(0), "0.375");
    EXPECT_FALSE(effect.parameterProperties(0).has_value());
    EXPECT_TRUE(effect.setParameterText(0, "a quarter"));
    EXPECT_EQ(effect.parameter(0), 0.25F);
    EXPECT_FALSE(effect.setParameterText(0, "a lot"));
}

TEST_F(GainEffect, TextWithoutAnEndEndsWithItsBuffer) {
    const Effect effect(module, host);
    EXPECT_EQ(effect.parameterLabel(0), std::string(256, 'x'));
}

TEST_F(GainEffect, TextThatIsNotWrittenIsEmpty) {
    const Effect effect(module, host);
    EXPECT_EQ(effect.vendor(), "");
}

TEST_F(GainEffect, ChangesPrograms) {
    Effect effect(module, host);
    effect.setProgram(1);
    EXPECT_EQ(effect.program(), 1);
    EXPECT_EQ(effect.programName(), "half");
    EXPECT_EQ(effect.parameter(0), 0.5F);
    EXPECT_EQ(effect.programNameAt(2), "none");
    EXPECT_EQ(effect.programNameAt(3), std::nullopt);
    EXPECT_EQ(effect.programNameAt(-1), std::nullopt);
}

TEST_F(GainEffect, GivesNoChunkWhereThereIsNone) {
    const Effect effect(module, host);
    EXPECT_TRUE(effect.chunk().empty());
}

TEST_F(GainEffect, Processes) {
    Effect effect(module, host);
    effect.setParameter(0, 0.5F);
    std::vector<float> input{1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<float> silence(input.size());
    std::vector<float> left(input.size());
    std::vector<float> right(input.size());
    std::vector<float> third(input.size());
    float* inputs[] = {input.data(), input.data(), silence.data()};
    float* outputs[] = {left.data(), right.data(), third.data()};
    effect.process(inputs, outputs, 8);
    EXPECT_THAT(left, testing::ElementsAre(0, 0, 0, 0, 0, 0.5F, 1, 1.5F));
    EXPECT_EQ(left, right);
}

TEST(Effect, IsRefusedWithoutARecord) {
    EXPECT_THAT(refusalOf("nullanswer"), HasSubstr("nullanswer.so: the plug-in made no instance"));
}

TEST(Effect, IsRefusedWithAWrongMagicWord) {
    EXPECT_THAT(refusalOf("wrongmagic"), HasSubstr("wrong magic word"));
}

TEST(Effect, IsRefusedWithoutItsFunctions) {
    EXPECT_THAT(refusalOf("nofunctions"), HasSubstr("lacks a function"));
}

TEST(Effect, IsRefusedWithoutOneOfItsFunctions) {
    for (const char* name : {"dispatcher", "setParameter", "getParameter", "processReplacing"}) {
        setenv("MIRELON_LACKS", name, 1);
        EXPECT_THAT(refusalOf("nofunctions"), HasSubstr("lacks a function")) << name;
    }
    unsetenv("MIRELON_LACKS");
}

TEST(Effect, IsRefusedWhenItPromisesAFunctionThatItLacks) {
    EXPECT_THAT(refusalOf("emptypromise"), HasSubstr("double-precision"));
}

TEST(Effect, IsRefusedWithANegativeCount) {
    EXPECT_THAT(refusalOf("negativecount"), HasSubstr("negative count"));
}

TEST(Effect, IsRefusedWhenTheHostAnswersNoVersion) {
    const Module module = testPlugin("gain");
    RecordingHost host;
    host.answer(audioMasterVersion, 0);
    EXPECT_THROW(Effect(module, host), PluginError);
}

} // namespace
} // namespace mirelon::hosting
