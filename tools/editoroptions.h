// What the commands that show an editor have in common.
#pragma once

#include "hosting/editorwindow.h"
#include "tools/effectsettings.h"
#include "tools/loadedplugin.h"

#include <memory>
#include <string>

namespace mirelon::tools {

struct EditorOptions {
    std::string plugin;
    EffectSettings settings;
    double scale = 0.0; // 0: as the desktop says
};

// The plug-in with its preset and settings in place. It reads the scale from
// the environment, which is set for it. Throws CommandError or
// hosting::HostingError.
std::unique_ptr<LoadedPlugin> loadForEditor(const EditorOptions& options);

// Its editor in a window with the effect's name, of the size that the editor has
// once it is open. Throws as above.
std::unique_ptr<hosting::EditorWindow> openEditor(hosting::Effect& effect, hosting::WindowKind kind,
                                                  hosting::Drive drive);

} // namespace mirelon::tools
