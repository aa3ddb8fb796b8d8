#include "tools/editoroptions.h"

#include "tools/commanderror.h"

#include <cstdlib>

namespace mirelon::tools {

std::unique_ptr<LoadedPlugin> loadForEditor(const EditorOptions& options) {
    if (options.scale > 0.0)
        setenv("MIRELON_SCALE", std::to_string(options.scale).c_str(), 1);
    auto plugin = std::make_unique<LoadedPlugin>(options.plugin);
    hosting::Effect& effect = plugin->effect;
    if (effect.record().numInputs != 2 || effect.record().numOutputs != 2)
        throw CommandError("the plug-in is not a stereo effect");
    applySettings(effect, options.settings);
    return plugin;
}

std::unique_ptr<hosting::EditorWindow> openEditor(hosting::Effect& effect, hosting::WindowKind kind,
                                                  hosting::Drive drive) {
    hosting::ignoreXErrors();
    if (!hosting::editorSize(effect))
        throw CommandError("the plug-in has no editor");
    auto editor = std::make_unique<hosting::EditorWindow>(effect, effect.name(), kind, drive);
    if (!editor->open())
        throw CommandError("the plug-in did not open its editor");
    return editor;
}

} // namespace mirelon::tools
