#include "shell/audioeffect.h"

#include <utility>

namespace {

AudioEffect* effectOf(const AEffect* e) noexcept {
    return e != nullptr ? static_cast<AudioEffect*>(e->object) : nullptr;
}

// Runs a call into the effect or its editor for a host, which must never see an
// exception.
template <typename Call>
auto guarded(Call&& call) noexcept -> decltype(call()) {
    try {
        return call();
    } catch (...) {
        return decltype(call())();
    }
}

} // namespace

AEffEditor::~AEffEditor() {
    if (effect != nullptr && effect->getEditor() == this)
        effect->setEditor(nullptr);
}

AudioEffect::AudioEffect(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams)
    : audioMaster(audioMaster)
    , numPrograms(numPrograms)
    , numParams(numParams) {
    cEffect.magic = kEffectMagic;
    cEffect.dispatcher = &dispatchEffectClass;
    cEffect.process = &processClass;
    cEffect.setParameter = &setParameterClass;
    cEffect.getParameter = &getParameterClass;
    cEffect.numPrograms = numPrograms;
    cEffect.numParams = numParams;
    cEffect.numInputs = 1;
    cEffect.numOutputs = 2;
    cEffect.flags |= effFlagsCanReplacing;
    cEffect.ioRatio = 1.0F;
    cEffect.object = this;
    cEffect.uniqueID = fourCharacters("NoEf");
    cEffect.version = 1;
    cEffect.processReplacing = &processClassReplacing;
    cEffect.processDoubleReplacing = &processClassDoubleReplacing;
}

AudioEffect::~AudioEffect() {
    destroyEditor();
}

void AudioEffect::setEditor(AEffEditor* newEditor) {
    editor = newEditor;
    setFlag(effFlagsHasEditor, newEditor != nullptr);
}

void AudioEffect::destroyEditor() noexcept {
    if (editor == nullptr)
        return;
    guarded([this] {
        if (editor->isOpen())
            editor->close();
    });
    delete editor; // detaches itself
}

VstIntPtr AudioEffect::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                  float opt) {
    auto* text = static_cast<char*>(ptr);
    switch (opcode) {
    case effOpen:
        open();
        return 0;
    case effClose:
        close();
        return 0;
    case effSetProgram:
        if (value < numPrograms)
            setProgram(narrowed(value));
        return 0;
    case effGetProgram:
        return getProgram();
    case effSetProgramName:
        if (text != nullptr)
            setProgramName(text);
        return 0;
    case effGetProgramName:
        if (text != nullptr)
            getProgramName(text);
        return 0;
    case effGetParamLabel:
        if (text != nullptr)
            getParameterLabel(index, text);
        return 0;
    case effGetParamDisplay:
        if (text != nullptr)
            getParameterDisplay(index, text);
        return 0;
    case effGetParamName:
        if (text != nullptr)
            getParameterName(index, text);
        return 0;
    case effGetVu:
        return static_cast<VstIntPtr>(getVu() * 32767.0F);
    case effSetSampleRate:
        setSampleRate(opt);
        return 0;
    case effSetBlockSize:
        setBlockSize(narrowed(value));
        return 0;
    case effMainsChanged:
        if (value == 0)
            suspend();
        else
            resume();
        return 0;
    case effEditGetRect:
        return editor != nullptr && ptr != nullptr && editor->getRect(static_cast<ERect**>(ptr));
    case effEditOpen:
        return editor != nullptr && editor->open(ptr);
    case effEditClose:
        if (editor != nullptr)
            editor->close();
        return 0;
    case effEditDraw:
        if (editor != nullptr)
            editor->draw(static_cast<ERect*>(ptr));
        return 0;
    case effEditMouse:
        return editor != nullptr ? editor->mouse(index, narrowed(value)) : 0;
    case effEditKey:
        return editor != nullptr ? editor->key(narrowed(value)) : 0;
    case effEditIdle:
        if (editor != nullptr)
            editor->idle();
        return 0;
    case effEditTop:
        if (editor != nullptr)
            editor->top();
        return 0;
    case effEditSleep:
        if (editor != nullptr)
            editor->sleep();
        return 0;
    case effIdentify:
        return fourCharacters("NvEf");
    case effGetChunk:
        return ptr != nullptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
    case effSetChunk:
        return setChunk(ptr, narrowed(value), index != 0);
    default:
        return 0;
    }
}

VstIntPtr AudioEffect::callHost(AudioMasterOpcodes opcode, VstInt32 index, VstIntPtr value,
                                void* ptr, float opt) {
    return audioMaster != nullptr ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
}

void AudioEffect::setParameterAutomated(VstInt32 index, float value) {
    setParameter(index, value);
    callHost(audioMasterAutomate, index, 0, nullptr, value);
}

VstInt32 AudioEffect::getMasterVersion() {
    const VstInt32 version = narrowed(callHost(audioMasterVersion));
    return version != 0 ? version : 1;
}

VstInt32 AudioEffect::getCurrentUniqueId() {
    return narrowed(callHost(audioMasterCurrentId));
}

void AudioEffect::masterIdle() {
    callHost(audioMasterIdle);
}

bool AudioEffect::isInputConnected(VstInt32 index) {
    return callHost(audioMasterPinConnected, index, 0) == 0;
}

bool AudioEffect::isOutputConnected(VstInt32 index) {
    return callHost(audioMasterPinConnected, index, 1) == 0;
}

float AudioEffect::updateSampleRate() {
    const VstIntPtr rate = callHost(audioMasterGetSampleRate);
    if (rate > 0)
        AudioEffect::setSampleRate(static_cast<float>(rate));
    return getSampleRate();
}

VstInt32 AudioEffect::updateBlockSize() {
    const VstIntPtr size = callHost(audioMasterGetBlockSize);
    if (size > 0)
        AudioEffect::setBlockSize(narrowed(size));
    return getBlockSize();
}

VstIntPtr AudioEffect::dispatchEffectClass(AEffect* e, VstInt32 opcode, VstInt32 index,
                                           VstIntPtr value, void* ptr, float opt) noexcept {
    AudioEffect* effect = effectOf(e);
    if (effect == nullptr)
        return 0;
    const VstIntPtr result =
        guarded([&] { return effect->dispatcher(opcode, index, value, ptr, opt); });
    if (opcode != effClose)
        return result;
    guarded([&] { delete effect; });
    return 1;
}

float AudioEffect::getParameterClass(AEffect* e, VstInt32 index) noexcept {
    AudioEffect* effect = effectOf(e);
    return effect != nullptr ? guarded([&] { return effect->getParameter(index); }) : 0.0F;
}

void AudioEffect::setParameterClass(AEffect* e, VstInt32 index, float value) noexcept {
    if (AudioEffect* effect = effectOf(e))
        guarded([&] { effect->setParameter(index, value); });
}

void AudioEffect::processClass(AEffect* e, float** inputs, float** outputs,
                               VstInt32 sampleFrames) noexcept {
    if (AudioEffect* effect = effectOf(e))
        guarded([&] { effect->process(inputs, outputs, sampleFrames); });
}

void AudioEffect::processClassReplacing(AEffect* e, float** inputs, float** outputs,
                                        VstInt32 sampleFrames) noexcept {
    if (AudioEffect* effect = effectOf(e))
        guarded([&] { effect->processReplacing(inputs, outputs, sampleFrames); });
}

void AudioEffect::processClassDoubleReplacing(AEffect* e, double** inputs, double** outputs,
                                              VstInt32 sampleFrames) noexcept {
    if (AudioEffect* effect = effectOf(e))
        guarded([&] { effect->processDoubleReplacing(inputs, outputs, sampleFrames); });
}
