#include "hosting/effect.h"

#include "hosting/hostingerror.h"

#include <array>
#include <cstring>

namespace mirelon::hosting {

namespace {

using TextBuffer = std::array<char, 256>;

std::string textOf(const TextBuffer& buffer) {
    return {buffer.data(), strnlen(buffer.data(), buffer.size())};
}

AEffect* checkedRecord(const PluginModule& module, audioMasterCallback host) {
    const auto refuse = [&module](const char* why) {
        throw PluginError(module.name() + ": " + why);
    };
    AEffect* const record = module.makeInstance(host);
    if (record == nullptr)
        refuse("the plug-in made no instance");
    if (record->magic != kEffectMagic)
        refuse("the plug-in's effect record has a wrong magic word");
    if (record->dispatcher == nullptr || record->setParameter == nullptr ||
        record->getParameter == nullptr || record->processReplacing == nullptr)
        refuse("the plug-in's effect record lacks a function");
    if ((record->flags & effFlagsCanDoubleReplacing) != 0 &&
        record->processDoubleReplacing == nullptr)
        refuse("the plug-in's effect record lacks the double-precision function that it promises");
    if (record->numParams < 0 || record->numPrograms < 0 || record->numInputs < 0 ||
        record->numOutputs < 0)
        refuse("the plug-in's effect record has a negative count");
    return record;
}

} // namespace

Effect::Effect(const PluginModule& module, RecordingHost& host)
    : Effect(module, host.callback()) {}

Effect::Effect(const PluginModule& module, audioMasterCallback host)
    : effect(checkedRecord(module, host)) {
    dispatch(effOpen);
}

Effect::~Effect() {
    if (running)
        suspend();
    dispatch(effClose);
}

VstIntPtr Effect::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                           float opt) const {
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

std::string Effect::text(VstInt32 opcode, VstInt32 index) const {
    TextBuffer buffer{};
    dispatch(opcode, index, 0, buffer.data());
    return textOf(buffer);
}

std::string Effect::name() const {
    return text(effGetEffectName);
}

std::string Effect::vendor() const {
    return text(effGetVendorString);
}

std::string Effect::product() const {
    return text(effGetProductString);
}

VstIntPtr Effect::vendorVersion() const {
    return dispatch(effGetVendorVersion);
}

VstIntPtr Effect::vstVersion() const {
    return dispatch(effGetVstVersion);
}

VstIntPtr Effect::category() const {
    return dispatch(effGetPlugCategory);
}

VstIntPtr Effect::canDo(const std::string& capability) const {
    std::string copy = capability;
    return dispatch(effCanDo, 0, 0, copy.data());
}

float Effect::parameter(VstInt32 index) const {
    return effect->getParameter(effect, index);
}

void Effect::setParameter(VstInt32 index, float value) {
    effect->setParameter(effect, index, value);
}

std::string Effect::parameterName(VstInt32 index) const {
    return text(effGetParamName, index);
}

std::string Effect::parameterLabel(VstInt32 index) const {
    return text(effGetParamLabel, index);
}

std::string Effect::parameterDisplay(VstInt32 index) const {
    return text(effGetParamDisplay, index);
}

std::optional<VstParameterProperties> Effect::parameterProperties(VstInt32 index) const {
    VstParameterProperties properties{};
    if (dispatch(effGetParameterProperties, index, 0, &properties) == 0)
        return std::nullopt;
    return properties;
}

bool Effect::canBeAutomated(VstInt32 index) const {
    return dispatch(effCanBeAutomated, index) != 0;
}

bool Effect::setParameterText(VstInt32 index, const std::string& text) {
    std::string copy = text;
    return dispatch(effString2Parameter, index, 0, copy.data()) != 0;
}

std::optional<VstPinProperties> Effect::inputProperties(VstInt32 index) const {
    VstPinProperties properties{};
    if (dispatch(effGetInputProperties, index, 0, &properties) == 0)
        return std::nullopt;
    return properties;
}

std::optional<VstPinProperties> Effect::outputProperties(VstInt32 index) const {
    VstPinProperties properties{};
    if (dispatch(effGetOutputProperties, index, 0, &properties) == 0)
        return std::nullopt;
    return properties;
}

VstIntPtr Effect::program() const {
    return dispatch(effGetProgram);
}

void Effect::setProgram(VstIntPtr index) {
    dispatch(effBeginSetProgram);
    dispatch(effSetProgram, 0, index);
    dispatch(effEndSetProgram);
}

std::string Effect::programName() const {
    return text(effGetProgramName);
}

void Effect::setProgramName(const std::string& name) {
    std::string copy = name;
    dispatch(effSetProgramName, 0, 0, copy.data());
}

std::optional<std::string> Effect::programNameAt(VstInt32 index) const {
    TextBuffer buffer{};
    // The category -1 stands for any.
    if (dispatch(effGetProgramNameIndexed, index, -1, buffer.data()) == 0)
        return std::nullopt;
    return textOf(buffer);
}

std::vector<std::byte> Effect::chunk(ChunkKind kind) const {
    void* data = nullptr;
    const VstIntPtr size = dispatch(effGetChunk, kind == ChunkKind::program ? 1 : 0, 0, &data);
    if (data == nullptr || size <= 0)
        return {};
    const auto* const bytes = static_cast<const std::byte*>(data);
    return {bytes, bytes + size};
}

VstIntPtr Effect::setChunk(std::span<const std::byte> bytes, ChunkKind kind) {
    std::vector<std::byte> copy(bytes.begin(), bytes.end());
    return dispatch(effSetChunk, kind == ChunkKind::program ? 1 : 0,
                    static_cast<VstIntPtr>(copy.size()), copy.data());
}

void Effect::setSampleRate(float rate) {
    dispatch(effSetSampleRate, 0, 0, nullptr, rate);
}

void Effect::setBlockSize(VstIntPtr frames) {
    dispatch(effSetBlockSize, 0, frames);
}

void Effect::setPrecision(VstProcessPrecision precision) {
    dispatch(effSetProcessPrecision, 0, precision);
}

void Effect::resume() {
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
    running = true;
}

void Effect::suspend() {
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
    running = false;
}

void Effect::process(float** inputs, float** outputs, VstInt32 frames) {
    effect->processReplacing(effect, inputs, outputs, frames);
}

void Effect::process(double** inputs, double** outputs, VstInt32 frames) {
    effect->processDoubleReplacing(effect, inputs, outputs, frames);
}

} // namespace mirelon::hosting
