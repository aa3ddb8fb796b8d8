#include "hosting/lv2effect.h"

#include "formats/lv2/names.h"
#include "hosting/effectbank.h"
#include "hosting/hostingerror.h"
#include "hosting/lv2nodes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <lv2/core/lv2.h>
#include <numeric>

namespace mirelon::hosting {

namespace {

constexpr double usualRate = 44100.0;

VstInt32 versionOf(const Lv2Bundle& bundle) {
    const auto part = [&](const char* uri) {
        const Lv2Nodes nodes(
            lilv_plugin_get_value(bundle.plugin(), lv2Uri(bundle.world(), uri).get()));
        const LilvNode* const first = lilv_nodes_get_first(nodes.get());
        return first != nullptr && lilv_node_is_int(first) ? lilv_node_as_int(first) : 0;
    };
    return part(LV2_CORE__minorVersion) * 1000 + part(LV2_CORE__microVersion);
}

VstPlugCategory categoryOf(const Lv2Bundle& bundle) {
    constexpr std::array<std::pair<std::string_view, VstPlugCategory>, 5> categories{{
        {LV2_CORE__SpatialPlugin, kPlugCategSpacializer},
        {LV2_CORE__ReverbPlugin, kPlugCategRoomFx},
        {LV2_CORE__AnalyserPlugin, kPlugCategAnalysis},
        {LV2_CORE__InstrumentPlugin, kPlugCategSynth},
        {LV2_CORE__GeneratorPlugin, kPlugCategGenerator},
    }};
    // As the data file says: lilv's classes are those of the installed specification.
    const Lv2Nodes types(
        lilv_plugin_get_value(bundle.plugin(), lv2Uri(bundle.world(), LILV_NS_RDF "type").get()));
    for (const auto& [uri, category] : categories)
        LILV_FOREACH(nodes, i, types.get()) {
            if (lv2Text(lilv_nodes_get(types.get(), i)) == uri)
                return category;
        }
    return kPlugCategEffect;
}

} // namespace

AEffect* Lv2Effect::make(const Lv2Bundle& bundle, audioMasterCallback host) {
    return &(new Lv2Effect(bundle, host))->record;
}

Lv2Effect::Lv2Effect(const Lv2Bundle& bundle_, audioMasterCallback host_)
    : AdaptedEffect(host_)
    , bundle(bundle_)
    , parameters(lv2Parameters(bundle))
    , player(bundle, usualRate) {
    EffectFunctions<Lv2Effect>::give(record, *this);
    record.numParams = static_cast<VstInt32>(parameters.size());
    record.numInputs = static_cast<VstInt32>(player.ports().audioInputs());
    record.numOutputs = static_cast<VstInt32>(player.ports().audioOutputs());
    record.uniqueID = identifierOf(bundle.uri());
    record.version = versionOf(bundle);
    record.flags = effFlagsCanReplacing;
    if (!bundle.windowBinary().empty())
        record.flags |= effFlagsHasEditor;
    player.settle();
    if (lilv_plugin_has_latency(bundle.plugin()))
        record.initialDelay = static_cast<VstInt32>(
            player.number(lilv_plugin_get_latency_port_index(bundle.plugin())));
    if (const auto property = bankProperty()) {
        chunkProperty = *property;
        record.flags |= effFlagsProgramChunks;
        record.uniqueID = EffectBank::owner(chunk()).value_or(record.uniqueID);
        record.numPrograms = 1;
    } else {
        programs = bundle.presets();
        record.numPrograms = static_cast<VstInt32>(programs.size());
    }
}

std::string Lv2Effect::effectName() {
    return lv2Text(Lv2Node(lilv_plugin_get_name(bundle.plugin())).get());
}

std::string Lv2Effect::vendorName() {
    return lv2Text(Lv2Node(lilv_plugin_get_author_name(bundle.plugin())).get());
}

VstPlugCategory Lv2Effect::category() {
    return categoryOf(bundle);
}

// --- Parameters ---

const Lv2Parameter& Lv2Effect::parameterAt(VstInt32 index) const {
    return parameters[static_cast<std::size_t>(index)];
}

std::optional<VstInt32> Lv2Effect::indexOfPort(std::uint32_t port) const {
    const auto found = std::ranges::find(parameters, port, &Lv2Parameter::port);
    if (found == parameters.end())
        return std::nullopt;
    return static_cast<VstInt32>(found - parameters.begin());
}

void Lv2Effect::setParameter(VstInt32 index, float value) {
    if (hasParameter(index))
        player.setNumber(parameterAt(index).port, parameterAt(index).numberOf(value));
}

float Lv2Effect::getParameter(VstInt32 index) const {
    return hasParameter(index) ? parameterAt(index).valueOf(player.number(parameterAt(index).port))
                               : 0.0F;
}

std::optional<std::string> Lv2Effect::parameterLabel(VstInt32 index) {
    return parameterAt(index).unit;
}

std::string Lv2Effect::parameterDisplay(VstInt32 index) {
    const Lv2Parameter& parameter = parameterAt(index);
    return parameter.display(player.number(parameter.port));
}

bool Lv2Effect::readParameter(VstInt32 index, const char* text) {
    const Lv2Parameter& parameter = parameterAt(index);
    const auto number = parameter.read(text);
    if (number)
        player.setNumber(parameter.port, *number);
    return number.has_value();
}

bool Lv2Effect::isSwitch(VstInt32 index) {
    return parameterAt(index).kind == Lv2Parameter::Kind::toggle;
}

// --- Programs and state ---

void Lv2Effect::setProgram(VstIntPtr number) {
    if (number < 0 || number >= static_cast<VstIntPtr>(programs.size()))
        return;
    chosenProgram = number;
    const auto numbers = bundle.preset(programs[static_cast<std::size_t>(number)]);
    for (const Lv2Parameter& parameter : parameters)
        if (const auto found = numbers.find(parameter.symbol); found != numbers.end())
            player.setNumber(parameter.port, found->second);
}

std::optional<std::string> Lv2Effect::programName() {
    if (chunkProperty.empty())
        return nameOfProgram(chosenProgram);
    const auto bank = EffectBank::in(chunk(), record.uniqueID);
    return bank ? bank->presets.at(bank->current.value_or(0)).name().data() : "";
}

std::optional<std::string> Lv2Effect::programName(VstInt32 index) {
    if (!chunkProperty.empty())
        return std::nullopt;
    return nameOfProgram(index);
}

std::string Lv2Effect::nameOfProgram(VstIntPtr number) const {
    const bool exists = number >= 0 && number < static_cast<VstIntPtr>(programs.size());
    return exists ? programs[static_cast<std::size_t>(number)] : "";
}

// The one property of a state that is Mirelon's bank.
std::optional<std::string> Lv2Effect::bankProperty() {
    const Lv2State state = player.save();
    const bool mirelon = std::ranges::all_of(
        parameters, [](const Lv2Parameter& each) { return each.mirelonIndex.has_value(); });
    if (state.size() != 1 || !mirelon || !EffectBank::owner(state.begin()->second.value))
        return std::nullopt;
    return state.begin()->first;
}

std::vector<std::byte> Lv2Effect::chunk() {
    if (chunkProperty.empty())
        return {};
    player.settle();
    return player.save()[chunkProperty].value;
}

bool Lv2Effect::setChunk(std::span<const std::byte> bytes) {
    if (chunkProperty.empty())
        return false;
    player.settle(); // what the ports say until now is not to count afterwards
    std::vector<float> before;
    for (const Lv2Parameter& parameter : parameters)
        before.push_back(player.number(parameter.port));
    // Ports count over the state, so they have to agree with it beforehand.
    showBank(bytes);
    const Lv2State state{{chunkProperty,
                          {{bytes.begin(), bytes.end()},
                           LV2_ATOM__Chunk,
                           LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE}}};
    if (player.restore(state) != LV2_STATE_SUCCESS) {
        for (std::size_t i = 0; i < parameters.size(); ++i)
            player.setNumber(parameters[i].port, before[i]);
        return false;
    }
    showBank(player.save()[chunkProperty].value); // what it has made of it
    return true;
}

void Lv2Effect::showBank(std::span<const std::byte> chunk) {
    const auto bank = EffectBank::in(chunk, record.uniqueID);
    if (!bank || !bank->current)
        return;
    const PresetRecord& preset = bank->presets.at(*bank->current);
    for (const Lv2Parameter& parameter : parameters)
        if (const float value = preset.value(*parameter.mirelonIndex); isNormalised(value))
            player.setNumber(parameter.port, parameter.numberOf(value));
}

// --- Editor ---

bool Lv2Effect::openEditor(std::uintptr_t parent) {
    editor.reset();
    Lv2EditorListener& self = *this;
    try {
        editor = std::make_unique<Lv2Editor>(bundle, player, parent, self);
    } catch (const PluginError&) {
        return false;
    }
    if (!editor->isOpen())
        editor.reset();
    return editor != nullptr;
}

void Lv2Effect::closeEditor() {
    editor.reset();
    player.settle();
}

void Lv2Effect::idleEditor() {
    if (editor)
        editor->idle();
}

std::optional<std::pair<int, int>> Lv2Effect::editorSize() {
    return editor ? editor->size() : std::nullopt;
}

void Lv2Effect::numberWritten(std::uint32_t port, float number) {
    if (const auto index = indexOfPort(port))
        tellHost(audioMasterAutomate, *index, 0,
                 parameters[static_cast<std::size_t>(*index)].valueOf(number));
}

void Lv2Effect::touched(std::uint32_t port, bool grabbed) {
    if (const auto index = indexOfPort(port))
        tellHost(grabbed ? audioMasterBeginEdit : audioMasterEndEdit, *index);
}

void Lv2Effect::resized(int width, int height) {
    tellHost(audioMasterSizeWindow, width, height);
}

// --- Module ---

Lv2Module::Lv2Module(std::unique_ptr<const Lv2Bundle> bundle_)
    : bundle(std::move(bundle_)) {
    Lv2Instance::requireFeaturesOf(*bundle);
}

std::vector<std::filesystem::path> Lv2Module::libraries() const {
    std::vector<std::filesystem::path> files{bundle->binary()};
    if (const auto window = bundle->windowBinary(); !window.empty())
        files.push_back(window);
    return files;
}

AEffect* Lv2Module::makeInstance(audioMasterCallback host) const {
    return Lv2Effect::make(*bundle, host);
}

} // namespace mirelon::hosting
