#include "tools/loadedplugin.h"

#include "hosting/ownprogram.h"
#include "tools/commanderror.h"

#include <cstdlib>
#include <sstream>
#include <system_error>
#include <vector>

namespace mirelon::tools {

namespace fs = std::filesystem;

namespace {

constexpr const char* pluginName = "mirelon.so";

std::vector<fs::path> searchFolders() {
    std::vector<fs::path> folders;
    const fs::path program = hosting::ownProgram();
    if (!program.empty()) {
        folders.push_back(program.parent_path() / ".." / "plugin");
        folders.push_back(program.parent_path() / MIRELON_PLUGIN_FOLDER_FROM_PROGRAM);
    }
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home != '\0')
        folders.push_back(fs::path(home) / ".vst");
    if (const char* const list = std::getenv("VST_PATH")) {
        std::istringstream parts(list);
        for (std::string folder; std::getline(parts, folder, ':');) {
            if (!folder.empty())
                folders.emplace_back(folder);
        }
    }
    folders.emplace_back("/usr/lib/vst");
    folders.emplace_back("/usr/local/lib/vst");
    return folders;
}

} // namespace

std::string pluginFile(const std::string& given) {
    if (!given.empty())
        return given;
    std::error_code failure;
    for (const fs::path& folder : searchFolders()) {
        const fs::path candidate = folder / pluginName;
        if (fs::is_regular_file(candidate, failure))
            return fs::weakly_canonical(candidate).string();
    }
    throw CommandError(std::string("no ") + pluginName +
                       " beside this program, in ~/.vst, VST_PATH, /usr/lib/vst or "
                       "/usr/local/lib/vst; name the plug-in with --plugin");
}

LoadedPlugin::LoadedPlugin(const std::string& given)
    : module(hosting::openPlugin(pluginFile(given)))
    , host(hosting::Recording::off)
    , effect(*module, host) {}

void LoadedPlugin::announce(int rate, VstIntPtr blockFrames) {
    host.answer(audioMasterGetSampleRate, rate);
    host.answer(audioMasterGetBlockSize, blockFrames);
}

} // namespace mirelon::tools
