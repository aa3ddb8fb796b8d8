// An audio file through an effect in real time, over and over.
#pragma once

#include "hosting/effect.h"
#include "tools/audio/audioreader.h"
#include "tools/audio/channelbuffers.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace mirelon::tools {

enum class Output { soundSystem, none };

// Runs from construction to destruction on a thread of its own (the sound
// system's, or one that keeps time when there is none). The effect may have any
// number of channels. `effect` must outlive
// it, and nobody else may process with it meanwhile.
class LiveFeed {
  public:
    // Reads the whole file. Without a sound system that takes the file's rate,
    // falls back to no output. Throws CommandError when the file cannot be read
    // or is empty.
    LiveFeed(hosting::Effect& effect, const std::filesystem::path& file, Output output);
    ~LiveFeed();
    LiveFeed(const LiveFeed&) = delete;
    LiveFeed& operator=(const LiveFeed&) = delete;

    // The device that plays, for people; empty without one.
    const std::string& device() const noexcept { return deviceName; }

  private:
    class SoundDevice;

    // The next `frames` frames, at most blockFrames, processed into the outputs.
    void process(std::size_t frames);
    // What is heard of the outputs: the first two, or the only one on both sides;
    // null for an effect without outputs.
    const float* heard(std::size_t side);
    bool openSoundDevice();
    void keepTime();

    static constexpr std::size_t blockFrames = 512;

    hosting::Effect& effect;
    int rate;
    std::vector<float> material[2];
    std::size_t position = 0;
    ChannelBuffers<float> inputs;
    ChannelBuffers<float> outputs;
    std::string deviceName;
    std::unique_ptr<SoundDevice> sound;
    std::atomic<bool> ending{false};
    std::thread timekeeper;
};

} // namespace mirelon::tools
