// The options that several commands have in common.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace mirelon::tools {

struct EditorOptions;
struct RenderOptions;

// Adds --plugin, which sets `file`.
void addPluginOption(CLI::App& parser, std::string& file);

// For the commands that show an editor; with --plugin.
void addEditorOptions(CLI::App& parser, EditorOptions& options);

// For the commands that process a file; with --plugin, without the input file,
// which is a positional argument of its own.
void addRenderOptions(CLI::App& parser, RenderOptions& options);

} // namespace mirelon::tools
