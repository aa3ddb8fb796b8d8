// What asks for audio in real time: a sound card, or a clock where nothing is to
// be heard.
#pragma once

#include <span>
#include <string>

namespace mirelon::tools {

// Makes what is heard.
class AudioSource {
  public:
    AudioSource() = default;
    virtual ~AudioSource() = default;
    AudioSource(const AudioSource&) = delete;
    AudioSource& operator=(const AudioSource&) = delete;

    // The next frames, left and right by turns. `recorded` are the frames that came
    // in with them, as many; empty without an input. On the device's thread, which
    // must not wait: no allocation, lock or file.
    virtual void fill(std::span<float> heard, std::span<const float> recorded) noexcept = 0;
};

// Control by one thread.
class AudioDevice {
  public:
    AudioDevice() = default;
    virtual ~AudioDevice() = default; // asks no more
    AudioDevice(const AudioDevice&) = delete;
    AudioDevice& operator=(const AudioDevice&) = delete;

    // For people; empty for what is not heard.
    virtual std::string name() const = 0;

    // In Hz, for a source that has no rate of its own.
    virtual int usualRate() const = 0;

    // Asks `source` for frames from now on, once; it must outlive the device. Throws
    // CommandError when the device does not take this rate.
    virtual void start(AudioSource& source, int rate) = 0;
};

} // namespace mirelon::tools
