#include "shell/audioeffectx.h"

#include <string>

namespace {

// The low byte of a float's integer part; 0 for what has none in 32 bits.
unsigned char lowByte(float value) {
    const bool convertible = value > -2147483648.0F && value < 2147483648.0F;
    return convertible ? static_cast<unsigned char>(static_cast<VstInt32>(value)) : 0;
}

VstKeyCode keyCodeOf(VstInt32 index, VstIntPtr value, float opt) {
    return {index, static_cast<unsigned char>(value), lowByte(opt)};
}

} // namespace

void AudioEffectX::resume() {
    std::string receivesMidi = "receiveVstMidiEvent";
    if ((cEffect.flags & effFlagsIsSynth) != 0 || canDo(receivesMidi.data()) == 1)
        wantEvents(1);
}

VstIntPtr AudioEffectX::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                   float opt) {
    auto* text = static_cast<char*>(ptr);
    const bool given = ptr != nullptr;
    switch (opcode) {
    case effProcessEvents:
        return given ? processEvents(static_cast<VstEvents*>(ptr)) : 0;
    case effCanBeAutomated:
        return canParameterBeAutomated(index);
    case effString2Parameter:
        return given && string2parameter(index, text);
    case effGetNumProgramCategories:
        return getNumCategories();
    case effGetProgramNameIndexed:
        return given && getProgramNameIndexed(narrowed(value), index, text);
    case effCopyProgram:
        return copyProgram(index);
    case effConnectInput:
        inputConnected(index, value != 0);
        return 1;
    case effConnectOutput:
        outputConnected(index, value != 0);
        return 1;
    case effGetInputProperties:
        return given && getInputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetOutputProperties:
        return given && getOutputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetPlugCategory:
        return getPlugCategory();
    case effGetCurrentPosition:
        return reportCurrentPosition();
    case effGetDestinationBuffer:
        return reinterpret_cast<VstIntPtr>(reportDestinationBuffer());
    case effOfflineNotify:
        return offlineNotify(static_cast<VstAudioFile*>(ptr), narrowed(value), index != 0);
    case effOfflinePrepare:
        return offlinePrepare(static_cast<VstOfflineTask*>(ptr), narrowed(value));
    case effOfflineRun:
        return offlineRun(static_cast<VstOfflineTask*>(ptr), narrowed(value));
    case effProcessVarIo:
        return processVariableIo(static_cast<VstVariableIo*>(ptr));
    case effSetSpeakerArrangement:
        return setSpeakerArrangement(
            reinterpret_cast<VstSpeakerArrangement*>(value), // NOLINT(performance-no-int-to-ptr)
            static_cast<VstSpeakerArrangement*>(ptr));
    case effSetBlockSizeAndSampleRate:
        setBlockSizeAndSampleRate(narrowed(value), opt);
        return 1;
    case effSetBypass:
        return setBypass(value != 0);
    case effGetEffectName:
        return given && getEffectName(text);
    case effGetErrorText:
        return given && getErrorText(text);
    case effGetVendorString:
        return given && getVendorString(text);
    case effGetProductString:
        return given && getProductString(text);
    case effGetVendorVersion:
        return getVendorVersion();
    case effVendorSpecific:
        return vendorSpecific(index, value, ptr, opt);
    case effCanDo:
        return given ? canDo(text) : 0;
    case effGetTailSize:
        return getGetTailSize();
    case effIdle:
        return fxIdle();
    case effGetIcon:
        return reinterpret_cast<VstIntPtr>(getIcon());
    case effSetViewPosition:
        return setViewPosition(index, narrowed(value));
    case effGetParameterProperties:
        return given && getParameterProperties(index, static_cast<VstParameterProperties*>(ptr));
    case effKeysRequired:
        return !keysRequired(); // the interface asks the other way round
    case effGetVstVersion:
        return getVstVersion();
    case effEditKeyDown: {
        VstKeyCode keyCode = keyCodeOf(index, value, opt);
        return editor != nullptr && editor->onKeyDown(keyCode);
    }
    case effEditKeyUp: {
        VstKeyCode keyCode = keyCodeOf(index, value, opt);
        return editor != nullptr && editor->onKeyUp(keyCode);
    }
    case effSetEditKnobMode:
        return editor != nullptr && editor->setKnobMode(narrowed(value));
    case effGetMidiProgramName:
        return getMidiProgramName(index, static_cast<MidiProgramName*>(ptr));
    case effGetCurrentMidiProgram:
        return getCurrentMidiProgram(index, static_cast<MidiProgramName*>(ptr));
    case effGetMidiProgramCategory:
        return getMidiProgramCategory(index, static_cast<MidiProgramCategory*>(ptr));
    case effHasMidiProgramsChanged:
        return hasMidiProgramsChanged(index);
    case effGetMidiKeyName:
        return getMidiKeyName(index, static_cast<MidiKeyName*>(ptr));
    case effBeginSetProgram:
        return beginSetProgram();
    case effEndSetProgram:
        return endSetProgram();
    case effGetSpeakerArrangement:
        return getSpeakerArrangement(
            reinterpret_cast<VstSpeakerArrangement**>(value), // NOLINT(performance-no-int-to-ptr)
            static_cast<VstSpeakerArrangement**>(ptr));
    case effShellGetNextPlugin:
        return given ? getNextShellPlugin(text) : 0;
    case effStartProcess:
        return startProcess();
    case effStopProcess:
        return stopProcess();
    case effSetTotalSampleToProcess:
        return setTotalSampleToProcess(narrowed(value));
    case effSetPanLaw:
        return setPanLaw(narrowed(value), opt);
    case effBeginLoadBank:
        return beginLoadBank(static_cast<VstPatchChunkInfo*>(ptr));
    case effBeginLoadProgram:
        return beginLoadProgram(static_cast<VstPatchChunkInfo*>(ptr));
    case effSetProcessPrecision:
        return setProcessPrecision(narrowed(value));
    case effGetNumMidiInputChannels:
        return getNumMidiInputChannels();
    case effGetNumMidiOutputChannels:
        return getNumMidiOutputChannels();
    default:
        return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
    }
}
