// A plug-in file in memory.
#pragma once

#include "shell/vst24.h"

#include <filesystem>
#include <memory>

namespace mirelon::hosting {

class Module {
  public:
    using EntryPoint = AEffect* (*)(audioMasterCallback);

    // Loads `file` with all its symbols bound. Throws PluginError when there is
    // no such file, when it is no shared library for this machine, or when it
    // exports neither `VSTPluginMain` nor `main`.
    explicit Module(const std::filesystem::path& file);

    EntryPoint entryPoint() const noexcept { return entry; }
    const std::filesystem::path& file() const noexcept { return path; }

    // The address of an exported name, null when there is none.
    void* symbol(const char* name) const noexcept;

  private:
    struct Close {
        void operator()(void* handle) const noexcept;
    };

    std::filesystem::path path;
    std::unique_ptr<void, Close> library;
    EntryPoint entry = nullptr;
};

} // namespace mirelon::hosting
