// The numbers that cross the boundary between host and effect, written out.
// Everything else here, our own host included, uses the interface's names: a
// shifted list of them would still agree with itself, and with no other host.
#include "shell/vst24.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>

namespace {

struct Number {
    const char* name;
    VstInt32 declared;
    VstInt32 published;
};

void PrintTo(const Number& number, std::ostream* out) {
    *out << number.name;
}

// What a host asks of an effect.
constexpr std::array commands{
    Number{"effOpen", effOpen, 0},
    Number{"effClose", effClose, 1},
    Number{"effSetProgram", effSetProgram, 2},
    Number{"effGetProgram", effGetProgram, 3},
    Number{"effSetProgramName", effSetProgramName, 4},
    Number{"effGetProgramName", effGetProgramName, 5},
    Number{"effGetParamLabel", effGetParamLabel, 6},
    Number{"effGetParamDisplay", effGetParamDisplay, 7},
    Number{"effGetParamName", effGetParamName, 8},
    Number{"effGetVu", effGetVu, 9},
    Number{"effSetSampleRate", effSetSampleRate, 10},
    Number{"effSetBlockSize", effSetBlockSize, 11},
    Number{"effMainsChanged", effMainsChanged, 12},
    Number{"effEditGetRect", effEditGetRect, 13},
    Number{"effEditOpen", effEditOpen, 14},
    Number{"effEditClose", effEditClose, 15},
    Number{"effEditDraw", effEditDraw, 16},
    Number{"effEditMouse", effEditMouse, 17},
    Number{"effEditKey", effEditKey, 18},
    Number{"effEditIdle", effEditIdle, 19},
    Number{"effEditTop", effEditTop, 20},
    Number{"effEditSleep", effEditSleep, 21},
    Number{"effIdentify", effIdentify, 22},
    Number{"effGetChunk", effGetChunk, 23},
    Number{"effSetChunk", effSetChunk, 24},
    Number{"effProcessEvents", effProcessEvents, 25},
    Number{"effCanBeAutomated", effCanBeAutomated, 26},
    Number{"effString2Parameter", effString2Parameter, 27},
    Number{"effGetNumProgramCategories", effGetNumProgramCategories, 28},
    Number{"effGetProgramNameIndexed", effGetProgramNameIndexed, 29},
    Number{"effCopyProgram", effCopyProgram, 30},
    Number{"effConnectInput", effConnectInput, 31},
    Number{"effConnectOutput", effConnectOutput, 32},
    Number{"effGetInputProperties", effGetInputProperties, 33},
    Number{"effGetOutputProperties", effGetOutputProperties, 34},
    Number{"effGetPlugCategory", effGetPlugCategory, 35},
    Number{"effGetCurrentPosition", effGetCurrentPosition, 36},
    Number{"effGetDestinationBuffer", effGetDestinationBuffer, 37},
    Number{"effOfflineNotify", effOfflineNotify, 38},
    Number{"effOfflinePrepare", effOfflinePrepare, 39},
    Number{"effOfflineRun", effOfflineRun, 40},
    Number{"effProcessVarIo", effProcessVarIo, 41},
    Number{"effSetSpeakerArrangement", effSetSpeakerArrangement, 42},
    Number{"effSetBlockSizeAndSampleRate", effSetBlockSizeAndSampleRate, 43},
    Number{"effSetBypass", effSetBypass, 44},
    Number{"effGetEffectName", effGetEffectName, 45},
    Number{"effGetErrorText", effGetErrorText, 46},
    Number{"effGetVendorString", effGetVendorString, 47},
    Number{"effGetProductString", effGetProductString, 48},
    Number{"effGetVendorVersion", effGetVendorVersion, 49},
    Number{"effVendorSpecific", effVendorSpecific, 50},
    Number{"effCanDo", effCanDo, 51},
    Number{"effGetTailSize", effGetTailSize, 52},
    Number{"effIdle", effIdle, 53},
    Number{"effGetIcon", effGetIcon, 54},
    Number{"effSetViewPosition", effSetViewPosition, 55},
    Number{"effGetParameterProperties", effGetParameterProperties, 56},
    Number{"effKeysRequired", effKeysRequired, 57},
    Number{"effGetVstVersion", effGetVstVersion, 58},
    Number{"effEditKeyDown", effEditKeyDown, 59},
    Number{"effEditKeyUp", effEditKeyUp, 60},
    Number{"effSetEditKnobMode", effSetEditKnobMode, 61},
    Number{"effGetMidiProgramName", effGetMidiProgramName, 62},
    Number{"effGetCurrentMidiProgram", effGetCurrentMidiProgram, 63},
    Number{"effGetMidiProgramCategory", effGetMidiProgramCategory, 64},
    Number{"effHasMidiProgramsChanged", effHasMidiProgramsChanged, 65},
    Number{"effGetMidiKeyName", effGetMidiKeyName, 66},
    Number{"effBeginSetProgram", effBeginSetProgram, 67},
    Number{"effEndSetProgram", effEndSetProgram, 68},
    Number{"effGetSpeakerArrangement", effGetSpeakerArrangement, 69},
    Number{"effShellGetNextPlugin", effShellGetNextPlugin, 70},
    Number{"effStartProcess", effStartProcess, 71},
    Number{"effStopProcess", effStopProcess, 72},
    Number{"effSetTotalSampleToProcess", effSetTotalSampleToProcess, 73},
    Number{"effSetPanLaw", effSetPanLaw, 74},
    Number{"effBeginLoadBank", effBeginLoadBank, 75},
    Number{"effBeginLoadProgram", effBeginLoadProgram, 76},
    Number{"effSetProcessPrecision", effSetProcessPrecision, 77},
    Number{"effGetNumMidiInputChannels", effGetNumMidiInputChannels, 78},
    Number{"effGetNumMidiOutputChannels", effGetNumMidiOutputChannels, 79},
};

static_assert(commands.size() == 80);

// What an effect asks of its host.
constexpr std::array hostCalls{
    Number{"audioMasterAutomate", audioMasterAutomate, 0},
    Number{"audioMasterVersion", audioMasterVersion, 1},
    Number{"audioMasterCurrentId", audioMasterCurrentId, 2},
    Number{"audioMasterIdle", audioMasterIdle, 3},
    Number{"audioMasterPinConnected", audioMasterPinConnected, 4},
    Number{"audioMasterWantMidi", audioMasterWantMidi, 6},
    Number{"audioMasterGetTime", audioMasterGetTime, 7},
    Number{"audioMasterProcessEvents", audioMasterProcessEvents, 8},
    Number{"audioMasterTempoAt", audioMasterTempoAt, 10},
    Number{"audioMasterGetNumAutomatableParameters", audioMasterGetNumAutomatableParameters, 11},
    Number{"audioMasterGetParameterQuantization", audioMasterGetParameterQuantization, 12},
    Number{"audioMasterIOChanged", audioMasterIOChanged, 13},
    Number{"audioMasterNeedIdle", audioMasterNeedIdle, 14},
    Number{"audioMasterSizeWindow", audioMasterSizeWindow, 15},
    Number{"audioMasterGetSampleRate", audioMasterGetSampleRate, 16},
    Number{"audioMasterGetBlockSize", audioMasterGetBlockSize, 17},
    Number{"audioMasterGetInputLatency", audioMasterGetInputLatency, 18},
    Number{"audioMasterGetOutputLatency", audioMasterGetOutputLatency, 19},
    Number{"audioMasterGetPreviousPlug", audioMasterGetPreviousPlug, 20},
    Number{"audioMasterGetNextPlug", audioMasterGetNextPlug, 21},
    Number{"audioMasterWillReplaceOrAccumulate", audioMasterWillReplaceOrAccumulate, 22},
    Number{"audioMasterGetCurrentProcessLevel", audioMasterGetCurrentProcessLevel, 23},
    Number{"audioMasterGetAutomationState", audioMasterGetAutomationState, 24},
    Number{"audioMasterOfflineStart", audioMasterOfflineStart, 25},
    Number{"audioMasterOfflineRead", audioMasterOfflineRead, 26},
    Number{"audioMasterOfflineWrite", audioMasterOfflineWrite, 27},
    Number{"audioMasterOfflineGetCurrentPass", audioMasterOfflineGetCurrentPass, 28},
    Number{"audioMasterOfflineGetCurrentMetaPass", audioMasterOfflineGetCurrentMetaPass, 29},
    Number{"audioMasterSetOutputSampleRate", audioMasterSetOutputSampleRate, 30},
    Number{"audioMasterGetOutputSpeakerArrangement", audioMasterGetOutputSpeakerArrangement, 31},
    Number{"audioMasterGetVendorString", audioMasterGetVendorString, 32},
    Number{"audioMasterGetProductString", audioMasterGetProductString, 33},
    Number{"audioMasterGetVendorVersion", audioMasterGetVendorVersion, 34},
    Number{"audioMasterVendorSpecific", audioMasterVendorSpecific, 35},
    Number{"audioMasterCanDo", audioMasterCanDo, 37},
    Number{"audioMasterGetLanguage", audioMasterGetLanguage, 38},
    Number{"audioMasterOpenWindow", audioMasterOpenWindow, 39},
    Number{"audioMasterCloseWindow", audioMasterCloseWindow, 40},
    Number{"audioMasterGetDirectory", audioMasterGetDirectory, 41},
    Number{"audioMasterUpdateDisplay", audioMasterUpdateDisplay, 42},
    Number{"audioMasterBeginEdit", audioMasterBeginEdit, 43},
    Number{"audioMasterEndEdit", audioMasterEndEdit, 44},
    Number{"audioMasterOpenFileSelector", audioMasterOpenFileSelector, 45},
    Number{"audioMasterCloseFileSelector", audioMasterCloseFileSelector, 46},
    Number{"audioMasterGetChunkFile", audioMasterGetChunkFile, 48},
    Number{"audioMasterGetInputSpeakerArrangement", audioMasterGetInputSpeakerArrangement, 49},
};

// Bits of the effect record's flags.
constexpr std::array effectFlags{
    Number{"effFlagsHasEditor", effFlagsHasEditor, 1},
    Number{"effFlagsHasClip", effFlagsHasClip, 2},
    Number{"effFlagsHasVu", effFlagsHasVu, 4},
    Number{"effFlagsCanMono", effFlagsCanMono, 8},
    Number{"effFlagsCanReplacing", effFlagsCanReplacing, 16},
    Number{"effFlagsProgramChunks", effFlagsProgramChunks, 32},
    Number{"effFlagsIsSynth", effFlagsIsSynth, 256},
    Number{"effFlagsNoSoundInStop", effFlagsNoSoundInStop, 512},
    Number{"effFlagsExtIsAsync", effFlagsExtIsAsync, 1024},
    Number{"effFlagsExtHasBuffer", effFlagsExtHasBuffer, 2048},
    Number{"effFlagsCanDoubleReplacing", effFlagsCanDoubleReplacing, 4096},
};

class InterfaceNumber : public testing::TestWithParam<Number> {};

const auto byName = [](const testing::TestParamInfo<Number>& info) {
    return std::string(info.param.name);
};

} // namespace

TEST_P(InterfaceNumber, IsThePublishedOne) {
    EXPECT_EQ(GetParam().declared, GetParam().published);
}

INSTANTIATE_TEST_SUITE_P(Commands, InterfaceNumber, testing::ValuesIn(commands), byName);
INSTANTIATE_TEST_SUITE_P(HostCalls, InterfaceNumber, testing::ValuesIn(hostCalls), byName);
INSTANTIATE_TEST_SUITE_P(EffectFlags, InterfaceNumber, testing::ValuesIn(effectFlags), byName);
