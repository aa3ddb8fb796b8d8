#include "tests/formats/lv2/lv2host.h"

#include <array>
#include <cstring>
#include <dlfcn.h>
#include <lv2/atom/util.h>
#include <lv2/presets/presets.h>
#include <stdexcept>

namespace mirelon::hosting {

namespace {

struct FreeNode {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Node = std::unique_ptr<LilvNode, FreeNode>;

Node uriNode(LilvWorld* world, const char* uri) {
    return Node(lilv_new_uri(world, uri));
}

struct FreeNodes {
    void operator()(LilvNodes* nodes) const { lilv_nodes_free(nodes); }
};
using Nodes = std::unique_ptr<LilvNodes, FreeNodes>;

// The presets of a plug-in by label.
template <typename Take>
void forEachPreset(const Lv2Bundle& bundle, Take take) {
    LilvWorld* const world = bundle.world();
    const Nodes presets(
        lilv_plugin_get_related(bundle.plugin(), uriNode(world, LV2_PRESETS__Preset).get()));
    const Node label = uriNode(world, LILV_NS_RDFS "label");
    LILV_FOREACH(nodes, i, presets.get()) {
        const LilvNode* const preset = lilv_nodes_get(presets.get(), i);
        lilv_world_load_resource(world, preset);
        const Node name(lilv_world_get(world, preset, label.get(), nullptr));
        if (name != nullptr)
            take(*preset, std::string(lilv_node_as_string(name.get())));
    }
}

LV2_State_Status storeProperty(LV2_State_Handle handle, std::uint32_t key, const void* value,
                               std::size_t size, std::uint32_t type, std::uint32_t flags) {
    const auto* const bytes = static_cast<const std::byte*>(value);
    (*static_cast<std::map<std::uint32_t, std::pair<std::uint32_t, Lv2Property>>*>(handle))[key] = {
        type, {{bytes, bytes + size}, {}, flags}};
    return LV2_STATE_SUCCESS;
}

struct Retrieval {
    Lv2Numbers& numbers;
    const Lv2State& state;
};

const void* retrieveProperty(LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                             std::uint32_t* type, std::uint32_t* flags) {
    const auto& retrieval = *static_cast<Retrieval*>(handle);
    for (const auto& [uri, property] : retrieval.state)
        if (retrieval.numbers.number(uri) == key) {
            *size = property.value.size();
            *type = retrieval.numbers.number(property.type);
            *flags = property.flags;
            return property.value.data();
        }
    return nullptr;
}

} // namespace

LV2_URID Lv2Numbers::number(const std::string& uri) {
    const std::lock_guard held(access);
    return numbers.emplace(uri, static_cast<LV2_URID>(numbers.size() + 1)).first->second;
}

std::string Lv2Numbers::uri(LV2_URID wanted) {
    const std::lock_guard held(access);
    for (const auto& [uri, number] : numbers)
        if (number == wanted)
            return uri;
    return {};
}

// --- Bundle ---

Lv2Bundle::Lv2Bundle(const std::filesystem::path& bundle, const std::string& uri)
    : all(lilv_world_new()) {
    lilv_world_load_specifications(all.get());
    lilv_world_load_plugin_classes(all.get());
    const Node folder(lilv_new_file_uri(all.get(), nullptr, (bundle / "").c_str()));
    lilv_world_load_bundle(all.get(), folder.get());
    const Node name = uriNode(all.get(), uri.c_str());
    found = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(all.get()), name.get());
    if (found == nullptr)
        throw std::runtime_error(bundle.string() + ": no plug-in " + uri);
}

Lv2Bundle::~Lv2Bundle() = default;

std::uint32_t Lv2Bundle::portNumber(const std::string& symbol) const {
    const Node name(lilv_new_string(all.get(), symbol.c_str()));
    const LilvPort* const port = lilv_plugin_get_port_by_symbol(found, name.get());
    if (port == nullptr)
        throw std::runtime_error("there is no port " + symbol);
    return lilv_port_get_index(found, port);
}

std::filesystem::path Lv2Bundle::windowBinary() const {
    LilvUIs* const windows = lilv_plugin_get_uis(found);
    std::filesystem::path file;
    LILV_FOREACH(uis, i, windows) {
        char* const path = lilv_file_uri_parse(
            lilv_node_as_uri(lilv_ui_get_binary_uri(lilv_uis_get(windows, i))), nullptr);
        file = path;
        lilv_free(path);
    }
    lilv_uis_free(windows);
    return file;
}

std::vector<std::string> Lv2Bundle::presets() const {
    std::vector<std::string> labels;
    forEachPreset(*this, [&](const LilvNode& /*preset*/, const std::string& label) {
        labels.push_back(label);
    });
    return labels;
}

std::map<std::string, float> Lv2Bundle::preset(const std::string& wanted) const {
    std::map<std::string, float> values;
    forEachPreset(*this, [&](const LilvNode& preset, const std::string& label) {
        if (label != wanted)
            return;
        LilvState* const state = lilv_state_new_from_world(all.get(), given.map(), &preset);
        lilv_state_emit_port_values(
            state,
            [](const char* symbol, void* into, const void* value, std::uint32_t /*size*/,
               std::uint32_t /*type*/) {
                (*static_cast<std::map<std::string, float>*>(into))[symbol] =
                    *static_cast<const float*>(value);
            },
            &values);
        lilv_state_free(state);
    });
    return values;
}

// --- Instance ---

Lv2Instance::Lv2Instance(const Lv2Bundle& bundle_, double rate, Lv2Features features)
    : bundle(bundle_)
    , messages(atomRoom / 8)
    , notifications(atomRoom / 8) {
    const LV2_Feature map{LV2_URID__map, bundle.numbers().map()};
    const LV2_Feature* const list[] = {features == Lv2Features::all ? &map : nullptr, nullptr};
    instance = lilv_plugin_instantiate(bundle.plugin(), rate, list);
    if (instance == nullptr)
        throw std::runtime_error("the plug-in makes no instance");
    const std::uint32_t count = lilv_plugin_get_num_ports(bundle.plugin());
    controls.resize(count);
    for (std::uint32_t port = 0; port < count; ++port)
        kinds.push_back(kindOf(port));
    std::vector<float> minima(count);
    std::vector<float> maxima(count);
    lilv_plugin_get_port_ranges_float(bundle.plugin(), minima.data(), maxima.data(),
                                      controls.data());
    for (std::uint32_t port = 0; port < count; ++port)
        switch (kinds[port]) {
        case PortKind::controlIn:
        case PortKind::controlOut:
            connect(port, &controls[port]);
            break;
        case PortKind::atomIn:
            connect(port, messages.data());
            break;
        case PortKind::atomOut:
            connect(port, notifications.data());
            break;
        default:
            break;
        }
    lilv_instance_activate(instance);
}

Lv2Instance::~Lv2Instance() {
    lilv_instance_deactivate(instance);
    lilv_instance_free(instance);
}

Lv2Instance::PortKind Lv2Instance::kindOf(std::uint32_t number) const {
    LilvWorld* const world = bundle.world();
    const LilvPort* const port = lilv_plugin_get_port_by_index(bundle.plugin(), number);
    const auto is = [&](const char* uri) {
        return lilv_port_is_a(bundle.plugin(), port, uriNode(world, uri).get());
    };
    const bool input = is(LV2_CORE__InputPort);
    if (is(LV2_CORE__AudioPort))
        return input ? PortKind::audioIn : PortKind::audioOut;
    if (is(LV2_CORE__ControlPort))
        return input ? PortKind::controlIn : PortKind::controlOut;
    return input ? PortKind::atomIn : PortKind::atomOut;
}

float& Lv2Instance::control(const std::string& symbol) {
    return controls[bundle.portNumber(symbol)];
}

void Lv2Instance::send(std::span<const std::byte> atom) {
    waiting.emplace_back(atom.begin(), atom.end());
}

std::span<std::byte> Lv2Instance::messageBytes() noexcept {
    return std::as_writable_bytes(std::span(messages));
}

void Lv2Instance::prepareSequences() {
    const LV2_URID type = bundle.numbers().number(LV2_ATOM__Sequence);
    auto* const input = reinterpret_cast<LV2_Atom_Sequence*>(messages.data());
    input->atom = {sizeof(LV2_Atom_Sequence_Body), type};
    input->body = {0, 0};
    for (const auto& atom : waiting) {
        std::vector<std::byte> event(8); // the time
        event.insert(event.end(), atom.begin(), atom.end());
        lv2_atom_sequence_append_event(input, atomRoom - sizeof(LV2_Atom),
                                       reinterpret_cast<const LV2_Atom_Event*>(event.data()));
    }
    waiting.clear();
    auto* const output = reinterpret_cast<LV2_Atom_Sequence*>(notifications.data());
    output->atom = {notifyRoom, bundle.numbers().number(LV2_ATOM__Chunk)};
}

void Lv2Instance::readNotifications() {
    notified.clear();
    const auto* const output = reinterpret_cast<const LV2_Atom_Sequence*>(notifications.data());
    if (output->atom.type != bundle.numbers().number(LV2_ATOM__Sequence))
        return;
    LV2_ATOM_SEQUENCE_FOREACH(output, event) {
        const auto* const bytes = reinterpret_cast<const std::byte*>(&event->body);
        notified.emplace_back(bytes, bytes + lv2_atom_total_size(&event->body));
    }
}

void Lv2Instance::run(float* const* inputs, float* const* outputs, std::uint32_t frames) {
    for (std::uint32_t port = 0; port < kinds.size(); ++port) {
        if (kinds[port] == PortKind::audioIn)
            connect(port, *inputs++);
        if (kinds[port] == PortKind::audioOut)
            connect(port, *outputs++);
    }
    prepareSequences();
    runOnly(frames);
    readNotifications();
}

const LV2_State_Interface& Lv2Instance::stateInterface() const {
    const void* const data = lilv_instance_get_extension_data(instance, LV2_STATE__interface);
    if (data == nullptr)
        throw std::runtime_error("the plug-in has no state");
    return *static_cast<const LV2_State_Interface*>(data);
}

Lv2State Lv2Instance::save() {
    std::map<std::uint32_t, std::pair<std::uint32_t, Lv2Property>> stored;
    stateInterface().save(lilv_instance_get_handle(instance), storeProperty, &stored, 0, nullptr);
    Lv2State state;
    for (auto& [key, typed] : stored) {
        typed.second.type = bundle.numbers().uri(typed.first);
        state[bundle.numbers().uri(key)] = typed.second;
    }
    return state;
}

LV2_State_Status Lv2Instance::restore(const Lv2State& state) {
    Retrieval retrieval{bundle.numbers(), state};
    return stateInterface().restore(lilv_instance_get_handle(instance), retrieveProperty,
                                    &retrieval, 0, nullptr);
}

// --- Window ---

void Lv2Window::Unload::operator()(void* library) const {
    dlclose(library);
}

Lv2Window::Lv2Window(const Lv2Bundle& bundle, const Options& options)
    : numbers(bundle.numbers())
    , library(dlopen(bundle.windowBinary().c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (library == nullptr)
        throw std::runtime_error(dlerror());
    const auto entry =
        reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library.get(), "lv2ui_descriptor"));
    descriptor = entry != nullptr ? entry(0) : nullptr;
    if (descriptor == nullptr)
        throw std::runtime_error("the window's binary has no descriptor");
    idling =
        static_cast<const LV2UI_Idle_Interface*>(descriptor->extension_data(LV2_UI__idleInterface));

    touching = {this, [](LV2UI_Feature_Handle self, std::uint32_t port, bool grabbed) {
                    std::string& touches = static_cast<Lv2Window*>(self)->touches;
                    touches += grabbed ? 'b' : 'e';
                    touches += std::to_string(port);
                }};
    resizing = {this, [](LV2UI_Feature_Handle self, int width, int height) {
                    static_cast<Lv2Window*>(self)->sizes.emplace_back(width, height);
                    return 0;
                }};
    const float factor = options.scale.value_or(1.0F);
    const LV2_Options_Option optionList[] = {{LV2_OPTIONS_INSTANCE, 0,
                                              numbers.number(LV2_UI__scaleFactor), sizeof factor,
                                              numbers.number(LV2_ATOM__Float), &factor},
                                             {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    const LV2_Feature map{LV2_URID__map, numbers.map()};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an X11 window is a number
    const LV2_Feature parent{LV2_UI__parent, reinterpret_cast<void*>(options.parent)};
    const LV2_Feature touch{LV2_UI__touch, &touching};
    const LV2_Feature resize{LV2_UI__resize, &resizing};
    const LV2_Feature given{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(optionList)};
    std::vector<const LV2_Feature*> features{&touch, &resize};
    if (options.map)
        features.push_back(&map);
    if (options.parent != 0)
        features.push_back(&parent);
    if (options.scale)
        features.push_back(&given);
    features.push_back(nullptr);
    handle = descriptor->instantiate(
        descriptor, lilv_node_as_uri(lilv_plugin_get_uri(bundle.plugin())),
        bundle.windowBinary().parent_path().c_str(),
        [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
           const void* buffer) {
            static_cast<Lv2Window*>(self)->note(port, size, protocol, buffer);
        },
        this, &widget, features.data());
}

Lv2Window::~Lv2Window() {
    close();
}

void Lv2Window::close() {
    if (handle != nullptr)
        descriptor->cleanup(handle);
    handle = nullptr;
}

std::uint32_t Lv2Window::child() const noexcept {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(widget));
}

void Lv2Window::note(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                     const void* buffer) {
    Lv2Write write{port, std::nullopt, {}};
    const auto* const bytes = static_cast<const std::byte*>(buffer);
    if (protocol == 0 && size == sizeof(float)) {
        float number = 0.0F;
        std::memcpy(&number, buffer, sizeof number);
        write.number = number;
    } else if (protocol == numbers.number(LV2_ATOM__eventTransfer)) {
        write.message.assign(bytes, bytes + size);
    }
    writes.push_back(write);
    if (onWrite)
        onWrite(write);
}

void Lv2Window::tell(std::uint32_t port, float number) {
    tellRaw(port, sizeof number, 0, &number);
}

void Lv2Window::tell(std::uint32_t port, std::span<const std::byte> atom) {
    tellRaw(port, static_cast<std::uint32_t>(atom.size()), numbers.number(LV2_ATOM__eventTransfer),
            atom.data());
}

void Lv2Window::tellRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                        const void* bytes) {
    descriptor->port_event(handle, port, size, format, bytes);
}

int Lv2Window::idle() {
    return idling->idle(handle);
}

} // namespace mirelon::hosting
