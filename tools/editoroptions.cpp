#include "tools/editoroptions.h"

#include "tools/commanderror.h"
#include "tools/effectsettings.h"

#include <cstdlib>

namespace mirelon::tools {

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
