// Stereo tools of other makers, LV2: what is installed of them.
#include "bench/groups.h"
#include "bench/material.h"

#include <benchmark/benchmark.h>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include <cmath>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace mirelon::bench {
namespace {

constexpr int blockSize = 512;
constexpr double sampleRate = 44100.0;

struct Peer {
    const char* name;
    const char* uri;
};
constexpr Peer peers[] = {
    {"x42 balance", "http://gareus.org/oss/lv2/balance"},
    {"Invada Input", "http://invadarecords.com/plugins/lv2/input"},
    {"Calf Stereo Tools", "http://calf.sourceforge.net/plugins/StereoTools"},
    {"MDA Image", "http://drobilla.net/plugins/mda/Image"},
};

LV2_URID mapUri(LV2_URID_Map_Handle, const char* uri) {
    static std::map<std::string, LV2_URID> known;
    return known.try_emplace(uri, static_cast<LV2_URID>(known.size() + 1)).first->second;
}

const char* unmapNothing(LV2_URID_Unmap_Handle, LV2_URID) {
    return "";
}

// What any of the peers asks its host for.
class Features {
  public:
    const LV2_Feature* const* list() const { return all; }

  private:
    LV2_URID_Map map{nullptr, mapUri};
    LV2_URID_Unmap unmap{nullptr, unmapNothing};
    std::int32_t frames = blockSize;
    LV2_URID integer = mapUri(nullptr, LV2_ATOM__Int);
    LV2_Options_Option options[3] = {
        {LV2_OPTIONS_INSTANCE, 0, mapUri(nullptr, LV2_BUF_SIZE__maxBlockLength), sizeof(frames),
         integer, &frames},
        {LV2_OPTIONS_INSTANCE, 0, mapUri(nullptr, LV2_BUF_SIZE__nominalBlockLength), sizeof(frames),
         integer, &frames},
        {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LV2_Feature mapFeature{LV2_URID__map, &map};
    LV2_Feature unmapFeature{LV2_URID__unmap, &unmap};
    LV2_Feature optionsFeature{LV2_OPTIONS__options, options};
    LV2_Feature boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
    const LV2_Feature* all[5] = {&mapFeature, &unmapFeature, &optionsFeature, &boundedFeature,
                                 nullptr};
};

struct Deleter {
    void operator()(LilvWorld* p) const { lilv_world_free(p); }
    void operator()(LilvNode* p) const { lilv_node_free(p); }
    void operator()(LilvInstance* p) const { lilv_instance_free(p); }
};
using World = std::unique_ptr<LilvWorld, Deleter>;
using Node = std::unique_ptr<LilvNode, Deleter>;

LilvWorld* theWorld() {
    static const World world = [] {
        World fresh(lilv_world_new());
        lilv_world_load_all(fresh.get());
        return fresh;
    }();
    return world.get();
}

const LilvPlugin* find(const char* uri) {
    const Node node(lilv_new_uri(theWorld(), uri));
    return lilv_plugins_get_by_uri(lilv_world_get_all_plugins(theWorld()), node.get());
}

// An instance with audio, its controls at their defaults, and room for what else
// it has.
class RunningPeer {
  public:
    explicit RunningPeer(const LilvPlugin* plugin)
        : audio(Material::noise, blockSize)
        , controls(lilv_plugin_get_num_ports(plugin))
        , instance(lilv_plugin_instantiate(plugin, sampleRate, features.list())) {
        if (instance == nullptr)
            return;
        lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, controls.data());
        const Node audioClass(lilv_new_uri(theWorld(), LILV_URI_AUDIO_PORT));
        const Node controlClass(lilv_new_uri(theWorld(), LILV_URI_CONTROL_PORT));
        const Node inputClass(lilv_new_uri(theWorld(), LILV_URI_INPUT_PORT));
        float* const inputs[] = {audio.leftIn.data(), audio.rightIn.data()};
        float* const outputs[] = {audio.leftOut.data(), audio.rightOut.data()};
        std::size_t nextInput = 0;
        std::size_t nextOutput = 0;
        for (std::uint32_t i = 0; i < controls.size(); ++i) {
            const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
            const bool isInput = lilv_port_is_a(plugin, port, inputClass.get());
            if (lilv_port_is_a(plugin, port, audioClass.get())) {
                std::size_t& next = isInput ? nextInput : nextOutput;
                lilv_instance_connect_port(instance.get(), i,
                                           (isInput ? inputs : outputs)[next++ % 2]);
            } else if (lilv_port_is_a(plugin, port, controlClass.get())) {
                if (std::isnan(controls[i]))
                    controls[i] = 0.0F;
                lilv_instance_connect_port(instance.get(), i, &controls[i]);
            } else {
                lilv_instance_connect_port(instance.get(), i, &events.emplace_back(isInput));
            }
        }
        lilv_instance_activate(instance.get());
    }

    explicit operator bool() const { return instance != nullptr; }

    void run() {
        for (Events& port : events)
            port.prepare();
        lilv_instance_run(instance.get(), blockSize);
    }

  private:
    // An event port's buffer: empty when read, room when written.
    struct Events {
        explicit Events(bool isInput)
            : input(isInput) {}
        void prepare() {
            sequence.atom.type = mapUri(nullptr, LV2_ATOM__Sequence);
            sequence.atom.size =
                input ? static_cast<std::uint32_t>(sizeof sequence.body) : sizeof room;
        }
        LV2_Atom_Sequence sequence{};
        std::uint8_t room[8192]{};
        bool input;
    };

    Features features;
    StereoBuffers<float> audio;
    std::vector<float> controls;
    std::list<Events> events;
    std::unique_ptr<LilvInstance, Deleter> instance;
};

void processPeer(benchmark::State& state, const LilvPlugin* plugin) {
    RunningPeer peer(plugin);
    if (!peer) {
        state.SkipWithError("cannot be instantiated");
        return;
    }
    for (int i = 0; i < 100; ++i)
        peer.run();
    for (auto _ : state)
        peer.run();
    state.SetItemsProcessed(state.iterations() * blockSize);
}

} // namespace

void registerLv2Peers() {
    for (const Peer& peer : peers)
        if (const LilvPlugin* const plugin = find(peer.uri))
            benchmark::RegisterBenchmark(
                (std::string("peer/") + peer.name).c_str(),
                [plugin](benchmark::State& state) { processPeer(state, plugin); });
}

} // namespace mirelon::bench
