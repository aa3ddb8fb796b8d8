#include "hosting/lv2instance.h"

#include "hosting/hostingerror.h"
#include "hosting/lv2nodes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>
#include <lv2/resize-port/resize-port.h>
#include <utility>

namespace mirelon::hosting {

namespace {

constexpr std::uint32_t usualAtomRoom = 8192;
constexpr std::size_t queueRoom = 64U * 1024U;

constexpr std::array offered{
    LV2_URID__map,
    LV2_URID__unmap,
    LV2_OPTIONS__options,
    LV2_BUF_SIZE__boundedBlockLength,
    LV2_CORE__isLive,
    LV2_CORE__hardRTCapable,
    LV2_STATE__loadDefaultState,
};

using Stored = std::map<std::uint32_t, std::pair<std::uint32_t, Lv2Property>>;

LV2_State_Status storeProperty(LV2_State_Handle handle, std::uint32_t key, const void* value,
                               std::size_t size, std::uint32_t type, std::uint32_t flags) {
    const auto* const bytes = static_cast<const std::byte*>(value);
    (*static_cast<Stored*>(handle))[key] = {type, {{bytes, bytes + size}, {}, flags}};
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

LV2_Atom_Sequence* sequenceIn(std::vector<std::uint64_t>& buffer) {
    return reinterpret_cast<LV2_Atom_Sequence*>(buffer.data());
}

} // namespace

bool Lv2Instance::offers(const std::string& feature) {
    return std::ranges::find(offered, feature) != offered.end();
}

void Lv2Instance::requireFeaturesOf(const Lv2Bundle& bundle) {
    std::string lacking;
    for (const std::string& feature : bundle.requiredFeatures())
        if (!offers(feature))
            lacking += (lacking.empty() ? "" : ", ") + feature;
    if (!lacking.empty())
        throw PluginError(bundle.uri() + ": needs what is not offered here: " + lacking);
}

Lv2Instance::Lv2Instance(const Lv2Bundle& bundle_, double rate_, Lv2Features features,
                         std::int32_t largestBlock_)
    : bundle(bundle_)
    , sequenceType(bundle.numbers().number(LV2_ATOM__Sequence))
    , chunkType(bundle.numbers().number(LV2_ATOM__Chunk))
    , largestBlock(largestBlock_)
    , rate(static_cast<float>(rate_))
    , toPlugin(queueRoom)
    , toHost(queueRoom) {
    requireFeaturesOf(bundle);
    makePorts();

    Lv2Numbers& numbers = bundle.numbers();
    static constexpr std::int32_t smallestBlock = 0;
    const LV2_URID integer = numbers.number(LV2_ATOM__Int);
    const auto option = [&](const char* key, LV2_URID type, const void* value) {
        options.push_back({LV2_OPTIONS_INSTANCE, 0, numbers.number(key), 4, type, value});
    };
    option(LV2_BUF_SIZE__minBlockLength, integer, &smallestBlock);
    option(LV2_BUF_SIZE__maxBlockLength, integer, &largestBlock);
    option(LV2_PARAMETERS__sampleRate, numbers.number(LV2_ATOM__Float), &rate);
    options.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});

    const LV2_Feature map{LV2_URID__map, numbers.map()};
    const LV2_Feature unmap{LV2_URID__unmap, numbers.unmap()};
    const LV2_Feature given{LV2_OPTIONS__options, options.data()};
    const LV2_Feature bounded{LV2_BUF_SIZE__boundedBlockLength, nullptr};
    const std::array<const LV2_Feature*, 5> all{&map, &unmap, &given, &bounded, nullptr};
    const std::array<const LV2_Feature*, 1> none{nullptr};
    instance = lilv_plugin_instantiate(bundle.plugin(), rate_,
                                       features == Lv2Features::all ? all.data() : none.data());
    if (instance == nullptr)
        throw PluginError(bundle.uri() + ": the plug-in made no instance");
    connectPorts();
    lilv_instance_activate(instance);
}

Lv2Instance::~Lv2Instance() {
    lilv_instance_deactivate(instance);
    lilv_instance_free(instance);
}

void Lv2Instance::makePorts() {
    const std::uint32_t count = lilv_plugin_get_num_ports(bundle.plugin());
    std::vector<float> minima(count);
    std::vector<float> maxima(count);
    std::vector<float> defaults(count);
    lilv_plugin_get_port_ranges_float(bundle.plugin(), minima.data(), maxima.data(),
                                      defaults.data());
    for (std::uint32_t number = 0; number < count; ++number) {
        Port port{kindOf(number)};
        // Data files may leave a default out.
        port.number = std::isnan(defaults[number])
                          ? (std::isnan(minima[number]) ? 0.0F : minima[number])
                          : defaults[number];
        if (port.kind == PortKind::atomIn || port.kind == PortKind::atomOut)
            port.sequence.resize(roomOf(lilv_plugin_get_port_by_index(bundle.plugin(), number)) /
                                 sizeof port.sequence[0]);
        ports.push_back(std::move(port));
    }
    LilvWorld* const world = bundle.world();
    const LilvPort* const designated = lilv_plugin_get_port_by_designation(
        bundle.plugin(), lv2Uri(world, LV2_CORE__InputPort).get(),
        lv2Uri(world, LV2_CORE__control).get());
    if (designated != nullptr)
        controlPort = lilv_port_get_index(bundle.plugin(), designated);
    for (std::uint32_t number = 0; number < count && !controlPort; ++number)
        if (is(number, PortKind::atomIn))
            controlPort = number;
    if (controlPort && !is(*controlPort, PortKind::atomIn))
        controlPort.reset();
}

// Bytes, as the port asks for them.
std::uint32_t Lv2Instance::roomOf(const LilvPort* port) const {
    LilvWorld* const world = bundle.world();
    const Lv2Node size(
        lilv_port_get(bundle.plugin(), port, lv2Uri(world, LV2_RESIZE_PORT__minimumSize).get()));
    const int wanted =
        size != nullptr && lilv_node_is_int(size.get()) ? lilv_node_as_int(size.get()) : 0;
    constexpr int most = 1 << 20;
    return std::max(usualAtomRoom, static_cast<std::uint32_t>(std::clamp(wanted, 0, most)));
}

void Lv2Instance::connectPorts() {
    for (std::uint32_t number = 0; number < portCount(); ++number) {
        Port& port = ports[number];
        switch (port.kind) {
        case PortKind::controlIn:
        case PortKind::controlOut:
            connect(number, &port.number);
            break;
        case PortKind::atomIn:
        case PortKind::atomOut:
            connect(number, port.sequence.data());
            break;
        case PortKind::absent:
            connect(number, nullptr);
            break;
        default:
            break; // the buffers come with each run
        }
    }
}

Lv2Instance::PortKind Lv2Instance::kindOf(std::uint32_t number) const {
    LilvWorld* const world = bundle.world();
    const LilvPlugin* const plugin = bundle.plugin();
    const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, number);
    const auto isA = [&](const char* uri) {
        return lilv_port_is_a(plugin, port, lv2Uri(world, uri).get());
    };
    const bool input = isA(LV2_CORE__InputPort);
    if (isA(LV2_CORE__AudioPort))
        return input ? PortKind::audioIn : PortKind::audioOut;
    if (isA(LV2_CORE__ControlPort))
        return input ? PortKind::controlIn : PortKind::controlOut;
    if (isA(LV2_ATOM__AtomPort))
        return input ? PortKind::atomIn : PortKind::atomOut;
    if (!lilv_port_has_property(plugin, port, lv2Uri(world, LV2_CORE__connectionOptional).get()))
        throw PluginError(bundle.uri() + ": its port " +
                          lv2Text(lilv_port_get_symbol(plugin, port)) +
                          " is of a kind that is not hosted here");
    return PortKind::absent;
}

std::size_t Lv2Instance::count(PortKind kind) const {
    return static_cast<std::size_t>(std::ranges::count(ports, kind, &Port::kind));
}

float& Lv2Instance::control(const std::string& symbol) {
    return control(bundle.portNumber(symbol));
}

void Lv2Instance::send(std::span<const std::byte> atom) {
    if (controlPort)
        send(*controlPort, atom);
}

void Lv2Instance::send(std::uint32_t port, std::span<const std::byte> atom) {
    toPlugin.put(port, atom);
}

std::span<std::byte> Lv2Instance::messageBytes() noexcept {
    return controlPort ? std::as_writable_bytes(std::span(ports[*controlPort].sequence))
                       : std::span<std::byte>();
}

void Lv2Instance::prepareSequences() noexcept {
    for (Port& port : ports) {
        if (port.kind != PortKind::atomIn && port.kind != PortKind::atomOut)
            continue;
        const auto room = static_cast<std::uint32_t>(
            port.sequence.size() * sizeof port.sequence[0] - sizeof(LV2_Atom));
        LV2_Atom_Sequence* const sequence = sequenceIn(port.sequence);
        if (port.kind == PortKind::atomIn)
            *sequence = {{sizeof(LV2_Atom_Sequence_Body), sequenceType}, {0, 0}};
        else
            sequence->atom = {notifyRoom.value_or(room), chunkType};
    }
    while (const auto message = toPlugin.take()) {
        if (message->port >= ports.size() || !is(message->port, PortKind::atomIn) ||
            message->bytes.size() < sizeof(LV2_Atom))
            continue;
        // An event is its time and then the atom.
        auto& buffer = ports[message->port].sequence;
        LV2_Atom_Sequence* const sequence = sequenceIn(buffer);
        const std::size_t place = sizeof(LV2_Atom) + lv2_atom_pad_size(sequence->atom.size);
        const std::size_t size = sizeof(std::int64_t) + message->bytes.size();
        const auto bytes = std::as_writable_bytes(std::span(buffer));
        if (place + lv2_atom_pad_size(static_cast<std::uint32_t>(size)) > bytes.size())
            continue;
        std::ranges::fill(bytes.subspan(place, sizeof(std::int64_t)), std::byte{0});
        std::ranges::copy(message->bytes, bytes.subspan(place + sizeof(std::int64_t)).begin());
        sequence->atom.size = static_cast<std::uint32_t>(
            place - sizeof(LV2_Atom) + lv2_atom_pad_size(static_cast<std::uint32_t>(size)));
    }
}

void Lv2Instance::noteNotifications() noexcept {
    for (std::uint32_t number = 0; number < portCount(); ++number) {
        if (!is(number, PortKind::atomOut))
            continue;
        const LV2_Atom_Sequence* const sequence = sequenceIn(ports[number].sequence);
        const std::size_t room = ports[number].sequence.size() * sizeof(std::uint64_t);
        if (sequence->atom.type != sequenceType ||
            sequence->atom.size > room - sizeof sequence->atom)
            continue;
        const auto* const begin = reinterpret_cast<const std::byte*>(sequence);
        const std::size_t end = sizeof sequence->atom + sequence->atom.size;
        LV2_ATOM_SEQUENCE_FOREACH(sequence, event) {
            const auto* const atom = reinterpret_cast<const std::byte*>(&event->body);
            const auto at = static_cast<std::size_t>(atom - begin);
            if (at + sizeof event->body > end || event->body.size > end - at - sizeof event->body)
                break;
            toHost.put(number, {atom, lv2_atom_total_size(&event->body)});
        }
    }
}

void Lv2Instance::cycle(float* const* inputs, float* const* outputs,
                        std::uint32_t frames) noexcept {
    for (std::uint32_t port = 0; port < portCount(); ++port) {
        if (is(port, PortKind::audioIn))
            connect(port, *inputs++);
        if (is(port, PortKind::audioOut))
            connect(port, *outputs++);
    }
    prepareSequences();
    runOnly(frames);
    noteNotifications();
}

void Lv2Instance::run(float* const* inputs, float* const* outputs, std::uint32_t frames) {
    cycle(inputs, outputs, frames);
    notified.clear();
    while (const auto message = takeNotification())
        notified.emplace_back(message->bytes.begin(), message->bytes.end());
}

void Lv2Instance::restart() {
    lilv_instance_deactivate(instance);
    lilv_instance_activate(instance);
}

const LV2_State_Interface* Lv2Instance::stateInterface() const {
    return static_cast<const LV2_State_Interface*>(
        lilv_instance_get_extension_data(instance, LV2_STATE__interface));
}

bool Lv2Instance::keepsState() const {
    return stateInterface() != nullptr;
}

Lv2State Lv2Instance::save() {
    const LV2_State_Interface* const interface = stateInterface();
    if (interface == nullptr)
        return {};
    Stored stored;
    interface->save(lilv_instance_get_handle(instance), storeProperty, &stored, LV2_STATE_IS_POD,
                    nullptr);
    Lv2State state;
    for (auto& [key, typed] : stored) {
        typed.second.type = bundle.numbers().uri(typed.first);
        state[bundle.numbers().uri(key)] = typed.second;
    }
    return state;
}

LV2_State_Status Lv2Instance::restore(const Lv2State& state) {
    const LV2_State_Interface* const interface = stateInterface();
    if (interface == nullptr)
        return LV2_STATE_ERR_NO_FEATURE;
    Retrieval retrieval{bundle.numbers(), state};
    return interface->restore(lilv_instance_get_handle(instance), retrieveProperty, &retrieval, 0,
                              nullptr);
}

} // namespace mirelon::hosting
