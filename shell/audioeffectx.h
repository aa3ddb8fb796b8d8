// The effect class with the whole VST 2.4 command set and the host services;
// as long as that set.
#pragma once

#include "shell/audioeffect.h"

class AudioEffectX : public AudioEffect {
  public:
    using AudioEffect::AudioEffect;

    // Answers the commands from effProcessEvents on; the basic ones, and numbers
    // that are no command, are AudioEffect's.
    VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                         float opt) override;

    // A synth, and an effect whose canDo claims MIDI input, asks the host for MIDI.
    void resume() override;

    void isSynth(bool state = true) { setFlag(effFlagsIsSynth, state); }
    void noTail(bool state = true) { setFlag(effFlagsNoSoundInStop, state); }
    void wantAsyncOperation(bool state = true) { setFlag(effFlagsExtIsAsync, state); }
    void hasExternalBuffer(bool state = true) { setFlag(effFlagsExtHasBuffer, state); }

    // --- What the host asks; the answers here are those of an effect that does
    // --- not care. Pointers are never null when called through the dispatcher.
    virtual VstInt32 processEvents(VstEvents* /*events*/) { return 0; }
    virtual bool canParameterBeAutomated(VstInt32 /*index*/) { return true; }
    virtual bool string2parameter(VstInt32 /*index*/, char* /*text*/) { return false; }
    virtual VstInt32 getNumCategories() { return 1; }
    virtual bool getProgramNameIndexed(VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/) {
        return false;
    }
    virtual bool copyProgram(VstInt32 /*destination*/) { return false; }
    virtual void inputConnected(VstInt32 /*index*/, bool /*state*/) {}
    virtual void outputConnected(VstInt32 /*index*/, bool /*state*/) {}
    virtual bool getInputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
        return false;
    }
    virtual bool getOutputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
        return false;
    }
    virtual VstInt32 getPlugCategory() {
        return (cEffect.flags & effFlagsIsSynth) != 0 ? kPlugCategSynth : kPlugCategUnknown;
    }
    virtual VstInt32 reportCurrentPosition() { return 0; }
    virtual float* reportDestinationBuffer() { return nullptr; }
    virtual bool offlineNotify(VstAudioFile* /*files*/, VstInt32 /*count*/, bool /*start*/) {
        return false;
    }
    virtual bool offlinePrepare(VstOfflineTask* /*tasks*/, VstInt32 /*count*/) { return false; }
    virtual bool offlineRun(VstOfflineTask* /*tasks*/, VstInt32 /*count*/) { return false; }
    virtual bool processVariableIo(VstVariableIo* /*variableIo*/) { return false; }
    virtual bool setSpeakerArrangement(VstSpeakerArrangement* /*input*/,
                                       VstSpeakerArrangement* /*output*/) {
        return false;
    }
    virtual void setBlockSizeAndSampleRate(VstInt32 size, float rate) {
        AudioEffect::setBlockSize(size);
        AudioEffect::setSampleRate(rate);
    }
    virtual bool setBypass(bool /*on*/) { return false; }
    virtual bool getEffectName(char* /*name*/) { return false; }
    virtual bool getErrorText(char* /*text*/) { return false; }
    virtual bool getVendorString(char* /*text*/) { return false; }
    virtual bool getProductString(char* /*text*/) { return false; }
    virtual VstInt32 getVendorVersion() { return 0; }
    virtual VstIntPtr vendorSpecific(VstInt32 /*arg1*/, VstIntPtr /*arg2*/, void* /*ptr*/,
                                     float /*opt*/) {
        return 0;
    }
    virtual VstInt32 canDo(char* /*text*/) { return 0; }
    virtual VstInt32 getGetTailSize() { return 0; }
    virtual VstInt32 fxIdle() { return 0; }
    virtual void* getIcon() { return nullptr; }
    virtual bool setViewPosition(VstInt32 /*x*/, VstInt32 /*y*/) { return false; }
    virtual bool getParameterProperties(VstInt32 /*index*/,
                                        VstParameterProperties* /*properties*/) {
        return false;
    }
    virtual bool keysRequired() { return false; }
    virtual VstInt32 getVstVersion() { return kVstVersion; }
    virtual VstInt32 getMidiProgramName(VstInt32 /*channel*/, MidiProgramName* /*name*/) {
        return 0;
    }
    virtual VstInt32 getCurrentMidiProgram(VstInt32 /*channel*/, MidiProgramName* /*current*/) {
        return -1;
    }
    virtual VstInt32 getMidiProgramCategory(VstInt32 /*channel*/,
                                            MidiProgramCategory* /*category*/) {
        return 0;
    }
    virtual bool hasMidiProgramsChanged(VstInt32 /*channel*/) { return false; }
    virtual bool getMidiKeyName(VstInt32 /*channel*/, MidiKeyName* /*keyName*/) { return false; }
    virtual bool beginSetProgram() { return false; }
    virtual bool endSetProgram() { return false; }
    virtual bool getSpeakerArrangement(VstSpeakerArrangement** /*input*/,
                                       VstSpeakerArrangement** /*output*/) {
        return false;
    }
    virtual VstInt32 getNextShellPlugin(char* /*name*/) { return 0; }
    virtual VstInt32 startProcess() { return 0; }
    virtual VstInt32 stopProcess() { return 0; }
    virtual VstInt32 setTotalSampleToProcess(VstInt32 count) { return count; }
    virtual bool setPanLaw(VstInt32 /*type*/, float /*gain*/) { return false; }
    virtual VstInt32 beginLoadBank(VstPatchChunkInfo* /*info*/) { return 0; }
    virtual VstInt32 beginLoadProgram(VstPatchChunkInfo* /*info*/) { return 0; }
    virtual bool setProcessPrecision(VstInt32 /*precision*/) { return false; }
    virtual VstInt32 getNumMidiInputChannels() { return 0; }
    virtual VstInt32 getNumMidiOutputChannels() { return 0; }

    // --- What the effect asks of its host. Each answers its neutral value
    // --- without a host callback. Called on whatever thread needs them.
    void wantEvents(VstInt32 filter = 1);
    VstTimeInfo* getTimeInfo(VstInt32 filter);
    bool sendVstEventsToHost(VstEvents* events);
    VstInt32 tempoAt(VstInt32 position);
    VstInt32 getNumAutomatableParameters();
    VstInt32 getParameterQuantization();
    bool ioChanged();
    bool needIdle();
    bool sizeWindow(VstInt32 width, VstInt32 height);
    VstInt32 getInputLatency();
    VstInt32 getOutputLatency();
    AEffect* getPreviousPlug(VstInt32 input);
    AEffect* getNextPlug(VstInt32 output);
    VstInt32 willProcessReplacing();
    VstInt32 getCurrentProcessLevel();
    VstInt32 getAutomationState();
    bool offlineStart(VstAudioFile* audioFiles, VstInt32 numAudioFiles, VstInt32 numNewAudioFiles);
    bool offlineRead(VstOfflineTask* task, VstInt32 option, bool readSource = true);
    bool offlineWrite(VstOfflineTask* task, VstInt32 option);
    bool offlineGetCurrentPass();
    bool offlineGetCurrentMetaPass();
    void setOutputSamplerate(float rate);
    VstSpeakerArrangement* getOutputSpeakerArrangement();
    VstSpeakerArrangement* getInputSpeakerArrangement();
    bool getHostVendorString(char* text);
    bool getHostProductString(char* text);
    VstInt32 getHostVendorVersion();
    VstIntPtr hostVendorSpecific(VstInt32 lArg1, VstIntPtr lArg2, void* ptrArg, float floatArg);
    bool canHostDo(char* text);
    VstInt32 getHostLanguage();
    void* openWindow(VstWindow* window);
    bool closeWindow(VstWindow* window);
    void* getDirectory();
    bool updateDisplay();
    bool beginEdit(VstInt32 index);
    bool endEdit(VstInt32 index);
    bool openFileSelector(VstFileSelect* select);
    bool closeFileSelector(VstFileSelect* select);
    bool getChunkFile(char* path);
};
