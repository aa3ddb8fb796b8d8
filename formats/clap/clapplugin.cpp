// The functions of an instance, which find their objects in its record.
#include "formats/clap/clapplugin.h"

#include "formats/clap/clapwindow.h"
#include "formats/clap/clapwrapper.h"
#include "formats/clap/parametervalues.h"

#include <clap/ext/audio-ports.h>
#include <cstdio>
#include <cstring>

namespace mirelon::clap {

namespace {

// CLAP's records hold pointers to what nobody writes.
const char* features[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, CLAP_PLUGIN_FEATURE_UTILITY,
                          CLAP_PLUGIN_FEATURE_MIXING,       CLAP_PLUGIN_FEATURE_MASTERING,
                          CLAP_PLUGIN_FEATURE_STEREO,       nullptr};

class Instance {
  public:
    explicit Instance(const clap_host* host);

    const clap_plugin record;
    HostLink host;
    ClapWrapper wrapper{host};
    ClapWindow window{wrapper, host};
};

Instance& instanceOf(const clap_plugin* plugin) noexcept {
    return *static_cast<Instance*>(plugin->plugin_data);
}

ClapWrapper& wrapperOf(const clap_plugin* plugin) noexcept {
    return instanceOf(plugin).wrapper;
}

ClapWindow& windowOf(const clap_plugin* plugin) noexcept {
    return instanceOf(plugin).window;
}

void copyName(const char* text, char (&name)[CLAP_NAME_SIZE]) noexcept {
    std::snprintf(name, sizeof name, "%s", text);
}

// --- Audio ports: one each way, which may share their buffers ---

std::uint32_t portCount(const clap_plugin* /*plugin*/, bool /*isInput*/) noexcept {
    return 1;
}

bool describePort(const clap_plugin* /*plugin*/, std::uint32_t index, bool isInput,
                  clap_audio_port_info* info) noexcept {
    constexpr clap_id inputPort = 0;
    constexpr clap_id outputPort = 1;
    if (index != 0 || info == nullptr)
        return false;
    *info = {};
    info->id = isInput ? inputPort : outputPort;
    info->in_place_pair = isInput ? outputPort : inputPort;
    copyName(isInput ? "Input" : "Output", info->name);
    info->flags = CLAP_AUDIO_PORT_IS_MAIN | CLAP_AUDIO_PORT_SUPPORTS_64BITS |
                  CLAP_AUDIO_PORT_REQUIRES_COMMON_SAMPLE_SIZE;
    info->channel_count = 2;
    info->port_type = CLAP_PORT_STEREO;
    return true;
}

constexpr clap_plugin_audio_ports audioPorts{portCount, describePort};

// --- Parameters: their numbers are those of the table ---

bool isParameterId(clap_id id) noexcept {
    return id < kNumParams;
}

std::uint32_t parameterCount(const clap_plugin* /*plugin*/) noexcept {
    return kNumParams;
}

bool describeParameter(const clap_plugin* /*plugin*/, std::uint32_t index,
                       clap_param_info* info) noexcept {
    if (!isParameterId(index) || info == nullptr)
        return false;
    const Parameter& parameter = parameterAt(static_cast<int>(index));
    *info = {};
    info->id = index;
    info->flags = CLAP_PARAM_IS_AUTOMATABLE;
    if (parameter.kind == ParameterKind::onOff)
        info->flags |= CLAP_PARAM_IS_STEPPED;
    copyName(parameter.name, info->name);
    info->max_value = 1.0;
    info->default_value = static_cast<double>(parameter.initial);
    return true;
}

bool parameterValue(const clap_plugin* plugin, clap_id id, double* value) noexcept {
    if (!isParameterId(id) || value == nullptr)
        return false;
    const int index = static_cast<int>(id);
    *value = hostValueOf(index, wrapperOf(plugin).effect().getParameter(index));
    return true;
}

bool valueToText(const clap_plugin* /*plugin*/, clap_id id, double value, char* display,
                 std::uint32_t size) noexcept {
    return isParameterId(id) && display != nullptr &&
           textOfHostValue(static_cast<int>(id), value, {display, size});
}

bool textToValue(const clap_plugin* /*plugin*/, clap_id id, const char* display,
                 double* value) noexcept {
    if (!isParameterId(id) || display == nullptr || value == nullptr)
        return false;
    const auto read = hostValueOfText(static_cast<int>(id), display);
    if (read)
        *value = *read;
    return read.has_value();
}

void flush(const clap_plugin* plugin, const clap_input_events* in,
           const clap_output_events* out) noexcept {
    wrapperOf(plugin).flush(in, out);
}

constexpr clap_plugin_params params{parameterCount, describeParameter, parameterValue,
                                    valueToText,    textToValue,       flush};

// --- State ---

// What throws is short of memory.
template <typename Stream, typename Operation>
bool withStream(const Stream* stream, Operation operation) noexcept {
    try {
        return stream != nullptr && operation(*stream);
    } catch (...) {
        return false;
    }
}

bool save(const clap_plugin* plugin, const clap_ostream* stream) noexcept {
    return withStream(stream, [&](const auto& to) { return wrapperOf(plugin).save(to); });
}

bool load(const clap_plugin* plugin, const clap_istream* stream) noexcept {
    return withStream(stream, [&](const auto& from) { return wrapperOf(plugin).load(from); });
}

constexpr clap_plugin_state state{save, load};

// --- Window ---

bool isApiSupported(const clap_plugin* /*plugin*/, const char* api, bool floating) noexcept {
    return ClapWindow::isSupported(api, floating);
}

bool preferredApi(const clap_plugin* /*plugin*/, const char** api, bool* floating) noexcept {
    if (api == nullptr || floating == nullptr)
        return false;
    *api = CLAP_WINDOW_API_X11;
    *floating = false;
    return true;
}

bool createWindow(const clap_plugin* plugin, const char* api, bool floating) noexcept {
    return windowOf(plugin).create(api, floating);
}

void destroyWindow(const clap_plugin* plugin) noexcept {
    windowOf(plugin).destroy();
}

bool setScale(const clap_plugin* plugin, double scale) noexcept {
    return windowOf(plugin).setScale(scale);
}

bool windowSize(const clap_plugin* plugin, std::uint32_t* width, std::uint32_t* height) noexcept {
    const auto size = windowOf(plugin).size();
    if (!size || width == nullptr || height == nullptr)
        return false;
    *width = size->width;
    *height = size->height;
    return true;
}

bool canResize(const clap_plugin* /*plugin*/) noexcept {
    return false;
}

// Some hosts take a refusal for a fault.
bool resizeHints(const clap_plugin* /*plugin*/, clap_gui_resize_hints* hints) noexcept {
    if (hints == nullptr)
        return false;
    *hints = {};
    return true;
}

bool setSize(const clap_plugin* plugin, std::uint32_t width, std::uint32_t height) noexcept {
    const auto size = windowOf(plugin).size();
    return size && size->width == width && size->height == height;
}

bool setParent(const clap_plugin* plugin, const clap_window* parent) noexcept {
    return windowOf(plugin).setParent(parent);
}

bool setTransient(const clap_plugin* /*plugin*/, const clap_window* /*parent*/) noexcept {
    return false;
}

void suggestTitle(const clap_plugin* /*plugin*/, const char* /*title*/) noexcept {}

bool show(const clap_plugin* plugin) noexcept {
    return windowOf(plugin).show();
}

bool hide(const clap_plugin* plugin) noexcept {
    return windowOf(plugin).hide();
}

constexpr clap_plugin_gui gui{isApiSupported, preferredApi, createWindow, destroyWindow, setScale,
                              windowSize,     canResize,    resizeHints,  windowSize,    setSize,
                              setParent,      setTransient, suggestTitle, show,          hide};

void onTimer(const clap_plugin* plugin, clap_id timer) noexcept {
    windowOf(plugin).onTimer(timer);
    wrapperOf(plugin).tellHost();
}

constexpr clap_plugin_timer_support timerSupport{onTimer};

// --- The instance itself ---

bool init(const clap_plugin* plugin) noexcept {
    instanceOf(plugin).host.findExtensions();
    return true;
}

void destroy(const clap_plugin* plugin) noexcept {
    delete &instanceOf(plugin);
}

bool activate(const clap_plugin* plugin, double rate, std::uint32_t /*fewest*/,
              std::uint32_t most) noexcept {
    return wrapperOf(plugin).activate(rate, most);
}

void deactivate(const clap_plugin* plugin) noexcept {
    wrapperOf(plugin).deactivate();
}

bool startProcessing(const clap_plugin* plugin) noexcept {
    wrapperOf(plugin).startProcessing();
    return true;
}

void stopProcessing(const clap_plugin* plugin) noexcept {
    wrapperOf(plugin).stopProcessing();
}

void reset(const clap_plugin* plugin) noexcept {
    wrapperOf(plugin).reset();
}

clap_process_status process(const clap_plugin* plugin, const clap_process* cycle) noexcept {
    return cycle != nullptr ? wrapperOf(plugin).process(*cycle) : CLAP_PROCESS_ERROR;
}

const void* extension(const clap_plugin* /*plugin*/, const char* id) noexcept {
    struct Offer {
        const char* id;
        const void* functions;
    };
    static constexpr Offer offers[] = {{CLAP_EXT_AUDIO_PORTS, &audioPorts},
                                       {CLAP_EXT_PARAMS, &params},
                                       {CLAP_EXT_STATE, &state},
                                       {CLAP_EXT_GUI, &gui},
                                       {CLAP_EXT_TIMER_SUPPORT, &timerSupport}};
    for (const Offer& offer : offers)
        if (id != nullptr && std::strcmp(id, offer.id) == 0)
            return offer.functions;
    return nullptr;
}

void onMainThread(const clap_plugin* plugin) noexcept {
    wrapperOf(plugin).tellHost();
}

Instance::Instance(const clap_host* host)
    : record{&pluginDescriptor,
             this,
             clap::init,
             clap::destroy,
             clap::activate,
             clap::deactivate,
             clap::startProcessing,
             clap::stopProcessing,
             clap::reset,
             clap::process,
             clap::extension,
             clap::onMainThread}
    , host(host) {}

} // namespace

const clap_plugin_descriptor pluginDescriptor{
    CLAP_VERSION, "example.dravik.mirelon", "Dravik Mirelon",         "dravik.example", "", "",
    "",           MIRELON_VERSION,          "Stereo-image processor", features};

const clap_plugin* createPlugin(const clap_host* host) noexcept {
    try {
        return &(new Instance(host))->record;
    } catch (...) {
        return nullptr;
    }
}

} // namespace mirelon::clap
