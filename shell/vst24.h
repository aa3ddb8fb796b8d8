// The VST 2.4 binary interface for 64-bit Linux: the records, numbers and
// function types on which a host and a plug-in must agree.
//
// Layouts are those of the platform's C calling convention (natural alignment,
// little-endian, 8-byte pointers). Every record that crosses the boundary is
// checked below, so a change that would break a host does not compile. One
// interface, so one header, however long.
#pragma once

// VSTGUI declares its own VstKeyCode unless this name says that an interface
// header is already in place.
#define __aeffectx__ // NOLINT(bugprone-reserved-identifier)
// Lets VSTGUI's editor binding compile its key and begin/end-edit operations.
#define VST_2_1_EXTENSIONS 1

#include <cstddef>
#include <cstdint>

using VstInt16 = std::int16_t;
using VstInt32 = std::int32_t;
using VstIntPtr = std::intptr_t;

// A four-character constant: the first character in the most significant byte
// of the native word.
constexpr VstInt32 fourCharacters(const char (&text)[5]) noexcept {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i)
        word = word << 8U | static_cast<unsigned char>(text[i]);
    return static_cast<VstInt32>(word);
}

inline constexpr VstInt32 kEffectMagic = fourCharacters("VstP");
inline constexpr VstInt32 kVstVersion = 2400;

struct AEffect;

using audioMasterCallback = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                          VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                            VstIntPtr value, void* ptr, float opt);
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs,
                                    VstInt32 sampleFrames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          VstInt32 sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, VstInt32 index, float value);
using AEffectGetParameterProc = float (*)(AEffect* effect, VstInt32 index);

// The effect record: what a host holds of an instance.
struct AEffect {
    VstInt32 magic;
    AEffectDispatcherProc dispatcher;
    AEffectProcessProc process; // accumulating; deprecated
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 numInputs;
    VstInt32 numOutputs;
    VstInt32 flags;
    VstIntPtr resvd1;
    VstIntPtr resvd2;
    VstInt32 initialDelay;
    VstInt32 realQualities;
    VstInt32 offQualities;
    float ioRatio;
    void* object;
    void* user;
    VstInt32 uniqueID;
    VstInt32 version;
    AEffectProcessProc processReplacing;
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};

static_assert(sizeof(void*) == 8, "the layouts below are those of 64-bit systems");
static_assert(sizeof(AEffect) == 192);
static_assert(offsetof(AEffect, magic) == 0 && offsetof(AEffect, dispatcher) == 8);
static_assert(offsetof(AEffect, process) == 16 && offsetof(AEffect, setParameter) == 24);
static_assert(offsetof(AEffect, getParameter) == 32 && offsetof(AEffect, numPrograms) == 40);
static_assert(offsetof(AEffect, numParams) == 44 && offsetof(AEffect, numInputs) == 48);
static_assert(offsetof(AEffect, numOutputs) == 52 && offsetof(AEffect, flags) == 56);
static_assert(offsetof(AEffect, resvd1) == 64 && offsetof(AEffect, resvd2) == 72);
static_assert(offsetof(AEffect, initialDelay) == 80 && offsetof(AEffect, realQualities) == 84);
static_assert(offsetof(AEffect, offQualities) == 88 && offsetof(AEffect, ioRatio) == 92);
static_assert(offsetof(AEffect, object) == 96 && offsetof(AEffect, user) == 104);
static_assert(offsetof(AEffect, uniqueID) == 112 && offsetof(AEffect, version) == 116);
static_assert(offsetof(AEffect, processReplacing) == 120);
static_assert(offsetof(AEffect, processDoubleReplacing) == 128);
static_assert(offsetof(AEffect, future) == 136);

// The editor's rectangle, in pixels.
struct ERect {
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};
static_assert(sizeof(ERect) == 8 && offsetof(ERect, right) == 6);

// A key as the host sends it: a character, or a virtual key, with modifiers.
struct VstKeyCode {
    VstInt32 character;
    unsigned char virt;
    unsigned char modifier;
};
static_assert(sizeof(VstKeyCode) == 8 && offsetof(VstKeyCode, modifier) == 5);

enum VstModifierKey {
    MODIFIER_SHIFT = 1,
    MODIFIER_ALTERNATE = 2,
    MODIFIER_COMMAND = 4,
    MODIFIER_CONTROL = 8
};

struct VstParameterProperties {
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[64];
    VstInt32 flags;
    VstInt32 minInteger;
    VstInt32 maxInteger;
    VstInt32 stepInteger;
    VstInt32 largeStepInteger;
    char shortLabel[8];
    VstInt16 displayIndex;
    VstInt16 category;
    VstInt16 numParametersInCategory;
    VstInt16 reserved;
    char categoryLabel[24];
    char future[16];
};
static_assert(sizeof(VstParameterProperties) == 152);
static_assert(offsetof(VstParameterProperties, label) == 12);
static_assert(offsetof(VstParameterProperties, flags) == 76);
static_assert(offsetof(VstParameterProperties, shortLabel) == 96);
static_assert(offsetof(VstParameterProperties, categoryLabel) == 112);

enum VstParameterFlags {
    kVstParameterIsSwitch = 1,
    kVstParameterUsesIntegerMinMax = 2,
    kVstParameterUsesFloatStep = 4,
    kVstParameterUsesIntStep = 8,
    kVstParameterSupportsDisplayIndex = 16,
    kVstParameterSupportsDisplayCategory = 32,
    kVstParameterCanRamp = 64
};

struct VstPinProperties {
    char label[64];
    VstInt32 flags;
    VstInt32 arrangementType;
    char shortLabel[8];
    char future[48];
};
static_assert(sizeof(VstPinProperties) == 128 && offsetof(VstPinProperties, flags) == 64);
static_assert(offsetof(VstPinProperties, shortLabel) == 72);

enum VstPinPropertiesFlags { kVstPinIsActive = 1, kVstPinIsStereo = 2, kVstPinUseSpeaker = 4 };

struct VstEvent {
    VstInt32 type;
    VstInt32 byteSize;
    VstInt32 deltaFrames;
    VstInt32 flags;
    char data[16];
};
static_assert(sizeof(VstEvent) == 32 && offsetof(VstEvent, data) == 16);

enum VstEventTypes { kVstMidiType = 1, kVstSysExType = 6 };

// `events` is the start of an array of numEvents pointers.
struct VstEvents {
    VstInt32 numEvents;
    VstIntPtr reserved;
    VstEvent* events[2];
};
static_assert(sizeof(VstEvents) == 32 && offsetof(VstEvents, events) == 16);

struct VstTimeInfo {
    double samplePos;
    double sampleRate;
    double nanoSeconds;
    double ppqPos;
    double tempo;
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    VstInt32 timeSigNumerator;
    VstInt32 timeSigDenominator;
    VstInt32 smpteOffset;
    VstInt32 smpteFrameRate;
    VstInt32 samplesToNextClock;
    VstInt32 flags;
};
static_assert(sizeof(VstTimeInfo) == 88 && offsetof(VstTimeInfo, timeSigNumerator) == 64);

// Only ever passed through by pointer.
struct VstSpeakerArrangement;
struct VstOfflineTask;
struct VstAudioFile;
struct VstVariableIo;
struct VstWindow;
struct VstFileSelect;
struct VstPatchChunkInfo;
struct MidiProgramName;
struct MidiProgramCategory;
struct MidiKeyName;

enum VstAEffectFlags {
    effFlagsHasEditor = 1,
    effFlagsHasClip = 2,
    effFlagsHasVu = 4,
    effFlagsCanMono = 8,
    effFlagsCanReplacing = 16,
    effFlagsProgramChunks = 32,
    effFlagsIsSynth = 256,
    effFlagsNoSoundInStop = 512,
    effFlagsExtIsAsync = 1024,
    effFlagsExtHasBuffer = 2048,
    effFlagsCanDoubleReplacing = 4096
};

enum VstPlugCategory {
    kPlugCategUnknown = 0,
    kPlugCategEffect = 1,
    kPlugCategSynth = 2,
    kPlugCategAnalysis = 3,
    kPlugCategMastering = 4,
    kPlugCategSpacializer = 5,
    kPlugCategRoomFx = 6,
    kPlugSurroundFx = 7,
    kPlugCategRestoration = 8,
    kPlugCategOfflineProcess = 9,
    kPlugCategShell = 10,
    kPlugCategGenerator = 11
};

enum VstProcessPrecision { kVstProcessPrecision32 = 0, kVstProcessPrecision64 = 1 };

// Text lengths that the interface states, without the terminator. Real hosts
// hand over larger buffers.
enum VstStringLimits {
    kVstMaxProgNameLen = 24,
    kVstMaxParamStrLen = 8,
    kVstMaxEffectNameLen = 32,
    kVstMaxVendorStrLen = 64,
    kVstMaxProductStrLen = 64
};

// What a host asks of an effect.
enum AEffectOpcodes : VstInt32 {
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,
    effGetProgram = 3,
    effSetProgramName = 4,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effGetVu = 9,
    effSetSampleRate = 10,
    effSetBlockSize = 11,
    effMainsChanged = 12,
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditDraw = 16,
    effEditMouse = 17,
    effEditKey = 18,
    effEditIdle = 19,
    effEditTop = 20,
    effEditSleep = 21,
    effIdentify = 22,
    effGetChunk = 23,
    effSetChunk = 24,
    effProcessEvents = 25,
    effCanBeAutomated = 26,
    effString2Parameter = 27,
    effGetNumProgramCategories = 28,
    effGetProgramNameIndexed = 29,
    effCopyProgram = 30,
    effConnectInput = 31,
    effConnectOutput = 32,
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effGetCurrentPosition = 36,
    effGetDestinationBuffer = 37,
    effOfflineNotify = 38,
    effOfflinePrepare = 39,
    effOfflineRun = 40,
    effProcessVarIo = 41,
    effSetSpeakerArrangement = 42,
    effSetBlockSizeAndSampleRate = 43,
    effSetBypass = 44,
    effGetEffectName = 45,
    effGetErrorText = 46,
    effGetVendorString = 47,
    effGetProductString = 48,
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51,
    effGetTailSize = 52,
    effIdle = 53,
    effGetIcon = 54,
    effSetViewPosition = 55,
    effGetParameterProperties = 56,
    effKeysRequired = 57,
    effGetVstVersion = 58,
    effEditKeyDown = 59,
    effEditKeyUp = 60,
    effSetEditKnobMode = 61,
    effGetMidiProgramName = 62,
    effGetCurrentMidiProgram = 63,
    effGetMidiProgramCategory = 64,
    effHasMidiProgramsChanged = 65,
    effGetMidiKeyName = 66,
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effGetSpeakerArrangement = 69,
    effShellGetNextPlugin = 70,
    effStartProcess = 71,
    effStopProcess = 72,
    effSetTotalSampleToProcess = 73,
    effSetPanLaw = 74,
    effBeginLoadBank = 75,
    effBeginLoadProgram = 76,
    effSetProcessPrecision = 77,
    effGetNumMidiInputChannels = 78,
    effGetNumMidiOutputChannels = 79
};

// What an effect asks of its host.
enum AudioMasterOpcodes : VstInt32 {
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterProcessEvents = 8,
    audioMasterTempoAt = 10,
    audioMasterGetNumAutomatableParameters = 11,
    audioMasterGetParameterQuantization = 12,
    audioMasterIOChanged = 13,
    audioMasterNeedIdle = 14,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetInputLatency = 18,
    audioMasterGetOutputLatency = 19,
    audioMasterGetPreviousPlug = 20,
    audioMasterGetNextPlug = 21,
    audioMasterWillReplaceOrAccumulate = 22,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterOfflineStart = 25,
    audioMasterOfflineRead = 26,
    audioMasterOfflineWrite = 27,
    audioMasterOfflineGetCurrentPass = 28,
    audioMasterOfflineGetCurrentMetaPass = 29,
    audioMasterSetOutputSampleRate = 30,
    audioMasterGetOutputSpeakerArrangement = 31,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterVendorSpecific = 35,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterOpenWindow = 39,
    audioMasterCloseWindow = 40,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
    audioMasterOpenFileSelector = 45,
    audioMasterCloseFileSelector = 46,
    audioMasterGetChunkFile = 48,
    audioMasterGetInputSpeakerArrangement = 49
};
