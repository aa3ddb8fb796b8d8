// The options that several commands have in common.
#pragma once

#include "tools/effectsettings.h"

#include <string>

namespace CLI {
class App;
}

namespace mirelon::tools {

struct EditorOptions;
struct RenderOptions;

// Of the commands that put a state of the plug-in into a file, or take one out.
struct StateFileOptions {
    std::string plugin;
    std::string file;
    EffectSettings settings; // before the state is saved
};

// Adds --plugin, which sets `file`.
void addPluginOption(CLI::App& parser, std::string& file);

// Adds --preset, --set and --set-normalised, the latter two any number of times and
// in the order in which they stand.
void addSettingsOptions(CLI::App& parser, EffectSettings& settings);

// For the commands that show an editor; with all of the above.
void addEditorOptions(CLI::App& parser, EditorOptions& options);

// For the commands that process a file; with all of the above, without the input
// file, which is a positional argument of its own.
void addRenderOptions(CLI::App& parser, RenderOptions& options);

} // namespace mirelon::tools
