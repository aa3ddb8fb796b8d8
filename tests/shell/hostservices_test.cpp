// What the effect asks of its host: one callback call each, with its own
// record, and a neutral answer when there is no host.
#include "hosting/recordinghost.h"
#include "shell/capabilities.h"
#include "tests/shell/loggingeffect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>

using mirelon::hosting::HostCall;
using mirelon::hosting::RecordingHost;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

std::array<char, 16> object{};

template <typename Pointee>
Pointee* pointer() {
    return reinterpret_cast<Pointee*>(object.data());
}
VstIntPtr number(const void* address) {
    return reinterpret_cast<VstIntPtr>(address);
}

struct Service {
    const char* name;
    std::function<VstIntPtr(AudioEffectX&)> call; // its answer as a number
    VstInt32 opcode;
    VstInt32 index;
    VstIntPtr value;
    void* ptr;
    float opt;
    VstIntPtr hostAnswer; // what the host says ...
    VstIntPtr answer;     // ... and what becomes of it
    VstIntPtr withoutHost;
};

void PrintTo(const Service& service, std::ostream* out) {
    *out << service.name;
}

// Services without a result count as answering 0.
template <typename Call>
auto silent(Call call) {
    return [call](AudioEffectX& effect) -> VstIntPtr {
        call(effect);
        return 0;
    };
}

std::vector<Service> services() {
    void* const p = object.data();
    const VstIntPtr address = number(p);
    using E = AudioEffectX;
    return {
        {"masterVersion", [](E& e) { return e.getMasterVersion(); }, 1, 0, 0, nullptr, 0, 2400,
         2400, 1},
        {"masterVersionOfAnOldHost", [](E& e) { return e.getMasterVersion(); }, 1, 0, 0, nullptr, 0,
         0, 1, 1},
        {"currentId", [](E& e) { return e.getCurrentUniqueId(); }, 2, 0, 0, nullptr, 0, 77, 77, 0},
        {"idle", silent([](E& e) { e.masterIdle(); }), 3, 0, 0, nullptr, 0, 1, 0, 0},
        {"inputConnected", [](E& e) { return e.isInputConnected(1); }, 4, 1, 0, nullptr, 0, 0, 1,
         1},
        {"inputNotConnected", [](E& e) { return e.isInputConnected(1); }, 4, 1, 0, nullptr, 0, 5, 0,
         1},
        {"outputConnected", [](E& e) { return e.isOutputConnected(2); }, 4, 2, 1, nullptr, 0, 0, 1,
         1},
        {"outputNotConnected", [](E& e) { return e.isOutputConnected(2); }, 4, 2, 1, nullptr, 0, 5,
         0, 1},
        {"wantEvents", silent([](E& e) { e.wantEvents(3); }), 6, 0, 3, nullptr, 0, 1, 0, 0},
        {"timeInfo", [](E& e) { return number(e.getTimeInfo(9)); }, 7, 0, 9, nullptr, 0, address,
         address, 0},
        {"events", [](E& e) { return e.sendVstEventsToHost(pointer<VstEvents>()); }, 8, 0, 0, p, 0,
         1, 1, 0},
        {"eventsUnsure", [](E& e) { return e.sendVstEventsToHost(pointer<VstEvents>()); }, 8, 0, 0,
         p, 0, 2, 0, 0},
        {"tempo", [](E& e) { return e.tempoAt(500); }, 10, 0, 500, nullptr, 0, 1200000, 1200000, 0},
        {"automatable", [](E& e) { return e.getNumAutomatableParameters(); }, 11, 0, 0, nullptr, 0,
         12, 12, 0},
        {"quantization", [](E& e) { return e.getParameterQuantization(); }, 12, 0, 0, nullptr, 0,
         13, 13, 0},
        {"ioChanged", [](E& e) { return e.ioChanged(); }, 13, 0, 0, nullptr, 0, 2, 1, 0},
        {"needIdle", [](E& e) { return e.needIdle(); }, 14, 0, 0, nullptr, 0, 2, 1, 0},
        {"sizeWindow", [](E& e) { return e.sizeWindow(300, 200); }, 15, 300, 200, nullptr, 0, 1, 1,
         0},
        {"inputLatency", [](E& e) { return e.getInputLatency(); }, 18, 0, 0, nullptr, 0, 64, 64, 0},
        {"outputLatency", [](E& e) { return e.getOutputLatency(); }, 19, 0, 0, nullptr, 0, 128, 128,
         0},
        {"previousPlug", [](E& e) { return number(e.getPreviousPlug(0)); }, 20, 0, 0, nullptr, 0,
         address, address, 0},
        {"nextPlug", [](E& e) { return number(e.getNextPlug(0)); }, 21, 0, 0, nullptr, 0, address,
         address, 0},
        {"willReplace", [](E& e) { return e.willProcessReplacing(); }, 22, 0, 0, nullptr, 0, 1, 1,
         0},
        {"processLevel", [](E& e) { return e.getCurrentProcessLevel(); }, 23, 0, 0, nullptr, 0, 2,
         2, 0},
        {"automationState", [](E& e) { return e.getAutomationState(); }, 24, 0, 0, nullptr, 0, 4, 4,
         0},
        {"offlineStart", [](E& e) { return e.offlineStart(pointer<VstAudioFile>(), 4, 5); }, 25, 5,
         4, p, 0, 3, 1, 0},
        {"offlineRead", [](E& e) { return e.offlineRead(pointer<VstOfflineTask>(), 6, true); }, 26,
         1, 6, p, 0, 3, 1, 0},
        {"offlineReadOwn", [](E& e) { return e.offlineRead(pointer<VstOfflineTask>(), 6, false); },
         26, 0, 6, p, 0, 3, 1, 0},
        {"offlineWrite", [](E& e) { return e.offlineWrite(pointer<VstOfflineTask>(), 7); }, 27, 0,
         7, p, 0, 3, 1, 0},
        {"currentPass", [](E& e) { return e.offlineGetCurrentPass(); }, 28, 0, 0, nullptr, 0, 3, 1,
         0},
        {"currentMetaPass", [](E& e) { return e.offlineGetCurrentMetaPass(); }, 29, 0, 0, nullptr,
         0, 3, 1, 0},
        {"outputRate", silent([](E& e) { e.setOutputSamplerate(8000.0F); }), 30, 0, 0, nullptr,
         8000.0F, 1, 0, 0},
        {"outputArrangement", [](E& e) { return number(e.getOutputSpeakerArrangement()); }, 31, 0,
         0, nullptr, 0, address, address, 0},
        {"vendor", [](E& e) { return e.getHostVendorString(object.data()); }, 32, 0, 0, p, 0, 1, 1,
         0},
        {"product", [](E& e) { return e.getHostProductString(object.data()); }, 33, 0, 0, p, 0, 1,
         1, 0},
        {"vendorVersion", [](E& e) { return e.getHostVendorVersion(); }, 34, 0, 0, nullptr, 0, 7, 7,
         0},
        {"vendorSpecific", [](E& e) { return e.hostVendorSpecific(1, 2, object.data(), 0.5F); }, 35,
         1, 2, p, 0.5F, VstIntPtr{1} << 40, VstIntPtr{1} << 40, 0},
        {"canDo", [](E& e) { return e.canHostDo(object.data()); }, 37, 0, 0, p, 0, -1, 1, 0},
        {"language", [](E& e) { return e.getHostLanguage(); }, 38, 0, 0, nullptr, 0, 2, 2, 0},
        {"openWindow", [](E& e) { return number(e.openWindow(pointer<VstWindow>())); }, 39, 0, 0, p,
         0, address, address, 0},
        {"closeWindow", [](E& e) { return e.closeWindow(pointer<VstWindow>()); }, 40, 0, 0, p, 0, 1,
         1, 0},
        {"directory", [](E& e) { return number(e.getDirectory()); }, 41, 0, 0, nullptr, 0, address,
         address, 0},
        {"updateDisplay", [](E& e) { return e.updateDisplay(); }, 42, 0, 0, nullptr, 0, 1, 1, 0},
        {"beginEdit", [](E& e) { return e.beginEdit(3); }, 43, 3, 0, nullptr, 0, 1, 1, 0},
        {"endEdit", [](E& e) { return e.endEdit(4); }, 44, 4, 0, nullptr, 0, 1, 1, 0},
        {"openSelector", [](E& e) { return e.openFileSelector(pointer<VstFileSelect>()); }, 45, 0,
         0, p, 0, 1, 1, 0},
        {"closeSelector", [](E& e) { return e.closeFileSelector(pointer<VstFileSelect>()); }, 46, 0,
         0, p, 0, 1, 1, 0},
        {"chunkFile", [](E& e) { return e.getChunkFile(object.data()); }, 48, 0, 0, p, 0, 1, 1, 0},
        {"inputArrangement", [](E& e) { return number(e.getInputSpeakerArrangement()); }, 49, 0, 0,
         nullptr, 0, address, address, 0},
    };
}

class HostService : public testing::TestWithParam<Service> {};

} // namespace

TEST_P(HostService, MakesOneCallAndPassesOnTheAnswer) {
    const Service& service = GetParam();
    RecordingHost host;
    LoggingEffect effect(host.callback());
    host.answer(service.opcode, service.hostAnswer);
    EXPECT_EQ(service.call(effect), service.answer);
    const std::vector<HostCall> calls = host.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].effect, effect.getAeffect());
    EXPECT_EQ(calls[0].opcode, service.opcode);
    EXPECT_EQ(calls[0].index, service.index);
    EXPECT_EQ(calls[0].value, service.value);
    EXPECT_EQ(calls[0].ptr, service.ptr);
    EXPECT_EQ(calls[0].opt, service.opt);
}

TEST_P(HostService, HasANeutralAnswerWithoutAHost) {
    LoggingEffect effect(nullptr);
    EXPECT_EQ(GetParam().call(effect), GetParam().withoutHost);
}

INSTANTIATE_TEST_SUITE_P(All, HostService, testing::ValuesIn(services()),
                         [](const testing::TestParamInfo<Service>& info) {
                             return std::string(info.param.name);
                         });

TEST(HostRates, ReplaceTheStoredOnesWhenPositive) {
    RecordingHost host;
    LoggingEffect effect(host.callback());
    host.answer(audioMasterGetSampleRate, 48000);
    host.answer(audioMasterGetBlockSize, 512);
    EXPECT_EQ(effect.updateSampleRate(), 48000.0F);
    EXPECT_EQ(effect.getSampleRate(), 48000.0F);
    EXPECT_EQ(effect.updateBlockSize(), 512);
    EXPECT_EQ(effect.getBlockSize(), 512);
}

TEST(HostRates, LeaveTheStoredOnesWhenZeroOrNegative) {
    RecordingHost host;
    LoggingEffect effect(host.callback());
    for (const VstIntPtr answer : {0, -1}) {
        host.answer(audioMasterGetSampleRate, answer);
        host.answer(audioMasterGetBlockSize, answer);
        EXPECT_EQ(effect.updateSampleRate(), 44100.0F);
        EXPECT_EQ(effect.updateBlockSize(), 1024);
    }
}

TEST(HostRates, AreTheStoredOnesWithoutAHost) {
    LoggingEffect effect(nullptr);
    EXPECT_EQ(effect.updateSampleRate(), 44100.0F);
    EXPECT_EQ(effect.updateBlockSize(), 1024);
}

TEST(HostCapabilities, AreThoseOfTheInterface) {
    EXPECT_THAT(kHostCapabilities,
                ElementsAre("sendVstEvents", "sendVstMidiEvent", "sendVstTimeInfo",
                            "receiveVstEvents", "receiveVstMidiEvent", "reportConnectionChanges",
                            "acceptIOChanges", "sizeWindow", "offline", "openFileSelector",
                            "closeFileSelector", "startStopProcess", "shellCategory",
                            "sendVstMidiEventFlagIsRealtime"));
}

TEST(HostCapabilities, AreAskedForByTheirText) {
    RecordingHost host;
    LoggingEffect effect(host.callback());
    std::vector<std::string> asked;
    host.answer(audioMasterCanDo, [&asked](const HostCall& call) {
        asked.emplace_back(static_cast<const char*>(call.ptr));
        return asked.back() == "sizeWindow" ? 1 : 0;
    });
    for (const std::string_view capability : kHostCapabilities) {
        std::string text(capability);
        EXPECT_EQ(effect.canHostDo(text.data()), text == "sizeWindow") << text;
    }
    EXPECT_THAT(asked, ElementsAreArray(kHostCapabilities));
}

TEST(AutomatedChange, ReachesTheEffectBeforeTheHostHearsOfIt) {
    RecordingHost host;
    LoggingEffect effect(host.callback());
    std::vector<std::string> heardByThen;
    host.answer(audioMasterAutomate, [&](const HostCall&) {
        heardByThen = effect.heard;
        return 0;
    });
    effect.setParameterAutomated(3, 0.25F);
    EXPECT_EQ(heardByThen, std::vector<std::string>{"setParameter 3 0.25"});
}

TEST(AutomatedChange, TellsTheHostItsIndexAndItsNewValueAndNothingElse) {
    RecordingHost host;
    LoggingEffect effect(host.callback());
    effect.setParameterAutomated(3, 0.25F);
    const std::vector<HostCall> calls = host.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].effect, effect.getAeffect());
    EXPECT_EQ(calls[0].opcode, audioMasterAutomate);
    EXPECT_EQ(calls[0].index, 3);
    EXPECT_EQ(calls[0].value, 0);
    EXPECT_EQ(calls[0].ptr, nullptr);
    EXPECT_EQ(calls[0].opt, 0.25F);
}

TEST(AutomatedChange, WorksWithoutAHost) {
    LoggingEffect effect(nullptr);
    effect.setParameterAutomated(1, 0.5F);
    EXPECT_EQ(effect.heard, std::vector<std::string>{"setParameter 1 0.5"});
}

namespace {

class MidiEffect : public AudioEffectX {
  public:
    MidiEffect(audioMasterCallback audioMaster, VstInt32 answer)
        : AudioEffectX(audioMaster, 1, 1)
        , answer(answer) {}
    void processReplacing(float**, float**, VstInt32) override {}
    VstInt32 canDo(char* text) override {
        return std::string_view(text) == "receiveVstMidiEvent" ? answer : 0;
    }

  private:
    VstInt32 answer;
};

std::size_t midiRequestsOnResume(VstInt32 canDoAnswer, bool synth) {
    RecordingHost host;
    MidiEffect effect(host.callback(), canDoAnswer);
    effect.isSynth(synth);
    effect.resume();
    return host.count(audioMasterWantMidi);
}

} // namespace

TEST(Resuming, AsksForMidiOnlyForSynthsAndEffectsThatReceiveIt) {
    EXPECT_EQ(midiRequestsOnResume(0, false), 0U);
    EXPECT_EQ(midiRequestsOnResume(-1, false), 0U);
    EXPECT_EQ(midiRequestsOnResume(1, false), 1U);
    EXPECT_EQ(midiRequestsOnResume(0, true), 1U);
}
