#include "tools/audio/loudness.h"

#include "tools/audio/stereostatistics.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace mirelon::tools {
namespace {

std::vector<double> sine(double frequency, double phase, double dbfs, int seconds, int rate) {
    std::vector<double> samples(static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            std::pow(10.0, dbfs / 20.0) *
            std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(i) / rate + phase);
    return samples;
}

// The first of EBU Tech 3341's test signals.
TEST(Loudness, OfAStereoSineAtMinus23IsMinus23) {
    const auto tone = sine(1000.0, 0.0, -23.0, 20, 48000);
    Loudness loudness(48000);
    loudness.add(tone, tone);
    EXPECT_NEAR(loudness.integrated(), -23.0, 0.1);
}

// A quarter of the rate, half-way between two samples: the samples are 3 dB lower.
TEST(Loudness, FindsThePeakBetweenTheSamples) {
    const auto tone = sine(12000.0, std::numbers::pi / 4.0, -6.0, 1, 48000);
    Loudness loudness(48000);
    loudness.add(tone, std::vector<double>(tone.size()));
    EXPECT_NEAR(decibels(loudness.truePeak()), -6.0, 0.4);
}

TEST(Loudness, OfSilenceIsMinusInfinity) {
    Loudness loudness(44100);
    EXPECT_EQ(loudness.integrated(), -INFINITY);
    loudness.add(std::vector<double>(44100), std::vector<double>(44100, NAN));
    EXPECT_EQ(loudness.integrated(), -INFINITY);
    EXPECT_EQ(loudness.truePeak(), 0.0);
}

} // namespace
} // namespace mirelon::tools
