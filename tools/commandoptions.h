// The options that several commands have in common.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mirelon::tools {

struct EditorOptions;
struct RenderOptions;

// Adds --plugin, which sets `file`.
void addPluginOption(CLI::App& parser, std::string& file);

// Add --preset and --set, any number of settings, for applySettings.
void addPresetOption(CLI::App& parser, std::string& preset);
void addSettingsOption(CLI::App& parser, std::vector<std::string>& settings);

// For the commands that show an editor; with all of the above.
void addEditorOptions(CLI::App& parser, EditorOptions& options);

// For the commands that process a file; with all of the above, without the input
// file, which is a positional argument of its own.
void addRenderOptions(CLI::App& parser, RenderOptions& options);

} // namespace mirelon::tools
