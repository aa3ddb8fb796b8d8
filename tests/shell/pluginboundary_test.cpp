// The .so as a host meets it: what it exports, how instances come and go, and
// what a careless host may do to it.
#include "tests/support/plugin.h"
#include "tests/support/shellcommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using mirelon::hosting::HostCall;
using mirelon::hosting::Module;
using mirelon::hosting::RecordingHost;
using mirelon::test::PluginInstance;
using mirelon::test::pluginModule;
using mirelon::test::StereoBuffer;
using testing::ElementsAre;
using testing::IsSubsetOf;

// The words in one column of a program's output.
std::set<std::string> column(const std::string& command, int wanted, const std::string& marked) {
    const mirelon::test::ShellResult result = mirelon::test::runShell(command);
    EXPECT_EQ(result.status, 0) << command;
    std::set<std::string> words;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        if (line.find(marked) == std::string::npos)
            continue;
        std::istringstream text(line);
        std::string word;
        for (int i = 0; i <= wanted && text >> word; ++i)
            if (i == wanted)
                words.insert(word);
    }
    return words;
}

Module::EntryPoint entryNamed(const char* name) {
    return reinterpret_cast<Module::EntryPoint>(pluginModule().symbol(name));
}

constexpr std::array entryNames{"VSTPluginMain", "main_macho"};

// Answers nothing to any question.
VstIntPtr deadHost(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float) {
    return 0;
}

std::vector<VstInt32> opcodesHeard(const RecordingHost& host) {
    std::vector<VstInt32> opcodes;
    for (const HostCall& call : host.calls())
        opcodes.push_back(call.opcode);
    return opcodes;
}

} // namespace

TEST(PluginFile, ExportsItsTwoEntryPointsAndNothingElse) {
    const auto names = column("nm -D --defined-only '" MIRELON_PLUGIN_FILE "'", 2, " ");
    EXPECT_THAT(names, ElementsAre("VSTPluginMain", "main_macho"));
}

TEST(PluginFile, StaysMappedWhenAHostUnloadsIt) {
    const auto flags = column("readelf -d '" MIRELON_PLUGIN_FILE "'", 3, "NODELETE");
    EXPECT_FALSE(flags.empty());
}

TEST(PluginEntry, AnswersNullToAHostWithoutAVersion) {
    for (const char* name : entryNames)
        EXPECT_EQ(entryNamed(name)(&deadHost), nullptr) << name;
}

// The version is asked for at the door and again where the effect is made.
TEST(PluginEntry, AnswersNullToAHostThatGivesItsVersionOnlyOnce) {
    for (const char* name : entryNames) {
        RecordingHost host;
        VstIntPtr version = 2400;
        host.answer(audioMasterVersion,
                    [&version](const HostCall&) { return std::exchange(version, 0); });
        EXPECT_EQ(entryNamed(name)(host.callback()), nullptr) << name;
        EXPECT_EQ(host.calls().size(), 2U) << name;
        EXPECT_EQ(host.count(audioMasterVersion), 2U) << name;
    }
}

TEST(PluginEntry, AsksForTheVersionWithoutAnyArgument) {
    PluginInstance plugin;
    const std::vector<HostCall> questions = plugin.host.calls(audioMasterVersion);
    EXPECT_EQ(questions.size(), 2U);
    for (const HostCall& question : questions) {
        EXPECT_EQ(question.effect, nullptr);
        EXPECT_EQ(question.index, 0);
        EXPECT_EQ(question.value, 0);
        EXPECT_EQ(question.ptr, nullptr);
        EXPECT_EQ(question.opt, 0.0F);
    }
}

TEST(PluginEntry, AnswersNullWithoutACallback) {
    for (const char* name : entryNames)
        EXPECT_EQ(entryNamed(name)(nullptr), nullptr) << name;
}

TEST(PluginEntry, MakesTheSameEffectUnderBothNames) {
    for (const char* name : entryNames) {
        RecordingHost host;
        AEffect* effect = entryNamed(name)(host.callback());
        ASSERT_NE(effect, nullptr) << name;
        EXPECT_EQ(effect->magic, 0x56737450);
        EXPECT_EQ(effect->numInputs, 2);
        EXPECT_EQ(effect->numOutputs, 2);
        EXPECT_EQ(effect->numParams, 9);
        EXPECT_EQ(effect->numPrograms, 1);
        EXPECT_EQ(effect->uniqueID, 0x4D724C6E);
        EXPECT_EQ(effect->version, 1);
        EXPECT_EQ(effect->initialDelay, 0);
        EXPECT_EQ(effect->flags, 4145) << "editor, replacing, double replacing, chunks";
        EXPECT_EQ(effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F), 1);
    }
}

TEST(PluginEntry, AcceptsAnyVersionButZero) {
    for (const VstIntPtr version : {1, 2300, -1}) {
        RecordingHost host;
        host.answer(audioMasterVersion, version);
        AEffect* effect = entryNamed("VSTPluginMain")(host.callback());
        ASSERT_NE(effect, nullptr) << version;
        effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
    }
}

TEST(PluginConstruction, CallsItsHostInAFixedOrder) {
    RecordingHost host;
    AEffect* effect = entryNamed("VSTPluginMain")(host.callback());
    ASSERT_NE(effect, nullptr);
    std::vector<VstInt32> opcodes = opcodesHeard(host);
    ASSERT_GE(opcodes.size(), 7U);
    opcodes.resize(7);
    EXPECT_THAT(opcodes,
                ElementsAre(audioMasterVersion, audioMasterVersion, audioMasterGetOutputLatency,
                            audioMasterGetBlockSize, audioMasterUpdateDisplay, audioMasterBeginEdit,
                            audioMasterEndEdit));
    for (std::size_t i = 2; i < 7; ++i)
        EXPECT_EQ(host.calls()[i].effect, effect);
    EXPECT_EQ(host.calls()[5].index, 0);
    effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
}

TEST(PluginConstruction, AsksForNothingButWhatItNeeds) {
    PluginInstance plugin;
    std::set<VstInt32> opcodes;
    for (const HostCall& call : plugin.host.calls())
        opcodes.insert(call.opcode);
    EXPECT_THAT(opcodes,
                IsSubsetOf({VstInt32{audioMasterVersion}, VstInt32{audioMasterGetOutputLatency},
                            VstInt32{audioMasterGetBlockSize}, VstInt32{audioMasterUpdateDisplay},
                            VstInt32{audioMasterBeginEdit}, VstInt32{audioMasterEndEdit}}));
}

TEST(PluginSwitching, OnAsksForTheOutputLatencyAndThenTheBlockSize) {
    PluginInstance plugin;
    plugin.host.forgetCalls();
    plugin.effect.dispatch(effMainsChanged, 0, 1);
    EXPECT_THAT(opcodesHeard(plugin.host),
                ElementsAre(audioMasterGetOutputLatency, audioMasterGetBlockSize));
}

TEST(PluginSwitching, OffAsksForTheOutputLatencyAndThenTheBlockSize) {
    PluginInstance plugin;
    plugin.effect.dispatch(effMainsChanged, 0, 1);
    plugin.host.forgetCalls();
    plugin.effect.dispatch(effMainsChanged, 0, 0);
    EXPECT_THAT(opcodesHeard(plugin.host),
                ElementsAre(audioMasterGetOutputLatency, audioMasterGetBlockSize));
}

TEST(PluginSwitching, NeverAsksForMidi) {
    PluginInstance plugin;
    plugin.effect.resume();
    mirelon::test::processed(plugin.effect, StereoBuffer<float>(64));
    plugin.effect.suspend();
    plugin.effect.resume();
    EXPECT_EQ(plugin.host.count(audioMasterWantMidi), 0U);
}

TEST(PluginInstances, AreIndependent) {
    PluginInstance one;
    PluginInstance other;
    one.effect.setParameter(1, 0.75F);
    one.effect.setProgramName("mine");
    EXPECT_EQ(other.effect.parameter(1), 0.5F);
    EXPECT_EQ(other.effect.programName(), "init");
}

TEST(PluginInstances, ComeAndGoByTheHundred) {
    for (int i = 0; i < 100; ++i) {
        PluginInstance plugin;
        ASSERT_EQ(plugin.effect.name(), "Dravik Mirelon");
    }
}

TEST(CarelessHost, MayPassNullForEveryCommand) {
    PluginInstance plugin;
    for (VstInt32 opcode = effSetProgram; opcode <= effGetNumMidiOutputChannels; ++opcode)
        if (opcode != effEditOpen)
            for (const VstInt32 index : {0, -1, 9, INT32_MAX, INT32_MIN})
                plugin.effect.dispatch(opcode, index, 0, nullptr, 0.0F);
    EXPECT_EQ(plugin.effect.name(), "Dravik Mirelon");
}

TEST(CarelessHost, MayUseIndicesOutsideTheTable) {
    PluginInstance plugin;
    const auto before = plugin.effect.chunk();
    for (const VstInt32 index : {-1, 9, 17, 1000000, INT32_MAX, INT32_MIN}) {
        plugin.effect.setParameter(index, 0.3F);
        EXPECT_EQ(plugin.effect.parameter(index), 0.0F) << index;
        EXPECT_EQ(plugin.effect.parameterName(index), "") << index;
        EXPECT_EQ(plugin.effect.parameterLabel(index), "") << index;
        EXPECT_EQ(plugin.effect.parameterDisplay(index), "") << index;
        EXPECT_FALSE(plugin.effect.parameterProperties(index).has_value()) << index;
    }
    EXPECT_EQ(plugin.effect.chunk(), before);
}

TEST(CarelessHost, MaySendValuesThatAreNoNumbers) {
    PluginInstance plugin;
    plugin.effect.resume();
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity(), -1.0F, 2.0F, 1e-42F}) {
        for (VstInt32 index = 0; index < 9; ++index) {
            plugin.effect.setParameter(index, value);
            plugin.effect.parameterDisplay(index);
        }
        mirelon::test::processed(plugin.effect, StereoBuffer<float>(64));
    }
    for (VstInt32 index = 0; index < 5; ++index)
        plugin.effect.setParameter(index, 0.5F);
    EXPECT_EQ(plugin.effect.parameterDisplay(0), "100.00");
}

TEST(CarelessHost, MayLeaveOutBuffers) {
    PluginInstance plugin;
    plugin.effect.resume();
    StereoBuffer<float> buffer(16);
    float* half[2] = {buffer.left.data(), nullptr};
    float* otherHalf[2] = {nullptr, buffer.right.data()};
    AEffect* effect = &plugin.effect.record();
    effect->processReplacing(effect, nullptr, buffer.pointers(), 16);
    effect->processReplacing(effect, buffer.pointers(), nullptr, 16);
    effect->processReplacing(effect, half, buffer.pointers(), 16);
    effect->processReplacing(effect, buffer.pointers(), half, 16);
    effect->processReplacing(effect, otherHalf, buffer.pointers(), 16);
    effect->processReplacing(effect, buffer.pointers(), otherHalf, 16);
    effect->processReplacing(effect, nullptr, nullptr, 0);
    effect->processReplacing(effect, buffer.pointers(), buffer.pointers(), -5);
    effect->processDoubleReplacing(effect, nullptr, nullptr, 16);
    effect->process(effect, nullptr, nullptr, 16);
    EXPECT_EQ(buffer.left, std::vector<float>(16, 0.0F));
}

TEST(CarelessHost, MayGiveNonsenseRatesAndSizes) {
    PluginInstance plugin;
    for (const float rate : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 1e30F, 1e-30F}) {
        plugin.effect.suspend();
        plugin.effect.setSampleRate(rate);
        plugin.effect.setBlockSize(static_cast<VstIntPtr>(rate > 0.0F ? 0 : -7));
        plugin.effect.resume();
        StereoBuffer<float> input({1.0F, 0.5F}, {0.25F, -0.5F});
        const auto output = mirelon::test::processed(plugin.effect, input);
        EXPECT_EQ(output.left, input.left) << rate;
    }
}

TEST(CarelessHost, MayProcessBeforeItResumes) {
    PluginInstance plugin;
    AEffect* effect = &plugin.effect.record();
    StereoBuffer<float> buffer({0.5F}, {0.25F});
    effect->processReplacing(effect, buffer.pointers(), buffer.pointers(), 1);
    EXPECT_EQ(buffer.left[0], 0.5F);
}

TEST(PluginWithoutDisplayAndHome, WorksAllTheSame) {
    EXPECT_EXIT(
        {
            unsetenv("DISPLAY");
            unsetenv("HOME");
            unsetenv("XDG_CONFIG_HOME");
            PluginInstance plugin;
            plugin.effect.resume();
            const auto output =
                mirelon::test::processed(plugin.effect, StereoBuffer<float>({0.5F}, {0.25F}));
            std::_Exit(output.left[0] == 0.5F && plugin.effect.programName() == "init" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
