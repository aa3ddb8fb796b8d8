#include "tools/editoroptions.h"

#include "tools/commanderror.h"

#include <cstdlib>

namespace mirelon::tools {

std::unique_ptr<LoadedPlugin> loadForEditor(const EditorOptions& options) {
    if (options.scale > 0.0)
        setenv("MIRELON_SCALE", std::to_string(options.scale).c_str(), 1);
    auto plugin = std::make_unique<LoadedPlugin>(options.plugin);
    applySettings(plugin->effect, options.settings);
    return plugin;
}

std::unique_ptr<hosting::EditorWindow> openEditor(hosting::Effect& effect, hosting::WindowKind kind,
                                                  hosting::Drive drive) {
    hosting::ignoreXErrors();
    auto editor = std::make_unique<hosting::EditorWindow>(effect, effect.name(), kind, drive);
    // Some open it and answer 0.
    if (!editor->open() && editor->window().children().empty())
        throw CommandError("the plug-in did not open its editor");
    return editor;
}

} // namespace mirelon::tools
