#include "tools/commandoptions.h"

#include "tools/editoroptions.h"
#include "tools/renderpass.h"

#include <CLI/CLI.hpp>

namespace mirelon::tools {

void addPluginOption(CLI::App& parser, std::string& file) {
    parser
        .add_option(
            "--plugin", file,
            "The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the "
            "Mirelon found)")
        ->type_name("FILE");
}

namespace {

// Two options, given as often as one likes, that fill one list in the order of the
// command line: `name` and `name`-normalised.
void addSettingOptions(CLI::App& parser, const std::string& name,
                       std::vector<TypedSetting>& settings, const char* form,
                       const std::string& summary, const std::string& normalisedSummary) {
    const auto add = [&](const std::string& option, Scale scale, const std::string& text) {
        parser
            .add_option_function<std::string>(
                option,
                [&settings, scale](const std::string& value) {
                    settings.push_back({value, scale});
                },
                text)
            ->type_name(form)
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
            ->trigger_on_parse();
    };
    add(name, Scale::shown, summary);
    add(name + "-normalised", Scale::normalised, normalisedSummary);
}

} // namespace

void addSettingsOptions(CLI::App& parser, EffectSettings& settings) {
    parser
        .add_option_function<std::string>(
            "--preset", [&settings](const std::string& preset) { settings.preset = preset; },
            "Choose a preset by number or name")
        ->type_name("PRESET");
    addSettingOptions(parser, "--set", settings.settings, "NAME=VALUE",
                      "Set a parameter to what the plug-in is to show (gain=-6, width=150%, "
                      "balance=L20, process=off)",
                      "Set a parameter to a number from 0 to 1 (gain=0.25)");
}

void addEditorOptions(CLI::App& parser, EditorOptions& options) {
    addPluginOption(parser, options.plugin);
    addSettingsOptions(parser, options.settings);
    parser.add_option("--scale", options.scale, "Size of the window, 1 to 3")
        ->check(CLI::Range(1.0, 3.0));
}

void addRenderOptions(CLI::App& parser, RenderOptions& options) {
    addPluginOption(parser, options.plugin);
    parser.add_option("--chunk", options.chunk, "Start from a state saved with `chunk save`")
        ->type_name("FILE");
    parser.add_option("--bank-file", options.bankFile, "Load a bank file (.dvb)")
        ->type_name("FILE");
    addSettingsOptions(parser, options.settings);
    parser
        .add_option("--preset-file", options.presetFile,
                    "Load a preset file (.dvp) over the chosen preset")
        ->type_name("FILE");
    addSettingOptions(parser, "--automate", options.ramps, "NAME=FIRST:LAST",
                      "Move a parameter in equal steps per frame, from FIRST at the first block to "
                      "LAST at the last, values as for --set",
                      "The same with numbers from 0 to 1");
    parser.add_option("--block", options.block, "Frames per block")
        ->type_name("FRAMES")
        ->check(CLI::Range(1, largestRenderBlock))
        ->capture_default_str();
    parser.add_flag("--double", options.useDouble, "Process in double precision");
    parser.add_flag("--strict", options.strict, "Refuse an input of which a part is missing");
}

} // namespace mirelon::tools
