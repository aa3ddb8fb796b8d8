// A small CLAP plug-in that is right in everything the validator looks at, or wrong in
// the one thing that the environment variable MIRELON_DEFECT names.
#include "tests/validator/brokenclaps/plugin.h"

#include "tests/validator/brokenclaps/parameters.h"
#include "tests/validator/brokenclaps/state.h"

#include <algorithm>
#include <array>
#include <clap/entry.h>
#include <clap/ext/audio-ports.h>
#include <clap/ext/gui.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

namespace mirelon::test::brokenclaps {

namespace {

// --- Audio ports ---

std::uint32_t portCount(const clap_plugin*, bool) {
    return 1;
}

bool describePort(const clap_plugin*, std::uint32_t index, bool isInput,
                  clap_audio_port_info* info) {
    if (index != 0)
        return false;
    *info = {};
    info->id = isInput ? 0 : 1;
    info->in_place_pair = CLAP_INVALID_ID;
    info->flags = CLAP_AUDIO_PORT_IS_MAIN;
    info->channel_count = 2;
    info->port_type = CLAP_PORT_STEREO;
    return true;
}

constexpr clap_plugin_audio_ports ports{portCount, describePort};

// --- A window ---

// Made, and never put into the host's.
constexpr clap_plugin_gui refusedWindow{
    [](const clap_plugin*, const char*, bool) { return true; },
    [](const clap_plugin*, const char**, bool*) { return false; },
    [](const clap_plugin*, const char*, bool) { return true; },
    [](const clap_plugin*) {},
    [](const clap_plugin*, double) { return false; },
    [](const clap_plugin*, std::uint32_t*, std::uint32_t*) { return false; },
    [](const clap_plugin*) { return false; },
    [](const clap_plugin*, clap_gui_resize_hints*) { return false; },
    [](const clap_plugin*, std::uint32_t*, std::uint32_t*) { return false; },
    [](const clap_plugin*, std::uint32_t, std::uint32_t) { return false; },
    [](const clap_plugin*, const clap_window*) { return false; },
    [](const clap_plugin*, const clap_window*) { return false; },
    [](const clap_plugin*, const char*) {},
    [](const clap_plugin*) { return false; },
    [](const clap_plugin*) { return false; }};

// --- The instance itself ---

template <typename Extension>
const Extension* hostExtension(const clap_host* host, const char* id) {
    return static_cast<const Extension*>(host->get_extension(host, id));
}

bool init(const clap_plugin* plugin) {
    transcript.note("init", 0);
    const clap_host* const host = of(plugin).host;
    if (hasDefect("needs-host-params"))
        hostExtension<clap_host_params>(host, CLAP_EXT_PARAMS)->request_flush(host);
    if (hasDefect("needs-host-state"))
        hostExtension<clap_host_state>(host, CLAP_EXT_STATE)->mark_dirty(host);
    clap_id timer = 0;
    if (hasDefect("needs-host-timers"))
        hostExtension<clap_host_timer_support>(host, CLAP_EXT_TIMER_SUPPORT)
            ->register_timer(host, 1000, &timer);
    return true;
}

void destroy(const clap_plugin* plugin) {
    transcript.note("destroy", 0);
    std::erase(living, &of(plugin));
    delete &of(plugin);
}

// What sound cards run at, and what files have.
constexpr std::array rates{8000.0,  11025.0, 16000.0,  22050.0,  32000.0,  44100.0, 48000.0,
                           88200.0, 96000.0, 176400.0, 192000.0, 384000.0, 768000.0};

bool activate(const clap_plugin* plugin, double rate, std::uint32_t least, std::uint32_t most) {
    transcript.note("activate", 0, rate, least, most);
    Plugin& self = of(plugin);
    if (std::ranges::find(rates, rate) == rates.end())
        return false;
    if (hasDefect("second-block-size-refused") && self.mostFrames != 0 && self.mostFrames != most)
        return false;
    if (hasDefect("activation-forgets"))
        self.values = initial;
    self.mostFrames = most;
    self.rate = rate;
    self.memory = {};
    self.active = true;
    return true;
}

void deactivate(const clap_plugin* plugin) {
    transcript.note("deactivate", 0);
    of(plugin).active = false;
}

bool startProcessing(const clap_plugin* plugin) {
    transcript.note("start_processing", 0);
    Plugin& self = of(plugin);
    allocateIf("start-allocates");
    self.processing =
        (++self.starts < 4 || !hasDefect("starts-run-out")) && !hasDefectNow("start-refused");
    return self.processing;
}

void stopProcessing(const clap_plugin* plugin) {
    transcript.note("stop_processing", 0);
    of(plugin).processing = false;
}

void reset(const clap_plugin* plugin) {
    transcript.note("reset", 0);
    Plugin& self = of(plugin);
    if (!hasDefect("reset-keeps-sound"))
        self.memory = {};
    if (hasDefect("reset-forgets"))
        self.values = initial;
}

clap_process_status process(const clap_plugin* plugin, const clap_process* cycle) {
    Plugin& self = of(plugin);
    allocateIf("process-allocates");
    if (!self.active || !self.processing || cycle->frames_count > self.mostFrames)
        std::abort(); // no host does that
    // Sounds otherwise at each rate.
    const auto feedback = static_cast<float>(std::min(12000.0 / self.rate, 0.5));
    Events events(self, cycle->in_events, Way::process);
    float** const in = cycle->audio_inputs[0].data32;
    for (std::size_t channel = 0; channel < self.memory.size(); ++channel)
        transcript.note("process", 0, std::as_bytes(std::span(in[channel], cycle->frames_count)));
    float** const out = cycle->audio_outputs[0].data32;
    for (std::uint32_t frame = 0; frame < cycle->frames_count; ++frame) {
        events.applyUntil(frame);
        for (std::size_t c = 0; c < self.memory.size(); ++c) {
            self.memory[c] =
                in[c][frame] * static_cast<float>(self.at(gain)) + feedback * self.memory[c];
            out[c][frame] = self.memory[c];
        }
    }
    if (hasDefect("events-written-to-buffer"))
        for (std::uint32_t i = 0; i < cycle->in_events->size(cycle->in_events); ++i)
            out[0][cycle->in_events->get(cycle->in_events, i)->time] = 0.0F;
    events.applyUntil(everyTime);
    fill(cycle->out_events, self);
    const bool refused =
        hasDefect("process-error") || hasDefectNow("process-error") ||
        (hasDefect("events-refused") && cycle->in_events->size(cycle->in_events) > 0);
    return refused ? CLAP_PROCESS_ERROR : CLAP_PROCESS_CONTINUE;
}

const void* extension(const clap_plugin*, const char* id) {
    transcript.note("get_extension", 0, id);
    if (std::strcmp(id, CLAP_EXT_AUDIO_PORTS) == 0)
        return &ports;
    const std::string_view name(id);
    if (name == CLAP_EXT_PARAMS ||
        (hasDefect("extension-prefix") && name.starts_with(CLAP_EXT_PARAMS)))
        return &params;
    if (std::strcmp(id, CLAP_EXT_STATE) == 0)
        return &stateFunctions;
    if (std::strcmp(id, CLAP_EXT_GUI) == 0 && hasDefect("window-refused"))
        return &refusedWindow;
    return nullptr;
}

void onMainThread(const clap_plugin*) {
    transcript.note("on_main_thread", 0);
}

// --- The file ---

const char* features[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, nullptr};
const clap_plugin_descriptor descriptor{
    CLAP_VERSION, "mirelon.test.clap", "Test", "Mirelon", "", "", "", "1.0", "", features};

std::uint32_t pluginCount(const clap_plugin_factory*) {
    return 1;
}

const clap_plugin_descriptor* descriptorAt(const clap_plugin_factory*, std::uint32_t index) {
    return index == 0 ? &descriptor : nullptr;
}

const clap_plugin* create(const clap_plugin_factory*, const clap_host* host, const char*) {
    living.push_back(new Plugin(host));
    return &living.back()->record;
}

constexpr clap_plugin_factory factory{pluginCount, descriptorAt, create};

int users = 0;
bool wasLeft = false;

bool initFile(const char*) {
    transcript.note("entry init", 0);
    if (hasDefect("init-once") && wasLeft)
        return false;
    ++users;
    return true;
}

void leaveFile() {
    users = hasDefect("users-uncounted") ? 0 : users - 1;
    wasLeft = true;
    transcript.note("entry deinit", 0);
    if (users <= 0)
        transcript.write();
}

const void* factoryOf(const char* id) {
    return users > 0 && std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
}

} // namespace

Plugin::Plugin(const clap_host* host)
    : record{&descriptor,     this,           init,  destroy, activate,  deactivate,
             startProcessing, stopProcessing, reset, process, extension, onMainThread}
    , host(host) {}

} // namespace mirelon::test::brokenclaps

using namespace mirelon::test::brokenclaps;

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{CLAP_VERSION, initFile, leaveFile,
                                                          factoryOf};
