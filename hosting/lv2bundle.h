// An LV2 plug-in as its data files describe it; nothing of its code is loaded.
#pragma once

#include "hosting/lv2numbers.h"

#include <cstdint>
#include <filesystem>
#include <lilv/lilv.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace mirelon::hosting {

// One thread, but for the numbers.
class Lv2Bundle {
  public:
    // The plug-in of a URI, in a bundle or in any of those that LV2 hosts find
    // (LV2_PATH, otherwise the usual folders); the one plug-in of a bundle. All
    // throw PluginError when there is none, the last one also for several.
    Lv2Bundle(const std::filesystem::path& bundle, const std::string& uri);
    static std::unique_ptr<Lv2Bundle> ofUri(const std::string& uri);
    static std::unique_ptr<Lv2Bundle> inFolder(const std::filesystem::path& bundle);
    ~Lv2Bundle();
    Lv2Bundle(const Lv2Bundle&) = delete;
    Lv2Bundle& operator=(const Lv2Bundle&) = delete;

    const LilvPlugin* plugin() const noexcept { return found; }
    LilvWorld* world() const noexcept { return all.get(); }
    Lv2Numbers& numbers() const noexcept { return given; }
    std::string uri() const;
    std::uint32_t portNumber(const std::string& symbol) const;

    // The file of its code, and those of its X11 windows that need no feature of
    // the host's beyond what Lv2Window offers: empty when there is none.
    std::filesystem::path binary() const;
    std::filesystem::path windowBinary() const;
    std::string windowUri() const;

    // The features that the plug-in cannot do without.
    std::vector<std::string> requiredFeatures() const;

    // The labels of the presets by their URIs, and a preset's numbers by port
    // symbol.
    std::vector<std::string> presets() const;
    std::map<std::string, float> preset(const std::string& label) const;

  private:
    Lv2Bundle();
    void load(const std::filesystem::path& bundle);
    void take(const std::string& uri);
    const LilvUI* window(const LilvUIs* windows) const;

    struct Free {
        void operator()(LilvWorld* world) const { lilv_world_free(world); }
    };
    std::unique_ptr<LilvWorld, Free> all;
    const LilvPlugin* found = nullptr;
    mutable Lv2Numbers given;
};

} // namespace mirelon::hosting
