// A VST 2.4 plug-in file in memory.
#pragma once

#include "hosting/pluginmodule.h"

#include <filesystem>
#include <memory>

namespace mirelon::hosting {

class Module final : public PluginModule {
  public:
    using EntryPoint = AEffect* (*)(audioMasterCallback);

    // Loads `file` with all its symbols bound. Throws PluginError when there is
    // no such file, when it is no shared library for this machine, or when it
    // exports neither `VSTPluginMain` nor `main`.
    explicit Module(const std::filesystem::path& file);

    PluginFormat format() const noexcept override { return PluginFormat::vst2; }
    std::string name() const override { return path.string(); }
    std::vector<std::filesystem::path> libraries() const override { return {path}; }
    AEffect* makeInstance(audioMasterCallback host) const override { return entry(host); }

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
