// preset save|show: preset files.
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/imagefile.h"
#include "tools/imageloading.h"
#include "tools/loadedplugin.h"
#include "tools/presets.h"
#include "tools/presettable.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

using PresetOptions = StateFileOptions;

void savePreset(const PresetOptions& options) {
    LoadedPlugin plugin(options.plugin);
    hosting::Effect& effect = plugin.effect;
    applySettings(effect, options.settings);
    const hosting::EffectBank bank = requiredBankOf(effect);
    const PresetRecord& preset = bank.presets.at(bank.current.value_or(0));
    writeImageFile(options.file,
                   {ImageKind::preset, std::endian::native, std::endian::big, {preset}},
                   effect.record().uniqueID);
    std::printf("%s: preset \"%s\"\n", options.file.c_str(), nameOf(preset).c_str());
}

void showPreset(const PresetOptions& options) {
    LoadedPlugin plugin(options.plugin);
    const ImageFile image =
        readImageFile(options.file, plugin.effect.record().uniqueID, ImageKind::preset);
    std::printf("%s: a preset, written by a %s-endian machine\n", options.file.c_str(),
                orderName(image.ownerOrder));
    printPresets(plugin.effect, image.presets);
}

Run definePreset(CLI::App& parser) {
    const auto options = std::make_shared<PresetOptions>();
    parser.require_subcommand(1);
    CLI::App* const saving =
        parser.add_subcommand("save", "Write a preset of the plug-in to a file");
    saving->add_option("FILE", options->file, "The preset file (.dvp)")->required();
    addSettingsOptions(*saving, options->settings);
    CLI::App* const showing = parser.add_subcommand("show", "List what a preset file holds");
    showing->add_option("FILE", options->file, "The preset file (.dvp)")->required();
    for (CLI::App* const action : {saving, showing})
        addPluginOption(*action, options->plugin);
    return [options, saving] {
        if (saving->parsed())
            savePreset(*options);
        else
            showPreset(*options);
    };
}

} // namespace

Command presetCommand() {
    return {"preset", "Save or show preset files", definePreset};
}

} // namespace mirelon::tools
