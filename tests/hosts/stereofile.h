// Two channels of single-precision samples, and the WAV files that hosts read
// and write them as.
#pragma once

#include <filesystem>
#include <vector>

namespace mirelon::test {

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
};

// Half a second of silence would hide much: noise in both channels, correlated
// in part, with a louder and a softer half.
Stereo material(std::size_t frames);

void writeStereo(const std::filesystem::path& file, const Stereo& audio, int rate);

// One channel of a file of one channel; throws when it is another kind of file.
std::vector<float> readMono(const std::filesystem::path& file);

} // namespace mirelon::test
