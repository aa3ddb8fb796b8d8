#include "hosting/clapeffect.h"

#include "hosting/effectbank.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <clap/ext/latency.h>
#include <cstring>

namespace mirelon::hosting {

namespace {

constexpr double usualRate = 44100.0;

// "1.9.8" is 1980.
VstInt32 versionOf(const clap_plugin_descriptor& descriptor) {
    std::string_view text = descriptor.version != nullptr ? descriptor.version : "";
    VstInt32 version = 0;
    for (const VstInt32 weight : {1000, 100, 10}) {
        VstInt32 part = 0;
        const auto [rest, failure] = std::from_chars(text.data(), text.data() + text.size(), part);
        if (failure != std::errc{})
            break;
        version += std::clamp(part, 0, 1000) * weight;
        text = text.substr(static_cast<std::size_t>(rest - text.data()));
        text.remove_prefix(text.starts_with('.') ? 1 : text.size());
    }
    return version;
}

VstPlugCategory categoryOf(const clap_plugin_descriptor& descriptor) {
    constexpr std::array<std::pair<std::string_view, VstPlugCategory>, 5> categories{{
        {CLAP_PLUGIN_FEATURE_INSTRUMENT, kPlugCategSynth},
        {CLAP_PLUGIN_FEATURE_ANALYZER, kPlugCategAnalysis},
        {CLAP_PLUGIN_FEATURE_REVERB, kPlugCategRoomFx},
        {CLAP_PLUGIN_FEATURE_RESTORATION, kPlugCategRestoration},
        {CLAP_PLUGIN_FEATURE_MASTERING, kPlugCategMastering},
    }};
    for (const auto& [feature, category] : categories)
        for (const char* const* each = descriptor.features; each != nullptr && *each != nullptr;
             ++each)
            if (feature == *each)
                return category;
    return kPlugCategEffect;
}

std::string textOrNone(const char* text) {
    return text != nullptr ? text : "";
}

double spanOf(const clap_param_info& parameter) {
    return parameter.max_value - parameter.min_value;
}

float normalised(const clap_param_info& parameter, double value) {
    const double span = spanOf(parameter);
    return span > 0.0 ? static_cast<float>((value - parameter.min_value) / span) : 0.0F;
}

double plain(const clap_param_info& parameter, float value) {
    return parameter.min_value + static_cast<double>(value) * spanOf(parameter);
}

} // namespace

AEffect* ClapEffect::make(const ClapLibrary& library, audioMasterCallback host) {
    return &(new ClapEffect(library, host))->record;
}

ClapEffect::ClapEffect(const ClapLibrary& library, audioMasterCallback host_)
    : AdaptedEffect(host_)
    , player(library, library.firstId(), usualRate) {
    setUpRecord();
}

void ClapEffect::setUpRecord() {
    EffectFunctions<ClapEffect>::give(record, *this);
    record.processDoubleReplacing = EffectFunctions<ClapEffect>::process<double>;
    ClapInstance& plugIn = player.plugIn();
    record.numParams = static_cast<VstInt32>(player.parameters().size());
    record.numInputs = static_cast<VstInt32>(plugIn.inputChannels());
    record.numOutputs = static_cast<VstInt32>(plugIn.outputChannels());
    record.version = versionOf(descriptor());
    record.uniqueID = identifierOf(descriptor().id);
    record.flags = effFlagsCanReplacing;
    if (plugIn.takesDoubles())
        record.flags |= effFlagsCanDoubleReplacing;
    if (editor.exists())
        record.flags |= effFlagsHasEditor;
    if (const auto state = player.save()) {
        record.flags |= effFlagsProgramChunks;
        if (const auto owner = EffectBank::owner(*state)) {
            record.uniqueID = *owner;
            hasBank = true;
        }
    }
    record.numPrograms = hasBank ? 1 : 0;
}

void ClapEffect::setLargestBlock(std::int32_t frames) {
    player.setLargestBlock(static_cast<std::uint32_t>(frames));
}

void ClapEffect::resume() {
    player.resume();
    if (const auto* const latency =
            player.plugIn().extension<clap_plugin_latency>(CLAP_EXT_LATENCY))
        record.initialDelay = static_cast<VstInt32>(latency->get(&player.plugIn().plugin()));
}

std::string ClapEffect::effectName() {
    return textOrNone(descriptor().name);
}

std::string ClapEffect::vendorName() {
    return textOrNone(descriptor().vendor);
}

VstPlugCategory ClapEffect::category() {
    return categoryOf(descriptor());
}

// --- Parameters ---

const clap_param_info& ClapEffect::parameterAt(VstInt32 index) const {
    return player.parameters()[static_cast<std::size_t>(index)];
}

void ClapEffect::setParameter(VstInt32 index, float value) {
    if (hasParameter(index))
        player.setValue(static_cast<std::size_t>(index), plain(parameterAt(index), value));
}

float ClapEffect::getParameter(VstInt32 index) const {
    return hasParameter(index)
               ? normalised(parameterAt(index), player.value(static_cast<std::size_t>(index)))
               : 0.0F;
}

std::string ClapEffect::parameterName(VstInt32 index) {
    return parameterAt(index).name;
}

std::string ClapEffect::parameterDisplay(VstInt32 index) {
    const double value = player.value(static_cast<std::size_t>(index));
    return player.plugIn().text(parameterAt(index).id, value).value_or("");
}

bool ClapEffect::readParameter(VstInt32 index, const char* text) {
    const auto value = player.plugIn().valueOf(parameterAt(index).id, text);
    if (value)
        player.setValue(static_cast<std::size_t>(index), *value);
    return value.has_value();
}

bool ClapEffect::isAutomatable(VstInt32 index) {
    return (parameterAt(index).flags & CLAP_PARAM_IS_AUTOMATABLE) != 0;
}

bool ClapEffect::isSwitch(VstInt32 index) {
    const clap_param_info& parameter = parameterAt(index);
    return (parameter.flags & CLAP_PARAM_IS_STEPPED) != 0 && spanOf(parameter) == 1.0;
}

// --- State ---

std::optional<std::string> ClapEffect::programName() {
    if (!hasBank)
        return std::nullopt;
    const auto bank = EffectBank::in(chunk(), record.uniqueID);
    return bank ? bank->presets.at(bank->current.value_or(0)).name().data() : "";
}

std::vector<std::byte> ClapEffect::chunk() {
    return player.save().value_or(std::vector<std::byte>());
}

// --- Editor ---

void ClapEffect::closeEditor() {
    editor.close();
    idleEditor(); // what it has told to the end
}

std::optional<std::pair<int, int>> ClapEffect::editorSize() {
    const auto size = editor.size();
    if (!size)
        return std::nullopt;
    return std::pair(static_cast<int>(size->width), static_cast<int>(size->height));
}

void ClapEffect::idleEditor() {
    const bool lookAgain = player.serve();
    player.settle(); // where nothing plays that would do it
    passOnTold();
    if (lookAgain)
        tellHost(audioMasterUpdateDisplay);
}

void ClapEffect::passOnTold() {
    while (const auto told = player.takeTold()) {
        const auto place = player.indexOf(told->parameter);
        if (!place)
            continue;
        const auto index = static_cast<VstInt32>(*place);
        if (told->type == CLAP_EVENT_PARAM_VALUE)
            tellHost(audioMasterAutomate, index, 0, normalised(parameterAt(index), told->value));
        else
            tellHost(told->type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? audioMasterBeginEdit
                                                                  : audioMasterEndEdit,
                     index);
    }
}

} // namespace mirelon::hosting
