// What a host gets from an effect that replaces none of the operations.
#include "hosting/recordinghost.h"
#include "shell/capabilities.h"
#include "tests/shell/plaineffect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

namespace {

using mirelon::hosting::RecordingHost;

constexpr VstInt32 firstExtended = effProcessEvents;
constexpr VstInt32 lastExtended = effGetNumMidiOutputChannels;

// The commands from `firstExtended` on that answer something but 0 when they
// are asked with zeros.
constexpr std::array sayingSomething{effCanBeAutomated,
                                     effGetNumProgramCategories,
                                     effConnectInput,
                                     effConnectOutput,
                                     effGetCurrentMidiProgram,
                                     effKeysRequired,
                                     effSetBlockSizeAndSampleRate,
                                     effGetVstVersion};

// Stands for any text or record; larger than each of them. Ends as a text does.
using Buffer = std::array<char, 1024>;
Buffer filledBuffer() {
    Buffer buffer;
    buffer.fill('U');
    buffer.back() = '\0';
    return buffer;
}

// A command with a buffer behind each argument that may be an address.
VstIntPtr askAboutBuffers(AudioEffectX& effect, VstInt32 opcode, Buffer& first, Buffer& second) {
    const bool secondInValue =
        opcode == effSetSpeakerArrangement || opcode == effGetSpeakerArrangement;
    return effect.dispatcher(opcode, 0,
                             secondInValue ? reinterpret_cast<VstIntPtr>(second.data()) : 0,
                             first.data(), 0.0F);
}

} // namespace

TEST(EffectDefaults, AreThoseOfAnEffectThatDoesNotCare) {
    PlainEffect effect;
    EXPECT_EQ(ask(effect, effCanBeAutomated), 1);
    EXPECT_EQ(ask(effect, effGetNumProgramCategories), 1);
    EXPECT_EQ(ask(effect, effGetCurrentMidiProgram), -1);
    EXPECT_EQ(effect.dispatcher(effSetTotalSampleToProcess, 0, 4321, nullptr, 0.0F), 4321);
    EXPECT_EQ(ask(effect, effGetVstVersion), 2400);
    EXPECT_EQ(ask(effect, effGetPlugCategory), kPlugCategUnknown);
    EXPECT_EQ(ask(effect, effKeysRequired), 1);
    EXPECT_EQ(ask(effect, effConnectInput), 1);
    EXPECT_EQ(ask(effect, effConnectOutput), 1);
}

TEST(EffectDefaults, AnswerZeroToEveryOtherQuestion) {
    PlainEffect effect;
    Buffer first = filledBuffer();
    Buffer second = filledBuffer();
    for (const VstInt32 opcode : {effGetVu, effGetChunk, effSetChunk})
        EXPECT_EQ(ask(effect, opcode, first.data()), 0) << opcode;
    for (VstInt32 opcode = firstExtended; opcode <= lastExtended; ++opcode) {
        if (std::ranges::find(sayingSomething, opcode) != sayingSomething.end())
            continue;
        EXPECT_EQ(askAboutBuffers(effect, opcode, first, second), 0) << opcode;
    }
}

TEST(EffectDefaults, LeaveTextsAndRecordsAsTheyWere) {
    PlainEffect effect;
    const auto expectUntouched = [&effect](VstInt32 opcode) {
        Buffer first = filledBuffer();
        Buffer second = filledBuffer();
        askAboutBuffers(effect, opcode, first, second);
        EXPECT_EQ(first, filledBuffer()) << opcode;
        EXPECT_EQ(second, filledBuffer()) << opcode;
    };
    for (const VstInt32 opcode : {effSetProgramName, effGetChunk, effSetChunk})
        expectUntouched(opcode);
    for (VstInt32 opcode = firstExtended; opcode <= lastExtended; ++opcode)
        expectUntouched(opcode);
}

TEST(EffectDefaults, ClaimNoCapability) {
    PlainEffect effect;
    for (const std::string_view capability : kPlugInCapabilities) {
        std::string text(capability);
        EXPECT_EQ(ask(effect, effCanDo, text.data()), 0) << text;
    }
}

TEST(EffectDefaults, OfASynthSayTheSynthCategory) {
    PlainEffect effect;
    effect.isSynth(true);
    EXPECT_EQ(ask(effect, effGetPlugCategory), kPlugCategSynth);
}

TEST(EffectDefaults, StartWithTheUsualRateAndBlockSize) {
    const PlainEffect effect;
    EXPECT_EQ(effect.getSampleRate(), 44100.0F);
    EXPECT_EQ(effect.getBlockSize(), 1024);
}

TEST(EffectDefaults, KeepTheRateThatTheHostSets) {
    PlainEffect effect;
    effect.dispatcher(effSetSampleRate, 0, 0, nullptr, 88200.0F);
    EXPECT_EQ(effect.getSampleRate(), 88200.0F);
    EXPECT_EQ(effect.getBlockSize(), 1024);
}

TEST(EffectDefaults, KeepTheBlockSizeThatTheHostSets) {
    PlainEffect effect;
    effect.dispatcher(effSetBlockSize, 0, 333, nullptr, 0.0F);
    EXPECT_EQ(effect.getBlockSize(), 333);
    EXPECT_EQ(effect.getSampleRate(), 44100.0F);
}

TEST(EffectDefaults, KeepRateAndBlockSizeSetTogether) {
    PlainEffect effect;
    EXPECT_EQ(effect.dispatcher(effSetBlockSizeAndSampleRate, 0, 256, nullptr, 48000.0F), 1);
    EXPECT_EQ(effect.getSampleRate(), 48000.0F);
    EXPECT_EQ(effect.getBlockSize(), 256);
}

TEST(EffectDefaults, KeepTheProgram) {
    PlainEffect effect;
    effect.dispatcher(effSetProgram, 0, 0, nullptr, 0.0F);
    EXPECT_EQ(ask(effect, effGetProgram), 0);
    effect.dispatcher(effSetProgram, 0, -3, nullptr, 0.0F);
    EXPECT_EQ(ask(effect, effGetProgram), -3);
}

TEST(EffectDefaults, WriteEmptyTexts) {
    for (const VstInt32 opcode :
         {effGetProgramName, effGetParamLabel, effGetParamDisplay, effGetParamName}) {
        PlainEffect effect;
        std::array<char, 8> text{"filled"};
        ask(effect, opcode, text.data());
        EXPECT_STREQ(text.data(), "") << opcode;
    }
}

TEST(EffectDefaults, HoldNoParameterValues) {
    RecordingHost host;
    PlainEffect effect(host.callback());
    AEffect* record = effect.getAeffect();
    record->setParameter(record, 3, 0.75F);
    EXPECT_EQ(record->getParameter(record, 3), 0.0F);
    EXPECT_TRUE(host.calls().empty());
}

TEST(EffectDefaults, LeaveAudioAsItWas) {
    PlainEffect effect;
    AEffect* record = effect.getAeffect();
    std::array<float, 2> in{0.5F, -0.5F};
    std::array<float, 2> out{0.25F, 0.125F};
    std::array<double, 2> doubleIn{0.5, -0.5};
    std::array<double, 2> doubleOut{0.25, 0.125};
    float* inputs[2] = {in.data(), in.data()};
    float* outputs[2] = {out.data(), out.data()};
    double* doubleInputs[2] = {doubleIn.data(), doubleIn.data()};
    double* doubleOutputs[2] = {doubleOut.data(), doubleOut.data()};
    record->process(record, inputs, outputs, 2);
    record->processDoubleReplacing(record, doubleInputs, doubleOutputs, 2);
    EXPECT_THAT(out, testing::ElementsAre(0.25F, 0.125F));
    EXPECT_THAT(doubleOut, testing::ElementsAre(0.25, 0.125));
}

TEST(EffectDefaults, OpenCloseAndSwitchWithoutAWordToTheHost) {
    RecordingHost host;
    PlainEffect effect(host.callback());
    for (const VstIntPtr on : {1, 0})
        EXPECT_EQ(effect.dispatcher(effMainsChanged, 0, on, nullptr, 0.0F), 0);
    for (const VstInt32 opcode : {effOpen, effClose})
        EXPECT_EQ(ask(effect, opcode), 0) << opcode;
    EXPECT_TRUE(host.calls().empty());
}
