// A CLAP plug-in file in memory.
#pragma once

#include <clap/entry.h>
#include <clap/plugin-factory.h>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace mirelon::hosting {

class ClapLibrary {
  public:
    // Loads `file` with all its symbols bound and initialises it. Throws
    // PluginError when that is not possible or when it makes no plug-ins.
    explicit ClapLibrary(const std::filesystem::path& file);
    ~ClapLibrary();
    ClapLibrary(const ClapLibrary&) = delete;
    ClapLibrary& operator=(const ClapLibrary&) = delete;

    const clap_plugin_entry& entry() const noexcept { return *start; }
    const clap_plugin_factory& factory() const noexcept { return *maker; }
    const std::filesystem::path& file() const noexcept { return path; }

    // The identifiers of the plug-ins in it.
    std::vector<std::string> ids() const;
    // Of the first one. Throws PluginError when there is none.
    std::string firstId() const;

  private:
    struct Close {
        void operator()(void* handle) const noexcept;
    };

    std::filesystem::path path;
    std::unique_ptr<void, Close> library;
    const clap_plugin_entry* start = nullptr;
    const clap_plugin_factory* maker = nullptr;
};

} // namespace mirelon::hosting
