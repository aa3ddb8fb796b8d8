#include "presetsystem/cpresetsystemeffect.h"

#include <array>
#include <cstring>

namespace {

// The host runs one program of nine parameters, whatever preset it holds.
constexpr VstInt32 hostProgram = 0;
constexpr VstInt32 hostPrograms = 1;

constexpr bool isPresetParam(VstInt32 index) {
    return index >= 0 && index < kNumPresetParams;
}

} // namespace

CPresetSystemEffect::CPresetSystemEffect(audioMasterCallback audioMaster)
    : AudioEffectX(audioMaster, hostPrograms, kNumPresetParams)
    , presetBank(std::make_unique<PresetBank>())
    , chunkBuffer(std::make_unique<mirelon::ChunkImage>()) {
    programsAreChunks(true);
    curProgram.store(hostProgram, std::memory_order_relaxed);
}

// The editor reads the bank while it goes, so it goes first.
CPresetSystemEffect::~CPresetSystemEffect() {
    destroyEditor();
}

PresetRecord& CPresetSystemEffect::currentPreset() {
    return (*presetBank)[static_cast<std::size_t>(getPresetNo())];
}

VstInt32 CPresetSystemEffect::getPresetNo() {
    return presetNo.load(std::memory_order_relaxed);
}

void CPresetSystemEffect::setPresetNo(long n) {
    if (!mirelon::isPresetIndex(n))
        return;
    curProgram.store(hostProgram, std::memory_order_relaxed);
    presetNo.store(static_cast<VstInt32>(n), std::memory_order_relaxed);
    presetLoading.store(1, std::memory_order_relaxed);
    for (int i = 0; i < kNumPresetParams; ++i)
        setParameter(i, (*presetBank)[static_cast<std::size_t>(n)].value(i));
    updateDisplay();
    beginEdit(0);
    endEdit(0);
    presetLoading.store(0, std::memory_order_relaxed);
}

void CPresetSystemEffect::setPresetName(const char* name) {
    curProgram.store(hostProgram, std::memory_order_relaxed);
    if (name != nullptr)
        currentPreset().setName({name, strnlen(name, kPresetNameLen)});
    updateDisplay();
}

void CPresetSystemEffect::attachMidi(VstInt32 /*param*/, VstInt32 /*cc*/) {}
void CPresetSystemEffect::detachMidiParam(VstInt32 /*param*/) {}
void CPresetSystemEffect::detachMidiCC(VstInt32 /*cc*/) {}
VstInt32 CPresetSystemEffect::getMidiCC(VstInt32 /*param*/) {
    return 0;
}
VstInt32 CPresetSystemEffect::getMidiParam(VstInt32 /*cc*/) {
    return 0;
}
VstInt32 CPresetSystemEffect::getMidiActivity() {
    return 0;
}
void CPresetSystemEffect::beginLearn() {}
void CPresetSystemEffect::endLearn() {}
void CPresetSystemEffect::setLearnParam(VstInt32 /*param*/) {}
void CPresetSystemEffect::beginCancel() {}
void CPresetSystemEffect::endCancel() {}

VstInt32 CPresetSystemEffect::getUniqueID() {
    return cEffect.uniqueID;
}

void CPresetSystemEffect::loadDefaults() {
    if (editorLink != nullptr)
        editorLink->loadDefaults();
}

void CPresetSystemEffect::initPresets() {}
void CPresetSystemEffect::initMidi() {}
void CPresetSystemEffect::resume() {}

void CPresetSystemEffect::setParameter(VstInt32 index, float value) {
    if (isPresetParam(index))
        currentPreset().setValue(index, value);
}

// Two bases ask for it: the host's side and the editor's.
void CPresetSystemEffect::setParameterAutomated(VstInt32 index, float value) {
    AudioEffectX::setParameterAutomated(index, value);
}

float CPresetSystemEffect::getParameter(VstInt32 index) {
    return isPresetParam(index) ? currentPreset().value(index) : -1.0F;
}

VstInt32 CPresetSystemEffect::getProgram() {
    return hostProgram;
}

void CPresetSystemEffect::setProgram(VstInt32 /*program*/) {}

void CPresetSystemEffect::setProgramName(char* name) {
    mirelon::PresetName copy = mirelon::presetName(name);
    currentPreset().setName(copy.data());
    if (editorLink != nullptr)
        editorLink->nameChangedExternal(copy.data());
}

void CPresetSystemEffect::getProgramName(char* name) {
    const mirelon::PresetName text = currentPreset().name();
    std::memcpy(name, text.data(), text.size());
}

bool CPresetSystemEffect::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text) {
    if (!mirelon::isPresetIndex(index))
        return false;
    const mirelon::PresetName name = (*presetBank)[static_cast<std::size_t>(index)].name();
    std::memcpy(text, name.data(), name.size());
    return true;
}

void CPresetSystemEffect::writeChunk(std::span<std::byte, mirelon::chunkSize> image) {
    mirelon::writeChunk(image, getUniqueID(), getPresetNo(), *presetBank);
}

mirelon::ChunkVerdict
CPresetSystemEffect::applyChunk(std::span<std::byte, mirelon::chunkSize> image) {
    const mirelon::ChunkVerdict verdict = mirelon::readChunk(image, getUniqueID());
    if (verdict != mirelon::ChunkVerdict::accepted)
        return verdict;
    mirelon::copyChunkBank(image, *presetBank);
    if (const auto preset = mirelon::chunkPresetNo(image))
        setPresetNo(*preset);
    if (editorLink != nullptr)
        editorLink->bankReplaced();
    return verdict;
}

VstInt32 CPresetSystemEffect::getChunk(void** data, bool /*isPreset*/) {
    writeChunk(*chunkBuffer);
    *data = chunkBuffer->data();
    return static_cast<VstInt32>(chunkBuffer->size());
}

VstInt32 CPresetSystemEffect::setChunk(void* data, VstInt32 byteSize, bool /*isPreset*/) {
    if (data == nullptr || byteSize != static_cast<VstInt32>(mirelon::chunkSize))
        return -1;
    // A host may hand getChunk's own buffer back.
    std::memmove(chunkBuffer->data(), data, chunkBuffer->size());
    switch (applyChunk(*chunkBuffer)) {
    case mirelon::ChunkVerdict::notOurs:
    case mirelon::ChunkVerdict::badPresetCount:
        return -1;
    case mirelon::ChunkVerdict::ignored:
    case mirelon::ChunkVerdict::accepted:
        break;
    }
    return 0;
}

VstInt32 CPresetSystemEffect::processEvents(VstEvents* /*events*/) {
    return 0;
}

VstInt32 CPresetSystemEffect::canDo(char* /*text*/) {
    return 0;
}

bool CPresetSystemEffect::resizeWindow(VstInt32 width, VstInt32 height) {
    std::array<char, 11> capability{"sizeWindow"};
    return callHost(audioMasterCanDo, 0, 0, capability.data()) > 0 && sizeWindow(width, height);
}
