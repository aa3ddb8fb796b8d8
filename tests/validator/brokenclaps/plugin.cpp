// A small CLAP plug-in that is right in everything the validator looks at, or wrong in
// the one thing that the environment variable MIRELON_DEFECT names.
#include <algorithm>
#include <array>
#include <clap/entry.h>
#include <clap/ext/audio-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>
#include <thread>
#include <vector>

namespace {

bool hasDefect(std::string_view name) {
    static const char* const chosen = std::getenv("MIRELON_DEFECT");
    return chosen != nullptr && name == chosen;
}

// Through a volatile pointer, or the compiler would see that it is for nothing.
void allocateIf(const char* defect) {
    if (!hasDefect(defect))
        return;
    void* volatile memory = std::malloc(10);
    std::free(memory);
}

constexpr std::uint32_t parameterCount = 3;
enum Place : std::uint32_t { gain, mode, tone }; // the last two change nothing
constexpr std::array<clap_id, parameterCount> identifiers{10, 20, 30};
using Values = std::array<double, parameterCount>;
constexpr Values lowest{0.0, 0.0, -12.0};
constexpr Values highest{2.0, 3.0, 12.0};
constexpr Values initial{1.0, 0.0, 0.0};

struct State {
    std::uint32_t owner = 0x50414C43;
    std::uint32_t version = 1;
    Values values{};
    std::array<std::byte, 968> unused{};
};
static_assert(sizeof(State) == 1000);

// What instances have in common, and should not.
Values sharedValues = initial;
int instances = 0;
int listings = 0;

struct Plugin {
    explicit Plugin(const clap_host* host);

    double& at(std::uint32_t place) {
        const bool shared =
            hasDefect("shared-values") || (hasDefect("shared-mode") && place == mode);
        return (shared ? sharedValues : values).at(place);
    }

    clap_plugin record;
    const clap_host* host;
    int number = instances++;
    Values values = initial;
    std::array<float, 2> memory{};
    bool active = false;
    bool processing = false;
    int starts = 0;
    std::uint32_t mostFrames = 0;
    std::thread::id maker = std::this_thread::get_id();
};

std::vector<Plugin*> living;

Plugin& of(const clap_plugin* plugin) {
    return *static_cast<Plugin*>(plugin->plugin_data);
}

std::uint32_t placeOf(clap_id id) {
    if (hasDefect("identifier-wraps"))
        return id % parameterCount;
    return static_cast<std::uint32_t>(std::ranges::find(identifiers, id) - identifiers.begin());
}

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

// --- Parameters ---

std::uint32_t countParameters(const clap_plugin*) {
    return parameterCount;
}

bool describeParameter(const clap_plugin* plugin, std::uint32_t index, clap_param_info* info) {
    if (index >= parameterCount && !hasDefect("index-unchecked"))
        return false;
    const std::uint32_t place = std::min(index, parameterCount - 1);
    *info = {};
    info->id = identifiers.at(place);
    info->flags = CLAP_PARAM_IS_AUTOMATABLE | (place == mode ? CLAP_PARAM_IS_STEPPED : 0);
    info->min_value = lowest.at(place);
    info->max_value = highest.at(place);
    info->default_value = initial.at(place);
    constexpr std::array names{"Gain", "Mode", "Tone"};
    std::strncpy(info->name, names.at(place), sizeof info->name - 1);
    if (hasDefect("name-changes"))
        std::snprintf(info->name, sizeof info->name, "Name %d", listings++);
    if (hasDefect("identifiers-twice"))
        info->id = identifiers[gain];
    if (hasDefect("identifier-of-none") && place == tone)
        info->id = CLAP_INVALID_ID;
    if (hasDefect("identifiers-per-instance"))
        info->id += static_cast<clap_id>(of(plugin).number);
    if (hasDefect("infinite-range") && place == tone)
        info->max_value = std::numeric_limits<double>::infinity();
    if (hasDefect("inverted-range") && place == tone)
        std::swap(info->min_value, info->max_value);
    if (hasDefect("default-beyond-range") && place == tone)
        info->default_value = 13.0;
    if (hasDefect("fractional-steps") && place == mode)
        info->max_value = 3.5;
    return true;
}

bool value(const clap_plugin* plugin, clap_id id, double* result) {
    Plugin& self = of(plugin);
    if (hasDefect("bound-to-thread") && self.maker != std::this_thread::get_id())
        std::abort();
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || (hasDefect("value-missing") && place == tone))
        return false;
    *result = hasDefect("value-beyond-range") ? highest.at(place) + 1.0 : self.at(place);
    return true;
}

bool textOf(const clap_plugin*, clap_id id, double number, char* text, std::uint32_t size) {
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || hasDefect("text-missing"))
        return false;
    if (place == mode)
        number = std::round(number);
    if (hasDefect("text-overflows")) {
        std::sprintf(text, "%.4f", number);
        return true;
    }
    if (hasDefect("text-without-end")) {
        std::fill_n(text, size, '1');
        return true;
    }
    const int length = std::snprintf(text, size, "%.4f", number);
    return length >= 0 && static_cast<std::uint32_t>(length) < size;
}

bool valueOf(const clap_plugin*, clap_id id, const char* text, double* number) {
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || hasDefect("text-unread"))
        return false;
    *number = std::strtod(text, nullptr);
    const double range = highest.at(place) - lowest.at(place);
    if (hasDefect("text-misread"))
        *number += range / 2.0;
    if (hasDefect("text-read-roughly"))
        *number += range / 50.0;
    return true;
}

void setValue(Plugin& self, std::uint32_t place, double number) {
    if (place >= parameterCount) {
        if (!hasDefect("unknown-set"))
            return;
        place = gain;
    }
    number = std::clamp(number, lowest.at(place), highest.at(place));
    if (hasDefect("quantised") && place == tone)
        number = std::round(number);
    self.at(place) = place == mode ? std::round(number) : number;
}

enum class Way { process, flush };

// The events up to this time, from the one that is next.
struct Events {
    Events(Plugin& plugin, const clap_input_events* list, Way way)
        : self(plugin)
        , list(list)
        , way(way)
        , count(list != nullptr ? list->size(list) : 0) {}

    void applyUntil(std::uint32_t time) {
        for (; next < count && list->get(list, next)->time <= time; ++next)
            apply(*list->get(list, next));
    }

  private:
    void apply(const clap_event_header& event) {
        const bool rightSpace =
            event.space_id == CLAP_CORE_EVENT_SPACE_ID || hasDefect("space-unchecked");
        const bool rightType = event.type == CLAP_EVENT_PARAM_VALUE || hasDefect("type-unchecked");
        if (!rightSpace || !rightType || event.size < sizeof(clap_event_param_value))
            return;
        if (way == Way::process && isLost(event))
            return;
        const auto& set = reinterpret_cast<const clap_event_param_value&>(event);
        last = event.time;
        applied = true;
        setValue(self, placeOf(set.param_id), set.value);
    }
    bool isLost(const clap_event_header& event) const {
        return hasDefect("events-ignored") || (hasDefect("first-event-only") && applied) ||
               (hasDefect("one-event-a-frame") && applied && last == event.time) ||
               (hasDefect("last-frame-lost") && count == 1 && event.time == 63);
    }

    Plugin& self;
    const clap_input_events* list;
    Way way;
    std::uint32_t count;
    std::uint32_t next = 0;
    std::uint32_t last = 0;
    bool applied = false;
};

constexpr std::uint32_t everyTime = std::numeric_limits<std::uint32_t>::max();

void flush(const clap_plugin* plugin, const clap_input_events* in, const clap_output_events*) {
    Plugin& self = of(plugin);
    allocateIf("flush-allocates");
    if ((hasDefect("flush-ignored") && !self.active) ||
        (hasDefect("flush-ignored-in-pauses") && self.active && !self.processing))
        return;
    Events(self, in, Way::flush).applyUntil(everyTime);
}

constexpr clap_plugin_params params{countParameters, describeParameter, value,
                                    textOf,          valueOf,           flush};

// --- State ---

bool save(const clap_plugin* plugin, const clap_ostream* stream) {
    State state;
    for (std::uint32_t place = 0; place < parameterCount; ++place)
        state.values.at(place) = of(plugin).at(place);
    thread_local int savings = 0;
    if (hasDefect("state-of-a-thread") && of(plugin).maker != std::this_thread::get_id())
        state.version = static_cast<std::uint32_t>(2 + savings);
    const auto* const bytes = reinterpret_cast<const std::byte*>(&state);
    for (std::size_t done = 0; done < sizeof state;) {
        const std::int64_t count = stream->write(stream, bytes + done, sizeof state - done);
        if (hasDefect("writes-once"))
            return count > 0;
        if (count <= 0)
            return hasDefect("write-errors-ignored");
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool load(const clap_plugin* plugin, const clap_istream* stream) {
    Plugin& self = of(plugin);
    State state;
    auto* const bytes = reinterpret_cast<std::byte*>(&state);
    std::size_t done = 0;
    while (done < sizeof state) {
        const std::int64_t count = stream->read(stream, bytes + done, sizeof state - done);
        if (count < 0 && hasDefect("read-errors-repeated"))
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
        if (hasDefect("reads-once"))
            break;
    }
    const bool whole = done == sizeof state;
    if (!whole && hasDefect("part-of-a-state-taken"))
        return true;
    if (!whole && !(hasDefect("state-applied-before-judged") && done >= 100))
        return false;
    self.values = state.values;
    if (hasDefect("state-for-all"))
        for (Plugin* const each : living)
            each->values = state.values;
    return whole;
}

constexpr clap_plugin_state stateFunctions{save, load};

// --- The instance itself ---

template <typename Extension>
const Extension* hostExtension(const clap_host* host, const char* id) {
    return static_cast<const Extension*>(host->get_extension(host, id));
}

bool init(const clap_plugin* plugin) {
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
    std::erase(living, &of(plugin));
    delete &of(plugin);
}

bool activate(const clap_plugin* plugin, double, std::uint32_t, std::uint32_t most) {
    Plugin& self = of(plugin);
    if (hasDefect("second-block-size-refused") && self.mostFrames != 0 && self.mostFrames != most)
        return false;
    if (hasDefect("activation-forgets"))
        self.values = initial;
    self.mostFrames = most;
    self.memory = {};
    self.active = true;
    return true;
}

void deactivate(const clap_plugin* plugin) {
    of(plugin).active = false;
}

bool startProcessing(const clap_plugin* plugin) {
    Plugin& self = of(plugin);
    allocateIf("start-allocates");
    self.processing = ++self.starts < 4 || !hasDefect("starts-run-out");
    return self.processing;
}

void stopProcessing(const clap_plugin* plugin) {
    of(plugin).processing = false;
}

void reset(const clap_plugin* plugin) {
    Plugin& self = of(plugin);
    if (!hasDefect("reset-keeps-sound"))
        self.memory = {};
    if (hasDefect("reset-forgets"))
        self.values = initial;
}

clap_process_status process(const clap_plugin* plugin, const clap_process* cycle) {
    Plugin& self = of(plugin);
    allocateIf("process-allocates");
    Events events(self, cycle->in_events, Way::process);
    float** const in = cycle->audio_inputs[0].data32;
    float** const out = cycle->audio_outputs[0].data32;
    for (std::uint32_t frame = 0; frame < cycle->frames_count; ++frame) {
        events.applyUntil(frame);
        for (std::size_t c = 0; c < self.memory.size(); ++c) {
            self.memory[c] =
                in[c][frame] * static_cast<float>(self.at(gain)) + 0.25F * self.memory[c];
            out[c][frame] = self.memory[c];
        }
    }
    if (hasDefect("events-written-to-buffer"))
        for (std::uint32_t i = 0; i < cycle->in_events->size(cycle->in_events); ++i)
            out[0][cycle->in_events->get(cycle->in_events, i)->time] = 0.0F;
    events.applyUntil(everyTime);
    return hasDefect("process-error") ? CLAP_PROCESS_ERROR : CLAP_PROCESS_CONTINUE;
}

const void* extension(const clap_plugin*, const char* id) {
    if (std::strcmp(id, CLAP_EXT_AUDIO_PORTS) == 0)
        return &ports;
    const std::string_view name(id);
    if (name == CLAP_EXT_PARAMS ||
        (hasDefect("extension-prefix") && name.starts_with(CLAP_EXT_PARAMS)))
        return &params;
    if (std::strcmp(id, CLAP_EXT_STATE) == 0)
        return &stateFunctions;
    return nullptr;
}

void onMainThread(const clap_plugin*) {}

// --- The file ---

const char* features[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, nullptr};
const clap_plugin_descriptor descriptor{
    CLAP_VERSION, "mirelon.test.clap", "Test", "Mirelon", "", "", "", "1.0", "", features};

Plugin::Plugin(const clap_host* host)
    : record{&descriptor,     this,           init,  destroy, activate,  deactivate,
             startProcessing, stopProcessing, reset, process, extension, onMainThread}
    , host(host) {}

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
    if (hasDefect("init-once") && wasLeft)
        return false;
    ++users;
    return true;
}

void leaveFile() {
    users = hasDefect("users-uncounted") ? 0 : users - 1;
    wasLeft = true;
}

const void* factoryOf(const char* id) {
    return users > 0 && std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
}

} // namespace

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{CLAP_VERSION, initFile, leaveFile,
                                                          factoryOf};
