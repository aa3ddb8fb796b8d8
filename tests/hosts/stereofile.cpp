#include "tests/hosts/stereofile.h"

#include <random>
#include <sndfile.hh>
#include <stdexcept>

namespace mirelon::test {

Stereo material(std::size_t frames) {
    std::minstd_rand random(2026);
    const auto noise = [&random] {
        return static_cast<float>(random()) / static_cast<float>(std::minstd_rand::max()) - 0.5F;
    };
    Stereo audio;
    for (std::size_t i = 0; i < frames; ++i) {
        const float level = i < frames / 2 ? 0.25F : 0.01F;
        const float common = noise();
        audio.left.push_back(level * (common + noise()));
        audio.right.push_back(level * (common - 0.5F * noise()));
    }
    return audio;
}

void writeStereo(const std::filesystem::path& file, const Stereo& audio, int rate) {
    std::vector<float> frames;
    for (std::size_t i = 0; i < audio.left.size(); ++i) {
        frames.push_back(audio.left[i]);
        frames.push_back(audio.right[i]);
    }
    SndfileHandle handle(file.string(), SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, rate);
    if (handle.writef(frames.data(), std::ssize(audio.left)) != std::ssize(audio.left))
        throw std::runtime_error(file.string() + ": " + handle.strError());
}

std::vector<float> readMono(const std::filesystem::path& file) {
    SndfileHandle handle(file.string());
    if (handle.error() != SF_ERR_NO_ERROR || handle.channels() != 1 ||
        (handle.format() & SF_FORMAT_SUBMASK) != SF_FORMAT_FLOAT)
        throw std::runtime_error(file.string() + ": no file of one channel of floats");
    std::vector<float> samples(static_cast<std::size_t>(handle.frames()));
    handle.readf(samples.data(), handle.frames());
    return samples;
}

} // namespace mirelon::test
