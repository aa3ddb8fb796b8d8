// A CLAP plug-in that stands between a host and the real one and writes down what
// passes, as tests/hosts/observer/observer.cpp does and in its words: a block that
// is played, a parameter that is set, and what the plug-in tells of its own. The
// windows' and the state's functions are named by the numbers of their likes.
//
// The record that the host holds is ours, but finds the real plug-in's object:
// the real functions work on it, and only those below are others.
#include "shell/vst24.h"
#include "tests/hosts/observer/log.h"

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/plugin-factory.h>
#include <cstring>
#include <dlfcn.h>

using mirelon::test::log;

namespace {

const clap_plugin_entry* realEntry = nullptr;

struct Observed {
    clap_plugin record{}; // first: the host's pointer is ours
    const clap_plugin* real = nullptr;
};

const clap_plugin* realOf(const clap_plugin* plugin) {
    return reinterpret_cast<const Observed*>(plugin)->real;
}

template <typename Extension>
const Extension& realExtension(const clap_plugin* plugin, const char* id) {
    const clap_plugin* const real = realOf(plugin);
    return *static_cast<const Extension*>(real->get_extension(real, id));
}

void note(const clap_input_events* events) {
    if (events == nullptr)
        return;
    const std::uint32_t count = events->size(events);
    for (std::uint32_t i = 0; i < count; ++i) {
        const clap_event_header* const event = events->get(events, i);
        if (event->space_id != CLAP_CORE_EVENT_SPACE_ID || event->type != CLAP_EVENT_PARAM_VALUE)
            continue;
        const auto& set = *reinterpret_cast<const clap_event_param_value*>(event);
        log().line("sets %d %.9g", static_cast<int>(set.param_id), set.value);
    }
}

// A list of the host's with a look at what goes into it.
struct NotedOutput {
    explicit NotedOutput(const clap_output_events* host)
        : host(host) {}

    const clap_output_events* host;
    clap_output_events record{
        this, [](const clap_output_events* list, const clap_event_header* event) {
            const auto& host = *static_cast<NotedOutput*>(list->ctx)->host;
            const auto tells = [](VstInt32 opcode, clap_id parameter, double value) {
                log().line("tells %d %d 0 %.9g", opcode, static_cast<int>(parameter), value);
            };
            if (event->type == CLAP_EVENT_PARAM_VALUE) {
                const auto& set = *reinterpret_cast<const clap_event_param_value*>(event);
                tells(audioMasterAutomate, set.param_id, set.value);
            } else {
                const auto& gesture = *reinterpret_cast<const clap_event_param_gesture*>(event);
                tells(event->type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? audioMasterBeginEdit
                                                                    : audioMasterEndEdit,
                      gesture.param_id, 0.0);
            }
            return host.try_push(&host, event);
        }};
};

clap_process_status process(const clap_plugin* plugin, const clap_process* cycle) {
    const bool wide = cycle->audio_outputs_count > 0 && cycle->audio_outputs->data64 != nullptr;
    log().line("%s %u", wide ? "plays-double" : "plays", cycle->frames_count);
    note(cycle->in_events);
    NotedOutput output(cycle->out_events);
    clap_process noted = *cycle;
    noted.out_events = &output.record;
    return realOf(plugin)->process(realOf(plugin), &noted);
}

void flush(const clap_plugin* plugin, const clap_input_events* in, const clap_output_events* out) {
    note(in);
    const NotedOutput output(out);
    realExtension<clap_plugin_params>(plugin, CLAP_EXT_PARAMS).flush(plugin, in, &output.record);
}

bool asked(VstInt32 opcode, bool result) {
    log().line("asks %d 0 0 0 = %d", opcode, result ? 1 : 0);
    return result;
}

bool save(const clap_plugin* plugin, const clap_ostream* stream) {
    return asked(effGetChunk,
                 realExtension<clap_plugin_state>(plugin, CLAP_EXT_STATE).save(plugin, stream));
}

bool load(const clap_plugin* plugin, const clap_istream* stream) {
    return asked(effSetChunk,
                 realExtension<clap_plugin_state>(plugin, CLAP_EXT_STATE).load(plugin, stream));
}

bool setParent(const clap_plugin* plugin, const clap_window* window) {
    return asked(effEditOpen,
                 realExtension<clap_plugin_gui>(plugin, CLAP_EXT_GUI).set_parent(plugin, window));
}

void destroyWindow(const clap_plugin* plugin) {
    realExtension<clap_plugin_gui>(plugin, CLAP_EXT_GUI).destroy(plugin);
    asked(effEditClose, true);
}

const void* extension(const clap_plugin* plugin, const char* id) {
    static clap_plugin_params params;
    static clap_plugin_state state{save, load};
    static clap_plugin_gui gui;
    const clap_plugin* const real = realOf(plugin);
    const void* const functions = real->get_extension(real, id);
    if (functions == nullptr)
        return nullptr;
    if (std::strcmp(id, CLAP_EXT_PARAMS) == 0) {
        params = *static_cast<const clap_plugin_params*>(functions);
        params.flush = flush;
        return &params;
    }
    if (std::strcmp(id, CLAP_EXT_STATE) == 0)
        return &state;
    if (std::strcmp(id, CLAP_EXT_GUI) == 0) {
        gui = *static_cast<const clap_plugin_gui*>(functions);
        gui.set_parent = setParent;
        gui.destroy = destroyWindow;
        return &gui;
    }
    return functions;
}

void destroy(const clap_plugin* plugin) {
    asked(effClose, true);
    realOf(plugin)->destroy(realOf(plugin));
    delete reinterpret_cast<const Observed*>(plugin);
}

const clap_plugin_factory* realFactory() {
    return static_cast<const clap_plugin_factory*>(realEntry->get_factory(CLAP_PLUGIN_FACTORY_ID));
}

const clap_plugin* create(const clap_plugin_factory* /*factory*/, const clap_host* host,
                          const char* id) {
    const clap_plugin* const real = realFactory()->create_plugin(realFactory(), host, id);
    if (real == nullptr)
        return nullptr;
    auto* const observed = new Observed{*real, real};
    observed->record.process = process;
    observed->record.get_extension = extension;
    observed->record.destroy = destroy;
    return &observed->record;
}

constexpr clap_plugin_factory factory{
    [](const clap_plugin_factory*) { return realFactory()->get_plugin_count(realFactory()); },
    [](const clap_plugin_factory*, std::uint32_t index) {
        return realFactory()->get_plugin_descriptor(realFactory(), index);
    },
    create};

bool init(const char* path) {
    const char* const file = std::getenv("MIRELON_OBSERVED");
    void* const module = file == nullptr ? nullptr : dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr)
        return false;
    realEntry = static_cast<const clap_plugin_entry*>(dlsym(module, "clap_entry"));
    return realEntry != nullptr && realEntry->init(path);
}

void deinit() {
    realEntry->deinit();
}

const void* factoryOf(const char* id) {
    return std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
}

} // namespace

extern "C" CLAP_EXPORT const clap_plugin_entry clap_entry{CLAP_VERSION, init, deinit, factoryOf};
