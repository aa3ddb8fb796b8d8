// Audio through an effect in real time: a file that is played, stopped and sought in,
// or what comes in.
#pragma once

#include "hosting/effect.h"
#include "hosting/messagequeue.h"
#include "tools/audio/audiodevice.h"
#include "tools/audio/channelbuffers.h"
#include "tools/audio/equalloudness.h"
#include "tools/audio/material.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mirelon::tools {

// Every operation but fill is one thread's, and takes effect with the next block.
class Player : public AudioSource {
  public:
    // What the effect is told, and never given more of.
    static constexpr std::size_t blockFrames = 512;

    // `effect` may have any number of channels; it must outlive the player, and
    // nobody else may process with it meanwhile. The file is played from its begin,
    // over and over.
    Player(hosting::Effect& effect, Material file);
    // Live input at `rate` Hz.
    Player(hosting::Effect& effect, int rate);
    ~Player() override;

    // In live input, a stop is silence.
    void play();
    void stop() { playing = false; }
    bool isPlaying() const { return playing; }
    // Without, the end of the file stops it there; playing goes on from the begin.
    void loop(bool wanted) { looping = wanted; }
    bool isLooping() const { return looping; }
    // A frame beyond the end is the end. Nothing happens in live input.
    void seek(std::int64_t frame);
    // The frame that is heard next; the number of frames that came in.
    std::int64_t position() const;
    // Of the file; nothing in live input.
    std::optional<std::int64_t> length() const;
    int rate() const { return sampleRate; }

    // Hears the signal around the effect, as late as the effect has it.
    void bypass(bool wanted) { bypassed = wanted; }
    bool isBypassed() const { return bypassed; }

    // What either signal is multiplied by.
    void setGains(LoudnessGains gains);

    // Hands all that was played since the last call to `meter`. What is not fetched
    // for seconds is lost.
    void measure(EqualLoudness& meter);

    void fill(std::span<float> heard, std::span<const float> recorded) noexcept override;

  private:
    // One block of both signals, for the thread that measures.
    struct Heard {
        std::array<std::array<float, blockFrames>, 2> original;
        std::array<std::array<float, blockFrames>, 2> processed;
    };

    Player(hosting::Effect& effect, Material file, int rate);
    void obeySeek() noexcept;
    void takeInput(std::size_t frames, std::span<const float> recorded) noexcept;
    void takeRecorded(std::size_t frames, std::span<const float> recorded) noexcept;
    void delayOriginal(std::size_t frames) noexcept;
    void keepForMeasuring(std::size_t frames) noexcept;
    void mix(std::span<float> heard) noexcept;

    static constexpr std::int64_t noSeek = -1;

    hosting::Effect& effect;
    const Material material;
    const bool live;
    const int sampleRate;

    // From the controlling thread.
    std::atomic<bool> playing{true};
    std::atomic<bool> looping{true};
    std::atomic<bool> bypassed{false};
    std::atomic<std::int64_t> wantedPosition{noSeek};
    std::atomic<float> processedGain{1.0F};
    std::atomic<float> originalGain{1.0F};
    // To it.
    std::atomic<std::int64_t> nextFrame{0};
    hosting::MessageQueue measured;

    // The device's thread's.
    ChannelBuffers<float> inputs;
    ChannelBuffers<float> outputs;
    std::array<std::vector<float>, 2> taken;    // what goes in, whatever inputs there are
    std::array<std::vector<float>, 2> original; // the same, as late as the effect has it
    std::array<std::vector<float>, 2> delayed;
    std::size_t delayPosition = 0;
    Heard block{};
    // What is heard of each, moved in small steps so that nothing clicks.
    float processedShare = 1.0F;
    float originalShare = 0.0F;
    const float shareStep;
};

} // namespace mirelon::tools
