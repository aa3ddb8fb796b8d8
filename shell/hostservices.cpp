// What the effect asks of its host: one callback call each.
#include "shell/audioeffectx.h"

namespace {

template <typename Pointee>
Pointee* asPointer(VstIntPtr answer) {
    return reinterpret_cast<Pointee*>(answer); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

void AudioEffectX::wantEvents(VstInt32 filter) {
    callHost(audioMasterWantMidi, 0, filter);
}

VstTimeInfo* AudioEffectX::getTimeInfo(VstInt32 filter) {
    return asPointer<VstTimeInfo>(callHost(audioMasterGetTime, 0, filter));
}

bool AudioEffectX::sendVstEventsToHost(VstEvents* events) {
    return callHost(audioMasterProcessEvents, 0, 0, events) == 1;
}

VstInt32 AudioEffectX::tempoAt(VstInt32 position) {
    return narrowed(callHost(audioMasterTempoAt, 0, position));
}

VstInt32 AudioEffectX::getNumAutomatableParameters() {
    return narrowed(callHost(audioMasterGetNumAutomatableParameters));
}

VstInt32 AudioEffectX::getParameterQuantization() {
    return narrowed(callHost(audioMasterGetParameterQuantization));
}

bool AudioEffectX::ioChanged() {
    return callHost(audioMasterIOChanged) != 0;
}

bool AudioEffectX::needIdle() {
    return callHost(audioMasterNeedIdle) != 0;
}

bool AudioEffectX::sizeWindow(VstInt32 width, VstInt32 height) {
    return callHost(audioMasterSizeWindow, width, height) != 0;
}

VstInt32 AudioEffectX::getInputLatency() {
    return narrowed(callHost(audioMasterGetInputLatency));
}

VstInt32 AudioEffectX::getOutputLatency() {
    return narrowed(callHost(audioMasterGetOutputLatency));
}

// The interface has no field for the pin in these two.
AEffect* AudioEffectX::getPreviousPlug(VstInt32 /*input*/) {
    return asPointer<AEffect>(callHost(audioMasterGetPreviousPlug));
}

AEffect* AudioEffectX::getNextPlug(VstInt32 /*output*/) {
    return asPointer<AEffect>(callHost(audioMasterGetNextPlug));
}

VstInt32 AudioEffectX::willProcessReplacing() {
    return narrowed(callHost(audioMasterWillReplaceOrAccumulate));
}

VstInt32 AudioEffectX::getCurrentProcessLevel() {
    return narrowed(callHost(audioMasterGetCurrentProcessLevel));
}

VstInt32 AudioEffectX::getAutomationState() {
    return narrowed(callHost(audioMasterGetAutomationState));
}

bool AudioEffectX::offlineStart(VstAudioFile* audioFiles, VstInt32 numAudioFiles,
                                VstInt32 numNewAudioFiles) {
    return callHost(audioMasterOfflineStart, numNewAudioFiles, numAudioFiles, audioFiles) != 0;
}

bool AudioEffectX::offlineRead(VstOfflineTask* task, VstInt32 option, bool readSource) {
    return callHost(audioMasterOfflineRead, readSource ? 1 : 0, option, task) != 0;
}

bool AudioEffectX::offlineWrite(VstOfflineTask* task, VstInt32 option) {
    return callHost(audioMasterOfflineWrite, 0, option, task) != 0;
}

bool AudioEffectX::offlineGetCurrentPass() {
    return callHost(audioMasterOfflineGetCurrentPass) != 0;
}

bool AudioEffectX::offlineGetCurrentMetaPass() {
    return callHost(audioMasterOfflineGetCurrentMetaPass) != 0;
}

void AudioEffectX::setOutputSamplerate(float rate) {
    callHost(audioMasterSetOutputSampleRate, 0, 0, nullptr, rate);
}

VstSpeakerArrangement* AudioEffectX::getOutputSpeakerArrangement() {
    return asPointer<VstSpeakerArrangement>(callHost(audioMasterGetOutputSpeakerArrangement));
}

VstSpeakerArrangement* AudioEffectX::getInputSpeakerArrangement() {
    return asPointer<VstSpeakerArrangement>(callHost(audioMasterGetInputSpeakerArrangement));
}

bool AudioEffectX::getHostVendorString(char* text) {
    return callHost(audioMasterGetVendorString, 0, 0, text) != 0;
}

bool AudioEffectX::getHostProductString(char* text) {
    return callHost(audioMasterGetProductString, 0, 0, text) != 0;
}

VstInt32 AudioEffectX::getHostVendorVersion() {
    return narrowed(callHost(audioMasterGetVendorVersion));
}

VstIntPtr AudioEffectX::hostVendorSpecific(VstInt32 lArg1, VstIntPtr lArg2, void* ptrArg,
                                           float floatArg) {
    return callHost(audioMasterVendorSpecific, lArg1, lArg2, ptrArg, floatArg);
}

bool AudioEffectX::canHostDo(char* text) {
    return callHost(audioMasterCanDo, 0, 0, text) != 0;
}

VstInt32 AudioEffectX::getHostLanguage() {
    return narrowed(callHost(audioMasterGetLanguage));
}

void* AudioEffectX::openWindow(VstWindow* window) {
    return asPointer<void>(callHost(audioMasterOpenWindow, 0, 0, window));
}

bool AudioEffectX::closeWindow(VstWindow* window) {
    return callHost(audioMasterCloseWindow, 0, 0, window) != 0;
}

void* AudioEffectX::getDirectory() {
    return asPointer<void>(callHost(audioMasterGetDirectory));
}

bool AudioEffectX::updateDisplay() {
    return callHost(audioMasterUpdateDisplay) != 0;
}

bool AudioEffectX::beginEdit(VstInt32 index) {
    return callHost(audioMasterBeginEdit, index) != 0;
}

bool AudioEffectX::endEdit(VstInt32 index) {
    return callHost(audioMasterEndEdit, index) != 0;
}

bool AudioEffectX::openFileSelector(VstFileSelect* select) {
    return callHost(audioMasterOpenFileSelector, 0, 0, select) != 0;
}

bool AudioEffectX::closeFileSelector(VstFileSelect* select) {
    return callHost(audioMasterCloseFileSelector, 0, 0, select) != 0;
}

bool AudioEffectX::getChunkFile(char* path) {
    return callHost(audioMasterGetChunkFile, 0, 0, path) != 0;
}
