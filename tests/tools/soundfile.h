// Audio files for tests, whole in memory.
#pragma once

#include <filesystem>
#include <vector>

namespace mirelon::test {

struct Sound {
    int format = 0; // libsndfile's
    int sampleRate = 44100;
    int channels = 2;
    std::vector<double> samples; // interleaved

    double left(std::size_t frame) const { return samples[2 * frame]; }
    double right(std::size_t frame) const { return samples[2 * frame + 1]; }
    std::size_t frames() const { return samples.size() / static_cast<std::size_t>(channels); }
};

// Integer formats get the nearest integers. Both fail the test when they cannot.
void writeSound(const std::filesystem::path& file, const Sound& sound);
Sound readSound(const std::filesystem::path& file);

// Stereo noise on the grid of `bits`-bit integers that leaves 6 dB of headroom,
// so that sums and differences of its channels lie on that grid as well.
Sound stereoNoise(int format, std::size_t frames, int bits = 16, int sampleRate = 44100);

} // namespace mirelon::test
