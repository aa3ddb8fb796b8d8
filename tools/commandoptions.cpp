#include "tools/commandoptions.h"

#include "tools/editoroptions.h"
#include "tools/renderpass.h"

#include <CLI/CLI.hpp>

namespace mirelon::tools {

void addPluginOption(CLI::App& parser, std::string& file) {
    parser.add_option("--plugin", file, "The plug-in, a VST 2.4 .so (default: the Mirelon found)")
        ->type_name("FILE");
}

void addEditorOptions(CLI::App& parser, EditorOptions& options) {
    addPluginOption(parser, options.plugin);
    parser.add_option("--preset", options.preset, "Choose a preset by number or name")
        ->type_name("PRESET");
    parser.add_option("--set", options.settings, "Set a parameter, e.g. width=150 or phase=On")
        ->type_name("NAME=VALUE");
    parser.add_option("--scale", options.scale, "Size of the window, 1 to 3")
        ->check(CLI::Range(1.0, 3.0));
}

void addRenderOptions(CLI::App& parser, RenderOptions& options) {
    addPluginOption(parser, options.plugin);
    parser.add_option("--chunk", options.chunk, "Start from a state saved with `chunk save`")
        ->type_name("FILE");
    parser.add_option("--bank-file", options.bankFile, "Load a bank file (.dvb)")
        ->type_name("FILE");
    parser.add_option("--preset", options.preset, "Choose a preset by number or name")
        ->type_name("PRESET");
    parser
        .add_option("--preset-file", options.presetFile,
                    "Load a preset file (.dvp) over the chosen preset")
        ->type_name("FILE");
    parser
        .add_option("--set", options.settings,
                    "Set a parameter: a number from 0 to 1, or a value as the plug-in shows it "
                    "(gain=-6dB, balance=20L, process=off)")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    parser
        .add_option("--automate", options.ramps,
                    "Move a parameter in equal steps per frame, from FIRST at the first block to "
                    "LAST at the last")
        ->type_name("NAME=FIRST:LAST")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    parser.add_option("--block", options.block, "Frames per block")
        ->type_name("FRAMES")
        ->check(CLI::Range(1, largestRenderBlock))
        ->capture_default_str();
    parser.add_flag("--double", options.useDouble, "Process in double precision");
    parser.add_flag("--strict", options.strict, "Refuse an input of which a part is missing");
}

} // namespace mirelon::tools
