// bank save|show|import: bank files, and banks as JSON.
#include "tools/bankjson.h"
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/imagefile.h"
#include "tools/imageloading.h"
#include "tools/loadedplugin.h"
#include "tools/parametervalue.h"
#include "tools/presettable.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

struct BankOptions {
    std::string plugin;
    std::string file;
    std::string source;
    bool json = false;
};

constexpr std::size_t longestJson = 1U << 20U;

void saveBank(const BankOptions& options) {
    LoadedPlugin plugin(options.plugin);
    if (!options.source.empty())
        loadBankFile(plugin.effect, options.source);
    const hosting::EffectBank bank = requiredBankOf(plugin.effect);
    writeImageFile(options.file,
                   {ImageKind::bank,
                    std::endian::native,
                    std::endian::big,
                    {bank.presets.begin(), bank.presets.end()}},
                   plugin.effect.record().uniqueID);
    std::printf("%s: a bank of %zu presets\n", options.file.c_str(), bank.presets.size());
}

void showBank(const BankOptions& options) {
    LoadedPlugin plugin(options.plugin);
    const VstInt32 owner = plugin.effect.record().uniqueID;
    const ImageFile image = readImageFile(options.file, owner, ImageKind::bank);
    if (options.json) {
        std::fputs(jsonOf(image, owner, parameterNames(plugin.effect)).c_str(), stdout);
        return;
    }
    std::printf("%s: a bank of %zu presets, written by a %s-endian machine\n", options.file.c_str(),
                image.presets.size(), orderName(image.ownerOrder));
    printPresets(plugin.effect, image.presets);
}

void import(const BankOptions& options) {
    LoadedPlugin plugin(options.plugin);
    const VstInt32 owner = plugin.effect.record().uniqueID;
    const std::vector<std::byte> bytes = readBytes(options.source, longestJson);
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    try {
        writeImageFile(options.file, bankFromJson(text, owner, parameterNames(plugin.effect)),
                       owner);
    } catch (const CommandError& error) {
        throw CommandError(options.source + ": " + error.what());
    }
    std::printf("%s: a bank of %d presets\n", options.file.c_str(), kNumPresets);
}

Run defineBank(CLI::App& parser) {
    const auto options = std::make_shared<BankOptions>();
    parser.require_subcommand(1);
    CLI::App* const saving = parser.add_subcommand("save", "Write the plug-in's bank to a file");
    saving->add_option("FILE", options->file, "The bank file (.dvb)")->required();
    saving->add_option("--bank", options->source, "Load this bank file first")->type_name("FILE");
    CLI::App* const showing = parser.add_subcommand("show", "List what a bank file holds");
    showing->add_option("FILE", options->file, "The bank file (.dvb)")->required();
    showing->add_flag("--json", options->json, "Print it as JSON, for `import` to read back");
    CLI::App* const importing = parser.add_subcommand("import", "Make a bank file from JSON");
    importing->add_option("JSON", options->source, "What `show --json` wrote, edited or not")
        ->required();
    importing->add_option("FILE", options->file, "The bank file (.dvb)")->required();
    for (CLI::App* const action : {saving, showing, importing})
        addPluginOption(*action, options->plugin);
    return [options, saving, importing] {
        if (saving->parsed())
            saveBank(*options);
        else if (importing->parsed())
            import(*options);
        else
            showBank(*options);
    };
}

} // namespace

Command bankCommand() {
    return {"bank", "Save, show or make bank files", defineBank};
}

} // namespace mirelon::tools
