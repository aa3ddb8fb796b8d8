#include "processor/mirelon.h"

#include "processor/core/displaytext.h"
#include "processor/core/factorypresets.h"
#include "processor/editorfactory.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>

using mirelon::copyText;

namespace {

constexpr VstInt32 vendorVersion = 1980;
constexpr std::string_view effectName = "Dravik Mirelon";
constexpr std::string_view productName = "Mirelon";
constexpr std::string_view vendorDomain = "dravik.example";

static_assert(kNumPresetParams == kNumParams, "a preset record has a value for each parameter");
static_assert(kNumPresets == mirelon::factoryPresets.size(), "the factory presets fill the bank");

VstInt32 integerRate(float sampleRate) {
    return sampleRate >= 0.0F && sampleRate < 2147483648.0F ? static_cast<VstInt32>(sampleRate) : 0;
}

bool describePin(VstInt32 index, const char* format, VstPinProperties& properties) {
    if (index > 1)
        return false;
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral)
    std::snprintf(properties.label, sizeof properties.label, format, index + 1);
    properties.flags = kVstPinIsActive | kVstPinIsStereo;
    return true;
}

} // namespace

Mirelon::Mirelon(audioMasterCallback audioMaster)
    : CPresetSystemEffect(audioMaster)
    , scratchBuffer(std::make_unique_for_overwrite<float[]>(scratchSize)) {
    setNumInputs(2);
    setNumOutputs(2);
    setUniqueID(mirelon::effectId);
    canProcessReplacing(true);
    canDoubleReplacing(true);
    sampleRateInt = integerRate(getSampleRate());
    getOutputLatency();
    updateBlockSize();
    createEditor(*this);
    initPresets();
    loadDefaults();
    setPresetNo(0);
}

// The editor refers to this effect to its end.
Mirelon::~Mirelon() {
    destroyEditor();
}

void Mirelon::initPresets() {
    for (std::size_t i = 0; i < mirelon::factoryPresets.size(); ++i) {
        PresetRecord& record = bank()[i];
        record.setName(mirelon::factoryPresets[i].name);
        for (int param = 0; param < kNumParams; ++param)
            record.setValue(param,
                            mirelon::factoryPresets[i].values[static_cast<std::size_t>(param)]);
    }
}

void Mirelon::suspend() {
    reset(0.0F);
}

void Mirelon::resume() {
    CPresetSystemEffect::resume();
    reset(0.5F);
}

void Mirelon::reset(float reading) noexcept {
    sampleRateInt = integerRate(getSampleRate());
    getOutputLatency();
    updateBlockSize();
    showReadings(reading, reading);
    std::fill_n(scratchBuffer.get(), scratchSize, 0.0F);
    envelopes = {};
}

void Mirelon::showReadings(float width, float balance) noexcept {
    widthMeter.store(width, std::memory_order_relaxed);
    balanceMeter.store(balance, std::memory_order_relaxed);
}

template <typename Sample>
void Mirelon::processSamples(Sample** inputs, Sample** outputs, VstInt32 sampleFrames) noexcept {
    if (sampleFrames > 0) {
        const auto whole = [](Sample** channels) {
            return channels != nullptr && channels[0] != nullptr && channels[1] != nullptr;
        };
        if (!whole(inputs) || !whole(outputs))
            return;
        // Bit by bit: a rate may be anything that a host has sent.
        const float rate = getSampleRate();
        if (std::bit_cast<std::uint32_t>(rate) != std::bit_cast<std::uint32_t>(followerRate)) {
            followerRate = rate;
            followerCoefficient = mirelon::envelopeCoefficient(followerRate);
        }
        mirelon::processBlock(coefficients.snapshot(), followerCoefficient, envelopes,
                              mirelon::StereoInput<Sample>{inputs[0], inputs[1]},
                              mirelon::StereoOutput<Sample>{outputs[0], outputs[1]}, sampleFrames);
    }
    const mirelon::MeterReadings readings = mirelon::readMeters(envelopes);
    showReadings(readings.width, readings.balance);
}

void Mirelon::processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) {
    processSamples(inputs, outputs, sampleFrames);
}

void Mirelon::processDoubleReplacing(double** inputs, double** outputs, VstInt32 sampleFrames) {
    processSamples(inputs, outputs, sampleFrames);
}

void Mirelon::setParameter(VstInt32 index, float value) {
    if (!isPresetLoading())
        CPresetSystemEffect::setParameter(index, value);
    if (mirelon::isParameter(index)) {
        rawValue[static_cast<std::size_t>(index)].store(value, std::memory_order_relaxed);
        coefficients.apply(index, value);
    }
    if (EditorLink* link = linkToEditor())
        link->setParameter(static_cast<long>(index), value);
}

float Mirelon::getParameter(VstInt32 index) {
    return mirelon::isParameter(index)
               ? rawValue[static_cast<std::size_t>(index)].load(std::memory_order_relaxed)
               : 0.0F;
}

float Mirelon::getParameterValue(VstInt32 index) const {
    return mirelon::workingValue(coefficients.snapshot(), index);
}

void Mirelon::getParameterLabel(VstInt32 index, char* label) {
    if (mirelon::isParameter(index))
        copyText(mirelon::parameterAt(index).label, label);
}

void Mirelon::getParameterName(VstInt32 index, char* text) {
    if (mirelon::isParameter(index))
        copyText(mirelon::parameterAt(index).name, text);
}

void Mirelon::getParameterDisplay(VstInt32 index, char* text) {
    mirelon::parameterDisplay(index, getParameter(index), coefficients.snapshot(), text);
}

float Mirelon::getVu() {
    return vuValue.exchange(0.0F, std::memory_order_relaxed);
}

bool Mirelon::getParameterProperties(VstInt32 index, VstParameterProperties* properties) {
    if (!mirelon::isParameter(index))
        return false;
    if (mirelon::parameterAt(index).kind == mirelon::ParameterKind::continuous) {
        properties->flags = kVstParameterUsesFloatStep;
        properties->stepFloat = 1.0F / 256.0F;
        properties->smallStepFloat = 1.0F / 1024.0F;
        properties->largeStepFloat = 1.0F / 64.0F;
    } else {
        properties->flags = kVstParameterIsSwitch | kVstParameterUsesFloatStep;
        properties->stepFloat = 1.0F;
        properties->smallStepFloat = 1.0F;
        properties->largeStepFloat = 1.0F;
    }
    getParameterName(index, properties->label);
    const std::string_view name(properties->label);
    copyText(name.substr(0, sizeof properties->shortLabel - 1), properties->shortLabel);
    return true;
}

bool Mirelon::getInputProperties(VstInt32 index, VstPinProperties* properties) {
    return describePin(index, "My %1d In", *properties);
}

bool Mirelon::getOutputProperties(VstInt32 index, VstPinProperties* properties) {
    return describePin(index, "My %1d Out", *properties);
}

bool Mirelon::getEffectName(char* name) {
    copyText(effectName, name);
    return true;
}

bool Mirelon::getVendorString(char* text) {
    copyText(vendorDomain, text);
    return true;
}

bool Mirelon::getProductString(char* text) {
    copyText(productName, text);
    return true;
}

VstInt32 Mirelon::getVendorVersion() {
    return vendorVersion;
}

VstInt32 Mirelon::getPlugCategory() {
    return kPlugCategMastering;
}

AudioEffect* createEffectInstance(audioMasterCallback audioMaster) {
    if (audioMaster == nullptr ||
        audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F) == 0)
        return nullptr;
    return new Mirelon(audioMaster);
}
