// A clock in a sound card's place.
#pragma once

#include "tools/audio/audiodevice.h"

#include <atomic>
#include <thread>

namespace mirelon::tools {

// Asks for blocks as fast as they would be heard, and throws them away.
class SilentDevice : public AudioDevice {
  public:
    SilentDevice() = default;
    ~SilentDevice() override;

    std::string name() const override { return {}; }
    int usualRate() const override { return 48000; }
    void start(AudioSource& source, int rate) override;

  private:
    std::atomic<bool> ending{false};
    std::thread clock;
};

} // namespace mirelon::tools
