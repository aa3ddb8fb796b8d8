// A plug-in of any format, as what makes its instances.
#pragma once

#include "shell/vst24.h"

#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::hosting {

enum class PluginFormat { vst2, lv2, clap };

constexpr const char* nameOf(PluginFormat format) noexcept {
    switch (format) {
    case PluginFormat::lv2:
        return "LV2";
    case PluginFormat::clap:
        return "CLAP";
    case PluginFormat::vst2:
        break;
    }
    return "VST 2";
}

// Whatever the format, an instance is a VST 2.4 effect record: those of the
// other formats are adapters' own.
class PluginModule {
  public:
    virtual ~PluginModule() = default;

    virtual PluginFormat format() const noexcept = 0;
    // What tells it from others: a file's whole path or a URI.
    virtual std::string name() const = 0;
    // The libraries that it consists of, the one that plays first.
    virtual std::vector<std::filesystem::path> libraries() const = 0;
    // A new instance, which lasts until effClose and no longer than the module.
    // Null when the plug-in makes none; adapters throw PluginError instead.
    virtual AEffect* makeInstance(audioMasterCallback host) const = 0;
};

} // namespace mirelon::hosting
