#include "tests/tools/soundfile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <sndfile.h>

namespace mirelon::test {

void writeSound(const std::filesystem::path& file, const Sound& sound) {
    SF_INFO info{};
    info.format = sound.format;
    info.samplerate = sound.sampleRate;
    info.channels = sound.channels;
    SNDFILE* const handle = sf_open(file.c_str(), SFM_WRITE, &info);
    ASSERT_NE(handle, nullptr) << file << ": " << sf_strerror(nullptr);
    // Exact for integers: with clipping on, full scale is a power of two.
    sf_command(handle, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    const auto frames = static_cast<sf_count_t>(sound.frames());
    EXPECT_EQ(sf_writef_double(handle, sound.samples.data(), frames), frames);
    EXPECT_EQ(sf_close(handle), 0);
}

Sound readSound(const std::filesystem::path& file) {
    Sound sound;
    SF_INFO info{};
    SNDFILE* const handle = sf_open(file.c_str(), SFM_READ, &info);
    if (handle == nullptr) {
        ADD_FAILURE() << file << ": " << sf_strerror(nullptr);
        return sound;
    }
    sound.format = info.format;
    sound.sampleRate = info.samplerate;
    sound.channels = info.channels;
    sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    EXPECT_EQ(sf_readf_double(handle, sound.samples.data(), info.frames), info.frames);
    sf_close(handle);
    return sound;
}

Sound stereoNoise(int format, std::size_t frames, int bits, int sampleRate) {
    Sound sound{format, sampleRate, 2, {}};
    std::mt19937 random(4711);
    const long limit = 1L << (bits - 2);
    std::uniform_int_distribution<long> any(-limit, limit - 1);
    for (std::size_t i = 0; i < 2 * frames; ++i)
        sound.samples.push_back(std::ldexp(static_cast<double>(any(random)), 1 - bits));
    return sound;
}

} // namespace mirelon::test
