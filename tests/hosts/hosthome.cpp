#include "tests/hosts/hosthome.h"

#include <chrono>

namespace mirelon::test {
namespace fs = std::filesystem;

HostHome::HostHome(const fs::path& plugin)
    : pluginFile(folder / (plugin.extension() == ".clap" ? "home/.clap/mirelon.clap"
                                                         : "home/.vst/mirelon.so")) {
    fs::create_directories(pluginFile.parent_path());
    for (const char* name : {"none", "run"})
        fs::create_directories(folder / name);
    fs::permissions(folder / "run", fs::perms::owner_all);
    fs::copy_file(plugin, pluginFile);
    // Ardour takes a scan from the second in which the file was written as one
    // of an older file.
    fs::last_write_time(pluginFile, fs::file_time_type::clock::now() - std::chrono::minutes(2));
}

Environment HostHome::environment(const Environment& more) const {
    const std::string plugins = pluginFile.parent_path();
    const std::string none = folder / "none";
    Environment all = more;
    all.insert(own.begin(), own.end());
    all.merge(Environment{{"HOME", folder / "home"},
                          {"XDG_RUNTIME_DIR", folder / "run"},
                          {"TMPDIR", folder / "run"},
                          {"PATH", "/usr/local/bin:/usr/bin:/bin"},
                          {"LANG", "C.UTF-8"},
                          {"LXVST_PATH", plugins},
                          {"VST_PATH", plugins},
                          {"VST3_PATH", none},
                          {"LADSPA_PATH", none},
                          {"DSSI_PATH", none},
                          {"LV2_PATH", none},
                          {"CLAP_PATH", none}});
    return all;
}

Outcome HostHome::run(const std::vector<std::string>& command, std::chrono::seconds limit,
                      const Environment& more) const {
    return Program(command, environment(more), folder / "log").wait(limit);
}

} // namespace mirelon::test
