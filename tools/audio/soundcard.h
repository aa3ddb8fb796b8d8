// The machine's sound cards and sound servers.
#pragma once

#include "tools/audio/audiodevice.h"

#include <memory>
#include <string>
#include <vector>

namespace mirelon::tools {

// One device that plays.
struct SoundCardDescription {
    std::string system; // "ALSA", "JACK" and the like
    std::string name;
    unsigned outputs = 0; // channels
    unsigned inputs = 0;
    bool usual = false; // played on when nobody names a device
    std::vector<unsigned> rates;
};

// All devices that play, those of the first system that has any in front.
std::vector<SoundCardDescription> soundCards();

enum class Recorded { nothing, input };

class SoundCard : public AudioDevice {
  public:
    // The device of this name, else the only one with `name` in its name, whatever
    // its letters' case; the usual one when it is empty. With an input where asked.
    // Throws CommandError when there is none.
    SoundCard(const std::string& name, Recorded recorded);
    ~SoundCard() override;

    std::string name() const override;
    int usualRate() const override;
    void start(AudioSource& source, int rate) override;

  private:
    class Stream;
    std::unique_ptr<Stream> stream;
};

} // namespace mirelon::tools
