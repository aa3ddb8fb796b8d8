// chunk save|load|show: the host's side of the state chunk.
#include "hosting/effectbank.h"
#include "tools/chunkfile.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/loadedplugin.h"
#include "tools/parametervalue.h"
#include "tools/replacedfile.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

using ChunkOptions = StateFileOptions;

void saveChunk(const ChunkOptions& options) {
    LoadedPlugin plugin(options.plugin);
    applySettings(plugin.effect, options.settings);
    const std::vector<std::byte> state = stateOf(plugin.effect);
    ReplacedFile file(options.file);
    file.write(state.data(), state.size());
    file.commit();
    std::printf("%s: %zu bytes\n", options.file.c_str(), state.size());
}

void loadChunk(const ChunkOptions& options) {
    LoadedPlugin plugin(options.plugin);
    loadChunkFile(plugin.effect, options.file);
    std::printf("%s: taken, program \"%s\"\n", options.file.c_str(),
                plugin.effect.programName().c_str());
    for (VstInt32 i = 0; i < plugin.effect.record().numParams; ++i)
        std::printf("  %s\n", parameterText(plugin.effect, i).c_str());
}

void showChunk(const ChunkOptions& options) {
    LoadedPlugin plugin(options.plugin);
    const std::vector<std::byte> bytes = readChunkFile(options.file);
    const std::size_t size = bytes.size();
    const auto bank = hosting::EffectBank::in(bytes, plugin.effect.record().uniqueID);
    if (!bank) {
        std::printf("%s: %zu bytes, of a form only the plug-in knows\n", options.file.c_str(),
                    size);
        return;
    }
    const std::size_t count = bank->presets.size();
    const std::size_t current = bank->current.value_or(count);
    std::printf("%s: %zu bytes, a bank of %zu presets, current %zu\n", options.file.c_str(), size,
                count, current);
    std::printf("  %-2s  %-24s", "", "");
    for (const std::string& name : parameterNames(plugin.effect))
        std::printf(" %9s", name.c_str());
    std::printf("\n");
    for (std::size_t i = 0; i < count; ++i) {
        const PresetRecord& preset = bank->presets[i];
        std::printf("%c %2zu  %-24s", i == current ? '>' : ' ', i, preset.name().data());
        for (int j = 0; j < kNumPresetParams; ++j)
            std::printf(" %9.4g", static_cast<double>(preset.value(j)));
        std::printf("\n");
    }
}

Run defineChunk(CLI::App& parser) {
    const auto options = std::make_shared<ChunkOptions>();
    parser.require_subcommand(1);
    const auto add = [&](const char* name, const char* summary) {
        CLI::App* const action = parser.add_subcommand(name, summary);
        action->add_option("FILE", options->file, "The state, byte for byte")->required();
        addPluginOption(*action, options->plugin);
        return action;
    };
    CLI::App* const saving = add("save", "Write the plug-in's state to a file");
    addSettingsOptions(*saving, options->settings);
    CLI::App* const loading = add("load", "Give the plug-in a state and say what it makes of it");
    add("show", "List what a saved state holds");
    return [options, saving, loading] {
        if (saving->parsed())
            saveChunk(*options);
        else if (loading->parsed())
            loadChunk(*options);
        else
            showChunk(*options);
    };
}

} // namespace

Command chunkCommand() {
    return {"chunk", "Save, load or show the plug-in's state", defineChunk};
}

} // namespace mirelon::tools
