// A CLAP effect that plays what its host has told it: in the first frames of each block the
// number of input and output ports, the most frames that a block may have, those that it
// has, those that have been before, how often it has been called back on the main thread,
// for which it asks when it is activated, and the sample rate. It is not activated twice.
#include <clap/entry.h>
#include <clap/ext/audio-ports.h>
#include <clap/plugin-factory.h>
#include <clap/plugin-features.h>
#include <clap/plugin.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

struct Plugin {
    clap_plugin record{};
    const clap_host* host = nullptr;
    std::uint32_t mostFrames = 0;
    int calledBack = 0;
    double rate = 0.0;
    bool active = false;
};

Plugin& of(const clap_plugin* plugin) {
    return *static_cast<Plugin*>(plugin->plugin_data);
}

bool describePort(const clap_plugin*, std::uint32_t index, bool, clap_audio_port_info* info) {
    if (index != 0)
        return false;
    *info = {};
    info->in_place_pair = CLAP_INVALID_ID;
    info->flags = CLAP_AUDIO_PORT_IS_MAIN;
    info->channel_count = 1;
    info->port_type = CLAP_PORT_MONO;
    return true;
}

constexpr clap_plugin_audio_ports ports{[](const clap_plugin*, bool) -> std::uint32_t { return 1; },
                                        describePort};

bool activate(const clap_plugin* plugin, double rate, std::uint32_t, std::uint32_t most) {
    Plugin& self = of(plugin);
    if (self.active)
        return false;
    self.active = true;
    self.rate = rate;
    self.mostFrames = most;
    self.host->request_callback(self.host);
    return true;
}

clap_process_status process(const clap_plugin* plugin, const clap_process* cycle) {
    const std::array told{static_cast<float>(cycle->audio_inputs_count),
                          static_cast<float>(cycle->audio_outputs_count),
                          static_cast<float>(of(plugin).mostFrames),
                          static_cast<float>(cycle->frames_count),
                          static_cast<float>(cycle->steady_time),
                          static_cast<float>(of(plugin).calledBack),
                          static_cast<float>(of(plugin).rate)};
    std::copy_n(told.begin(), std::min<std::size_t>(told.size(), cycle->frames_count),
                cycle->audio_outputs[0].data32[0]);
    return CLAP_PROCESS_CONTINUE;
}

const void* extension(const clap_plugin*, const char* id) {
    return std::strcmp(id, CLAP_EXT_AUDIO_PORTS) == 0 ? &ports : nullptr;
}

const char* features[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, nullptr};
const clap_plugin_descriptor descriptor{
    CLAP_VERSION, "mirelon.test.told", "Told", "Mirelon", "", "", "", "1.0", "", features};

const clap_plugin* create(const clap_plugin_factory*, const clap_host* host, const char*) {
    auto* const made = new Plugin;
    made->host = host;
    made->record = {&descriptor,
                    made,
                    [](const clap_plugin*) { return true; },
                    [](const clap_plugin* plugin) { delete &of(plugin); },
                    activate,
                    [](const clap_plugin* plugin) { of(plugin).active = false; },
                    [](const clap_plugin*) { return true; },
                    [](const clap_plugin*) {},
                    [](const clap_plugin*) {},
                    process,
                    extension,
                    [](const clap_plugin* plugin) { ++of(plugin).calledBack; }};
    return &made->record;
}

constexpr clap_plugin_factory factory{[](const clap_plugin_factory*) -> std::uint32_t { return 1; },
                                      [](const clap_plugin_factory*, std::uint32_t index) {
                                          return index == 0 ? &descriptor : nullptr;
                                      },
                                      create};

} // namespace

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{
    CLAP_VERSION, [](const char*) { return true; }, [] {},
    [](const char* id) -> const void* {
        return std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
    }};
