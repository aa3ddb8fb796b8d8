// Buffers for all channels of an effect, of which a stereo signal uses two.
#pragma once

#include <cstddef>
#include <vector>

namespace mirelon::tools {

// One buffer for each of the effect's inputs or outputs. The first two carry
// the stereo signal; further inputs stay silent, further outputs are unheard.
template <typename Sample>
class ChannelBuffers {
  public:
    ChannelBuffers(int channels, std::size_t frames)
        : samples(static_cast<std::size_t>(channels) * frames) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(channels); ++i)
            starts.push_back(samples.data() + i * frames);
        starts.push_back(nullptr); // an array even for no channels
    }
    std::size_t channels() const { return starts.size() - 1; }
    Sample** pointers() { return starts.data(); }
    Sample* operator[](std::size_t channel) { return starts[channel]; }

  private:
    std::vector<Sample> samples;
    std::vector<Sample*> starts;
};

} // namespace mirelon::tools
