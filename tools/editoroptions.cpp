#include "tools/editoroptions.h"

#include "tools/commanderror.h"
#include "tools/effectsettings.h"

#include <cstdlib>

namespace mirelon::tools {

void addEditorOptions(CLI::App& parser, EditorOptions& options) {
    addPluginOption(parser, options.plugin);
    parser.add_option("--preset", options.preset, "Choose a preset by number or name")
        ->type_name("PRESET");
    parser.add_option("--set", options.settings, "Set a parameter, e.g. width=150 or phase=On")
        ->type_name("NAME=VALUE");
    parser.add_option("--scale", options.scale, "Size of the window, 1 to 3")
        ->check(CLI::Range(1.0, 3.0));
}

std::unique_ptr<LoadedPlugin> loadForEditor(const EditorOptions& options) {
    if (options.scale > 0.0)
        setenv("MIRELON_SCALE", std::to_string(options.scale).c_str(), 1);
    auto plugin = std::make_unique<LoadedPlugin>(options.plugin);
    hosting::Effect& effect = plugin->effect;
    if (effect.record().numInputs != 2 || effect.record().numOutputs != 2)
        throw CommandError("the plug-in is not a stereo effect");
    applySettings(effect, options.preset, options.settings);
    return plugin;
}

} // namespace mirelon::tools
