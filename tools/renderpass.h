// Sending an audio file through an effect.
#pragma once

#include "tools/audio/audioreader.h"
#include "tools/effectsettings.h"
#include "tools/loadedplugin.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

constexpr int largestRenderBlock = 1 << 20; // frames

struct RenderOptions {
    std::string plugin;
    std::string input;
    std::string chunk;      // a file; empty: none
    std::string bankFile;   // a .dvb file; empty: none
    std::string presetFile; // a .dvp file; empty: none
    EffectSettings settings;
    std::vector<TypedSetting> ramps; // NAME=FIRST:LAST
    int block = 1024;                // 1 to largestRenderBlock frames
    bool useDouble = false;
    bool strict = false; // an input of which a part is missing is refused
};

// Receives what goes into the effect and what comes out of it, block by block
// and in order; both spans of a call are equally long.
struct RenderSink {
    using Block = std::function<void(std::span<const double> left, std::span<const double> right)>;
    Block input;
    Block output;
};

// An opened input and an effect with its state in place: the chunk first, then
// the bank file, the preset, the preset file (into that preset) and the
// settings, each over the one before.
class RenderPass {
  public:
    // Throws CommandError or hosting::HostingError when something is not there
    // or not as it should be. Parameters move only along a length that is known.
    explicit RenderPass(const RenderOptions& options);

    const AudioReader& input() const noexcept { return reader; }

    std::string effectName() const { return plugin.effect.name(); }

    // What the effect was told, for people: "preset 1 "swapped", width 200.00 %".
    const std::string& settingsText() const noexcept { return told; }

    // What a user should know of how the settings were taken.
    const std::vector<std::string>& remarks() const noexcept { return remarked; }

    // Processes the whole file, once per object. The effect's latency is taken
    // out: as many frames come out as go in. Memory does not grow with length.
    // Throws CommandError when a strict pass finds the end of a pipe missing.
    void run(const RenderSink& sink);

  private:
    template <typename Sample>
    void stream(const RenderSink& sink);
    void applyState(const RenderOptions& options);
    void refuseShortfall() const;
    void moveRamps(std::int64_t blockStart);

    AudioReader reader;
    LoadedPlugin plugin;
    std::size_t blockSize;
    bool useDouble;
    bool strict;
    std::vector<ParameterRamp> ramps;
    std::string told;
    std::vector<std::string> remarked;
};

} // namespace mirelon::tools
