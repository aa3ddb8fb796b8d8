#include "hosting/lv2effect.h"

#include "formats/lv2/names.h"
#include "hosting/effectbank.h"
#include "hosting/effectrecord.h"
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

std::string vendorOf(const Lv2Bundle& bundle) {
    return lv2Text(Lv2Node(lilv_plugin_get_author_name(bundle.plugin())).get());
}

std::string effectNameOf(const Lv2Bundle& bundle) {
    return lv2Text(Lv2Node(lilv_plugin_get_name(bundle.plugin())).get());
}

} // namespace

AEffect* Lv2Effect::make(const Lv2Bundle& bundle, audioMasterCallback host) {
    return &(new Lv2Effect(bundle, host))->record;
}

Lv2Effect::Lv2Effect(const Lv2Bundle& bundle_, audioMasterCallback host_)
    : bundle(bundle_)
    , host(host_)
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

VstIntPtr Lv2Effect::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                              float opt) {
    switch (opcode) {
    case effSetProgram:
        setProgram(value);
        return 0;
    case effGetProgram:
        return program;
    case effSetSampleRate:
        player.setRate(static_cast<double>(opt));
        return 0;
    case effSetBlockSize:
        player.setLargestBlock(static_cast<std::int32_t>(std::clamp<VstIntPtr>(value, 0, 1 << 24)));
        return 0;
    case effMainsChanged:
        value != 0 ? player.resume() : player.suspend();
        return 0;
    case effEditGetRect:
        if (ptr == nullptr)
            return 0;
        *static_cast<const ERect**>(ptr) = editorRectangle();
        return *static_cast<const ERect**>(ptr) != nullptr ? 1 : 0;
    case effEditOpen:
        return openEditor(ptr);
    case effEditClose:
        editor.reset();
        player.settle();
        return 0;
    case effEditIdle:
        if (editor)
            editor->idle();
        return 0;
    case effGetChunk:
        if (ptr == nullptr)
            return 0;
        givenChunk = chunk();
        *static_cast<void**>(ptr) = givenChunk.data();
        return static_cast<VstIntPtr>(givenChunk.size());
    case effSetChunk:
        if (ptr == nullptr || value < 0)
            return 0;
        return setChunk({static_cast<const std::byte*>(ptr), static_cast<std::size_t>(value)});
    case effCanBeAutomated:
        return parameterAt(index) != nullptr ? 1 : 0;
    case effString2Parameter:
        return setParameterText(index, static_cast<const char*>(ptr));
    case effGetPlugCategory:
        return categoryOf(bundle);
    case effGetVendorVersion:
        return record.version;
    case effGetParameterProperties:
        return ptr != nullptr ? describeParameter(index, *static_cast<VstParameterProperties*>(ptr))
                              : 0;
    default:
        return answerText(opcode, index, static_cast<char*>(ptr));
    }
}

VstIntPtr Lv2Effect::answerText(VstInt32 opcode, VstInt32 index, char* buffer) {
    const Lv2Parameter* const parameter = parameterAt(index);
    switch (opcode) {
    case effGetEffectName:
    case effGetProductString:
        return putText(buffer, effectNameOf(bundle));
    case effGetVendorString:
        return putText(buffer, vendorOf(bundle));
    case effGetProgramName:
        return putText(buffer, programName(static_cast<VstInt32>(program)));
    case effGetProgramNameIndexed:
        return chunkProperty.empty() ? putText(buffer, programName(index)) : 0;
    case effGetParamName:
        return parameter != nullptr ? putText(buffer, parameter->name) : 0;
    case effGetParamLabel:
        return parameter != nullptr ? putText(buffer, parameter->unit) : 0;
    case effGetParamDisplay:
        return parameter != nullptr
                   ? putText(buffer, parameter->display(player.number(parameter->port)))
                   : 0;
    default:
        return 0;
    }
}

// --- Parameters ---

const Lv2Parameter* Lv2Effect::parameterAt(VstInt32 index) const {
    const bool exists = index >= 0 && index < record.numParams;
    return exists ? &parameters[static_cast<std::size_t>(index)] : nullptr;
}

std::optional<VstInt32> Lv2Effect::indexOfPort(std::uint32_t port) const {
    const auto found = std::ranges::find(parameters, port, &Lv2Parameter::port);
    if (found == parameters.end())
        return std::nullopt;
    return static_cast<VstInt32>(found - parameters.begin());
}

void Lv2Effect::setParameter(VstInt32 index, float value) {
    if (const Lv2Parameter* const parameter = parameterAt(index))
        player.setNumber(parameter->port, parameter->numberOf(value));
}

float Lv2Effect::getParameter(VstInt32 index) const {
    const Lv2Parameter* const parameter = parameterAt(index);
    return parameter != nullptr ? parameter->valueOf(player.number(parameter->port)) : 0.0F;
}

VstIntPtr Lv2Effect::setParameterText(VstInt32 index, const char* text) {
    const Lv2Parameter* const parameter = parameterAt(index);
    if (parameter == nullptr || text == nullptr) // no text: can it be done at all?
        return parameter != nullptr ? 1 : 0;
    const auto number = parameter->read(text);
    if (number)
        player.setNumber(parameter->port, *number);
    return number ? 1 : 0;
}

VstIntPtr Lv2Effect::describeParameter(VstInt32 index, VstParameterProperties& properties) const {
    const Lv2Parameter* const parameter = parameterAt(index);
    if (parameter == nullptr || parameter->kind != Lv2Parameter::Kind::toggle)
        return 0;
    describeSwitch(properties, parameter->name);
    return 1;
}

// --- Programs and state ---

void Lv2Effect::setProgram(VstIntPtr number) {
    if (number < 0 || number >= static_cast<VstIntPtr>(programs.size()))
        return;
    program = number;
    const auto numbers = bundle.preset(programs[static_cast<std::size_t>(number)]);
    for (const Lv2Parameter& parameter : parameters)
        if (const auto found = numbers.find(parameter.symbol); found != numbers.end())
            player.setNumber(parameter.port, found->second);
}

std::string Lv2Effect::programName(VstInt32 index) {
    if (!chunkProperty.empty()) {
        const auto bank = EffectBank::in(chunk(), record.uniqueID);
        return bank ? bank->presets.at(bank->current.value_or(0)).name().data() : "";
    }
    const bool exists = index >= 0 && index < static_cast<VstInt32>(programs.size());
    return exists ? programs[static_cast<std::size_t>(index)] : "";
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

VstIntPtr Lv2Effect::setChunk(std::span<const std::byte> bytes) {
    if (chunkProperty.empty())
        return 0;
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
        return 0;
    }
    showBank(player.save()[chunkProperty].value); // what it has made of it
    return 1;
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

VstIntPtr Lv2Effect::openEditor(void* parent) {
    if (!(record.flags & effFlagsHasEditor))
        return 0;
    editor.reset();
    Lv2EditorListener& self = *this;
    try {
        editor = std::make_unique<Lv2Editor>(bundle, player,
                                             reinterpret_cast<std::uintptr_t>(parent), self);
    } catch (const PluginError&) {
        return 0;
    }
    if (!editor->isOpen())
        editor.reset();
    return editor ? 1 : 0;
}

const ERect* Lv2Effect::editorRectangle() {
    const auto size = editor ? editor->size() : std::nullopt;
    if (!size)
        return nullptr;
    rectangle = {0, 0, static_cast<VstInt16>(size->second), static_cast<VstInt16>(size->first)};
    return &rectangle;
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

VstIntPtr Lv2Effect::tellHost(VstInt32 opcode, VstInt32 index, VstIntPtr value, float opt) {
    return host != nullptr ? host(&record, opcode, index, value, nullptr, opt) : 0;
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
