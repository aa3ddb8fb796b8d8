#include "tools/commandoptions.h"

#include "tools/editoroptions.h"
#include "tools/renderpass.h"

#include <CLI/CLI.hpp>

namespace mirelon::tools {

void addPluginOption(CLI::App& parser, std::string& file) {
    parser.add_option("--plugin", file, "The plug-in, a VST 2.4 .so (default: the Mirelon found)")
        ->type_name("FILE");
}

namespace {

// Given as often as one likes, once for each value.
void addRepeatedOption(CLI::App& parser, const char* name, std::vector<std::string>& values,
                       const char* form, const char* summary) {
    parser.add_option(name, values, summary)
        ->type_name(form)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

} // namespace

void addPresetOption(CLI::App& parser, std::string& preset) {
    parser.add_option("--preset", preset, "Choose a preset by number or name")->type_name("PRESET");
}

void addSettingsOption(CLI::App& parser, std::vector<std::string>& settings) {
    addRepeatedOption(parser, "--set", settings, "NAME=VALUE",
                      "Set a parameter: a number from 0 to 1, or a value as the plug-in shows it "
                      "(gain=-6dB, balance=20L, process=off)");
}

void addEditorOptions(CLI::App& parser, EditorOptions& options) {
    addPluginOption(parser, options.plugin);
    addPresetOption(parser, options.preset);
    addSettingsOption(parser, options.settings);
    parser.add_option("--scale", options.scale, "Size of the window, 1 to 3")
        ->check(CLI::Range(1.0, 3.0));
}

void addRenderOptions(CLI::App& parser, RenderOptions& options) {
    addPluginOption(parser, options.plugin);
    parser.add_option("--chunk", options.chunk, "Start from a state saved with `chunk save`")
        ->type_name("FILE");
    parser.add_option("--bank-file", options.bankFile, "Load a bank file (.dvb)")
        ->type_name("FILE");
    addPresetOption(parser, options.preset);
    parser
        .add_option("--preset-file", options.presetFile,
                    "Load a preset file (.dvp) over the chosen preset")
        ->type_name("FILE");
    addSettingsOption(parser, options.settings);
    addRepeatedOption(parser, "--automate", options.ramps, "NAME=FIRST:LAST",
                      "Move a parameter in equal steps per frame, from FIRST at the first block to "
                      "LAST at the last");
    parser.add_option("--block", options.block, "Frames per block")
        ->type_name("FRAMES")
        ->check(CLI::Range(1, largestRenderBlock))
        ->capture_default_str();
    parser.add_flag("--double", options.useDouble, "Process in double precision");
    parser.add_flag("--strict", options.strict, "Refuse an input of which a part is missing");
}

} // namespace mirelon::tools
