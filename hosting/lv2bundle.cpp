#include "hosting/lv2bundle.h"

#include "hosting/hostingerror.h"
#include "hosting/lv2nodes.h"
#include "hosting/lv2window.h"

#include <algorithm>
#include <functional>
#include <lv2/core/lv2.h>
#include <lv2/presets/presets.h>
#include <lv2/ui/ui.h>

namespace mirelon::hosting {

namespace {

std::filesystem::path fileOf(const LilvNode* uri) {
    char* const path = lilv_file_uri_parse(lilv_node_as_uri(uri), nullptr);
    std::filesystem::path file = path != nullptr ? path : "";
    lilv_free(path);
    return file;
}

std::vector<std::string> urisOf(const LilvNodes* nodes) {
    std::vector<std::string> uris;
    LILV_FOREACH(nodes, i, nodes) {
        uris.push_back(lv2Text(lilv_nodes_get(nodes, i)));
    }
    return uris;
}

// The presets of a plug-in, by URI, so that the order is always the same.
void forEachPreset(
    const Lv2Bundle& bundle,
    const std::function<void(const LilvNode& preset, const std::string& label)>& take) {
    LilvWorld* const world = bundle.world();
    const Lv2Nodes presets(
        lilv_plugin_get_related(bundle.plugin(), lv2Uri(world, LV2_PRESETS__Preset).get()));
    const Lv2Node label = lv2Uri(world, LILV_NS_RDFS "label");
    auto uris = urisOf(presets.get());
    std::ranges::sort(uris);
    for (const std::string& uri : uris) {
        const Lv2Node preset = lv2Uri(world, uri.c_str());
        lilv_world_load_resource(world, preset.get());
        const Lv2Node name(lilv_world_get(world, preset.get(), label.get(), nullptr));
        if (name != nullptr)
            take(*preset, lv2Text(name.get()));
    }
}

// A list of owned windows.
struct FreeWindows {
    void operator()(LilvUIs* windows) const { lilv_uis_free(windows); }
};
using Windows = std::unique_ptr<LilvUIs, FreeWindows>;

Windows windowsOf(const LilvPlugin* plugin) {
    return Windows(lilv_plugin_get_uis(plugin));
}

} // namespace

Lv2Bundle::Lv2Bundle()
    : all(lilv_world_new()) {}

Lv2Bundle::Lv2Bundle(const std::filesystem::path& bundle, const std::string& uri)
    : Lv2Bundle() {
    load(bundle);
    take(uri);
    if (found == nullptr)
        throw PluginError(bundle.string() + ": no plug-in " + uri);
}

std::unique_ptr<Lv2Bundle> Lv2Bundle::ofUri(const std::string& uri) {
    std::unique_ptr<Lv2Bundle> bundle(new Lv2Bundle());
    lilv_world_load_all(bundle->all.get());
    bundle->take(uri);
    if (bundle->found == nullptr)
        throw PluginError(uri + ": no LV2 plug-in of this name in ~/.lv2, the system's folders or "
                                "where LV2_PATH says");
    return bundle;
}

std::unique_ptr<Lv2Bundle> Lv2Bundle::inFolder(const std::filesystem::path& folder) {
    std::unique_ptr<Lv2Bundle> bundle(new Lv2Bundle());
    bundle->load(folder);
    const LilvPlugins* const plugins = lilv_world_get_all_plugins(bundle->all.get());
    if (lilv_plugins_size(plugins) == 0)
        throw PluginError(folder.string() + ": its manifest.ttl names no plug-in");
    if (lilv_plugins_size(plugins) > 1) {
        std::string names;
        LILV_FOREACH(plugins, i, plugins) {
            names += names.empty() ? "" : ", ";
            names += lv2Text(lilv_plugin_get_uri(lilv_plugins_get(plugins, i)));
        }
        throw PluginError(folder.string() + ": several plug-ins; name one by its URI: " + names);
    }
    bundle->found = lilv_plugins_get(plugins, lilv_plugins_begin(plugins));
    return bundle;
}

Lv2Bundle::~Lv2Bundle() = default;

void Lv2Bundle::load(const std::filesystem::path& bundle) {
    lilv_world_load_specifications(all.get());
    lilv_world_load_plugin_classes(all.get());
    const auto path = std::filesystem::absolute(bundle) / "";
    const Lv2Node folder(lilv_new_file_uri(all.get(), nullptr, path.c_str()));
    lilv_world_load_bundle(all.get(), folder.get());
}

void Lv2Bundle::take(const std::string& uri) {
    const Lv2Node name = lv2Uri(all.get(), uri.c_str());
    if (name != nullptr)
        found = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(all.get()), name.get());
}

std::string Lv2Bundle::uri() const {
    return lv2Text(lilv_plugin_get_uri(found));
}

std::uint32_t Lv2Bundle::portNumber(const std::string& symbol) const {
    const Lv2Node name(lilv_new_string(all.get(), symbol.c_str()));
    const LilvPort* const port = lilv_plugin_get_port_by_symbol(found, name.get());
    if (port == nullptr)
        throw PluginError("there is no port " + symbol);
    return lilv_port_get_index(found, port);
}

std::filesystem::path Lv2Bundle::binary() const {
    const LilvNode* const library = lilv_plugin_get_library_uri(found);
    return library != nullptr ? fileOf(library) : std::filesystem::path();
}

const LilvUI* Lv2Bundle::window(const LilvUIs* windows) const {
    const Lv2Node x11 = lv2Uri(all.get(), LV2_UI__X11UI);
    const Lv2Node required = lv2Uri(all.get(), LV2_CORE__requiredFeature);
    LILV_FOREACH(uis, i, windows) {
        const LilvUI* const each = lilv_uis_get(windows, i);
        if (!lilv_ui_is_a(each, x11.get()))
            continue;
        lilv_world_load_resource(all.get(), lilv_ui_get_uri(each));
        const Lv2Nodes features(
            lilv_world_find_nodes(all.get(), lilv_ui_get_uri(each), required.get(), nullptr));
        if (std::ranges::all_of(urisOf(features.get()), Lv2Window::offers))
            return each;
    }
    return nullptr;
}

std::filesystem::path Lv2Bundle::windowBinary() const {
    const Windows windows = windowsOf(found);
    const LilvUI* const chosen = window(windows.get());
    return chosen != nullptr ? fileOf(lilv_ui_get_binary_uri(chosen)) : std::filesystem::path();
}

std::string Lv2Bundle::windowUri() const {
    const Windows windows = windowsOf(found);
    const LilvUI* const chosen = window(windows.get());
    return chosen != nullptr ? lv2Text(lilv_ui_get_uri(chosen)) : "";
}

std::vector<std::string> Lv2Bundle::requiredFeatures() const {
    const Lv2Nodes features(lilv_plugin_get_required_features(found));
    return urisOf(features.get());
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
        if (state == nullptr)
            return;
        lilv_state_emit_port_values(
            state,
            [](const char* symbol, void* into, const void* value, std::uint32_t size,
               std::uint32_t /*type*/) {
                if (size == sizeof(float))
                    (*static_cast<std::map<std::string, float>*>(into))[symbol] =
                        *static_cast<const float*>(value);
            },
            &values);
        lilv_state_free(state);
    });
    return values;
}

} // namespace mirelon::hosting
