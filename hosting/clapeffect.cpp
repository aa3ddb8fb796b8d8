#include "hosting/clapeffect.h"

#include "hosting/effectbank.h"
#include "hosting/effectrecord.h"

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
    : host(host_)
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

VstIntPtr ClapEffect::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                               float opt) {
    switch (opcode) {
    case effSetSampleRate:
        player.setRate(static_cast<double>(opt));
        return 0;
    case effSetBlockSize:
        player.setLargestBlock(
            static_cast<std::uint32_t>(std::clamp<VstIntPtr>(value, 0, 1 << 24)));
        return 0;
    case effMainsChanged:
        if (value == 0) {
            player.suspend();
            return 0;
        }
        player.resume();
        if (const auto* const latency =
                player.plugIn().extension<clap_plugin_latency>(CLAP_EXT_LATENCY))
            record.initialDelay = static_cast<VstInt32>(latency->get(&player.plugIn().plugin()));
        return 0;
    case effEditGetRect:
        if (ptr == nullptr)
            return 0;
        *static_cast<const ERect**>(ptr) = editorRectangle();
        return *static_cast<const ERect**>(ptr) != nullptr ? 1 : 0;
    case effEditOpen:
        return editor.open(reinterpret_cast<std::uintptr_t>(ptr)) ? 1 : 0;
    case effEditClose:
        editor.close();
        idle(); // what it has told to the end
        return 0;
    case effEditIdle:
        idle();
        return 0;
    case effGetChunk:
        if (ptr == nullptr)
            return 0;
        givenChunk = player.save().value_or(std::vector<std::byte>());
        *static_cast<void**>(ptr) = givenChunk.data();
        return static_cast<VstIntPtr>(givenChunk.size());
    case effSetChunk:
        if (ptr == nullptr || value < 0)
            return 0;
        return setChunk({static_cast<const std::byte*>(ptr), static_cast<std::size_t>(value)});
    case effCanBeAutomated:
        return parameterAt(index) != nullptr &&
                       (parameterAt(index)->flags & CLAP_PARAM_IS_AUTOMATABLE) != 0
                   ? 1
                   : 0;
    case effString2Parameter:
        return setParameterText(index, static_cast<const char*>(ptr));
    case effGetPlugCategory:
        return categoryOf(descriptor());
    case effGetVendorVersion:
        return record.version;
    case effGetParameterProperties:
        return ptr != nullptr ? describeParameter(index, *static_cast<VstParameterProperties*>(ptr))
                              : 0;
    default:
        return answerText(opcode, index, static_cast<char*>(ptr));
    }
}

VstIntPtr ClapEffect::answerText(VstInt32 opcode, VstInt32 index, char* buffer) {
    const auto put = [buffer](const char* text) {
        return putText(buffer, text != nullptr ? text : "");
    };
    const clap_param_info* const parameter = parameterAt(index);
    switch (opcode) {
    case effGetEffectName:
    case effGetProductString:
        return put(descriptor().name);
    case effGetVendorString:
        return put(descriptor().vendor);
    case effGetProgramName:
        return hasBank ? put(programName().c_str()) : 0;
    case effGetParamName:
        return parameter != nullptr ? put(parameter->name) : 0;
    case effGetParamDisplay:
        if (parameter == nullptr)
            return 0;
        return put(player.plugIn()
                       .text(parameter->id, player.value(static_cast<std::size_t>(index)))
                       .value_or("")
                       .c_str());
    default:
        return 0;
    }
}

// --- Parameters ---

const clap_param_info* ClapEffect::parameterAt(VstInt32 index) const {
    const bool exists = index >= 0 && index < record.numParams;
    return exists ? &player.parameters()[static_cast<std::size_t>(index)] : nullptr;
}

void ClapEffect::setParameter(VstInt32 index, float value) {
    if (const clap_param_info* const parameter = parameterAt(index))
        player.setValue(static_cast<std::size_t>(index), plain(*parameter, value));
}

float ClapEffect::getParameter(VstInt32 index) const {
    const clap_param_info* const parameter = parameterAt(index);
    return parameter != nullptr
               ? normalised(*parameter, player.value(static_cast<std::size_t>(index)))
               : 0.0F;
}

VstIntPtr ClapEffect::setParameterText(VstInt32 index, const char* text) {
    const clap_param_info* const parameter = parameterAt(index);
    if (parameter == nullptr || text == nullptr) // no text: can it be done at all?
        return parameter != nullptr ? 1 : 0;
    const auto value = player.plugIn().valueOf(parameter->id, text);
    if (value)
        player.setValue(static_cast<std::size_t>(index), *value);
    return value ? 1 : 0;
}

VstIntPtr ClapEffect::describeParameter(VstInt32 index, VstParameterProperties& properties) const {
    const clap_param_info* const parameter = parameterAt(index);
    if (parameter == nullptr || (parameter->flags & CLAP_PARAM_IS_STEPPED) == 0 ||
        spanOf(*parameter) != 1.0)
        return 0;
    describeSwitch(properties, parameter->name);
    return 1;
}

// --- State ---

std::string ClapEffect::programName() {
    const auto bank =
        EffectBank::in(player.save().value_or(std::vector<std::byte>()), record.uniqueID);
    return bank ? bank->presets.at(bank->current.value_or(0)).name().data() : "";
}

VstIntPtr ClapEffect::setChunk(std::span<const std::byte> bytes) {
    return player.load(bytes) ? 1 : 0;
}

// --- Editor ---

const ERect* ClapEffect::editorRectangle() {
    const auto size = editor.size();
    if (!size)
        return nullptr;
    rectangle = {0, 0, static_cast<VstInt16>(size->height), static_cast<VstInt16>(size->width)};
    return &rectangle;
}

void ClapEffect::idle() {
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
            tellHost(audioMasterAutomate, index, normalised(*parameterAt(index), told->value));
        else
            tellHost(told->type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? audioMasterBeginEdit
                                                                  : audioMasterEndEdit,
                     index);
    }
}

VstIntPtr ClapEffect::tellHost(VstInt32 opcode, VstInt32 index, float opt) {
    return host != nullptr ? host(&record, opcode, index, 0, nullptr, opt) : 0;
}

} // namespace mirelon::hosting
