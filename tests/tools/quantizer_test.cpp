#include "tools/audio/quantizer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace mirelon::tools {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Sample by sample, in the widest type there is.
std::int64_t nearestInteger(double sample, int bits) {
    const long double scale = std::ldexp(1.0L, bits - 1);
    const long double rounded = std::nearbyintl(static_cast<long double>(sample) * scale);
    if (rounded > scale - 1)
        return static_cast<std::int64_t>(scale) - 1;
    if (rounded < -scale)
        return -static_cast<std::int64_t>(scale);
    return static_cast<std::int64_t>(rounded);
}

// Samples on, between and half-way between the integers, beyond full scale and far
// beyond.
std::vector<double> awkwardSamples(int bits) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> any(-1.1, 1.1);
    const double scale = std::ldexp(1.0, bits - 1);
    std::vector<double> samples{
        0.0,    -0.0,     1.0,  -1.0,  1.0 - 0.5 / scale,  1.0 - 0.6 / scale,
        5e-324, infinity, 1e18, -1e18, -1.0 - 0.5 / scale, -infinity,
        1e308,  -1e308,   2.0,  -2.0,  -1.0 - 0.6 / scale, 1.0 / scale};
    for (int i = 0; i < 20000; ++i) {
        const double sample = any(random);
        samples.push_back(sample);
        samples.push_back((std::floor(sample * scale) + 0.5) / scale);
    }
    return samples;
}

template <typename Integer>
std::vector<Integer> converted(Quantizer& quantizer, const std::vector<double>& left,
                               const std::vector<double>& right) {
    std::vector<Integer> out(2 * left.size());
    quantizer.convert(left, right, out);
    return out;
}

TEST(Quantizer, RoundsToNearestAndLimitsAtEveryDepth) {
    for (const int bits : {8, 16, 20, 24, 32}) {
        const std::vector<double> left = awkwardSamples(bits);
        const std::vector<double> right(left.rbegin(), left.rend());
        Quantizer quantizer(bits);
        const auto out = converted<std::int32_t>(quantizer, left, right);
        const std::int64_t step = std::int64_t{1} << (32 - bits);
        for (std::size_t i = 0; i < left.size(); ++i) {
            ASSERT_EQ(out[2 * i], nearestInteger(left[i], bits) * step) << bits << ' ' << left[i];
            ASSERT_EQ(out[2 * i + 1], nearestInteger(right[i], bits) * step) << bits;
        }
    }
}

TEST(Quantizer, MakesTheSameIntegersIn16BitsAsIn32) {
    for (const int bits : {8, 16}) {
        const std::vector<double> samples = awkwardSamples(bits);
        Quantizer wide(bits);
        Quantizer narrow(bits);
        const auto expected = converted<std::int32_t>(wide, samples, samples);
        const auto out = converted<std::int16_t>(narrow, samples, samples);
        for (std::size_t i = 0; i < out.size(); ++i)
            ASSERT_EQ(out[i] * 65536, expected[i]) << bits;
        EXPECT_EQ(narrow.clipped(), wide.clipped());
    }
}

TEST(Quantizer, CountsWhatItLimits) {
    for (const int bits : {16, 24, 32}) {
        const std::vector<double> samples = awkwardSamples(bits);
        const long double scale = std::ldexp(1.0L, bits - 1);
        std::uint64_t beyond = 0;
        for (const double sample : samples) {
            const long double rounded = std::nearbyintl(static_cast<long double>(sample) * scale);
            beyond += rounded > scale - 1 || rounded < -scale ? 1 : 0;
        }
        Quantizer quantizer(bits);
        converted<std::int32_t>(quantizer, samples, samples);
        EXPECT_EQ(quantizer.clipped(), 2 * beyond) << bits;
    }
}

TEST(Quantizer, MakesSilenceOfWhatIsNoNumber) {
    Quantizer quantizer(24);
    EXPECT_EQ(converted<std::int32_t>(quantizer, {NAN, 0.5}, {0.25, -NAN}),
              (std::vector<std::int32_t>{0, 1 << 29, 1 << 30, 0}));
    EXPECT_EQ(quantizer.clipped(), 0U);
}

TEST(Quantizer, GivesBackWhatWasReadFromIntegers) {
    std::vector<double> samples;
    std::vector<std::int16_t> expected;
    for (int value = -32768; value < 32768; ++value) {
        samples.push_back(value / 32768.0);
        expected.insert(expected.end(), 2, static_cast<std::int16_t>(value));
    }
    Quantizer quantizer(16);
    EXPECT_EQ(converted<std::int16_t>(quantizer, samples, samples), expected);
    EXPECT_EQ(quantizer.clipped(), 0U);
}

TEST(Quantizer, DithersTheSameForTheSameSeed) {
    const std::vector<double> samples(1000, 0.3 / 32768.0);
    const auto with = [&](std::uint64_t seed) {
        Quantizer quantizer(16, seed);
        return converted<std::int16_t>(quantizer, samples, samples);
    };
    EXPECT_EQ(with(1), with(1));
    EXPECT_NE(with(1), with(2));
}

// What triangular dither is for: neither the mean nor the strength of the error
// depends on where between two integers the signal lies.
TEST(Quantizer, DithersSoThatTheErrorDoesNotDependOnTheSignal) {
    constexpr std::size_t count = 200000;
    for (const double part : {0.0, 0.1, 0.25, 0.5, 0.9}) {
        const std::vector<double> samples(count, (7.0 + part) / 32768.0);
        Quantizer quantizer(16, 1);
        const auto out = converted<std::int16_t>(quantizer, samples, samples);
        double sum = 0.0;
        double squares = 0.0;
        for (const std::int16_t value : out) {
            const double error = value - (7.0 + part);
            EXPECT_LT(std::abs(error), 1.5);
            sum += error;
            squares += error * error;
        }
        const double total = 2.0 * count;
        EXPECT_NEAR(sum / total, 0.0, 0.005) << part;
        // Rounding's 1/12 of a square step and the triangle's 1/6.
        EXPECT_NEAR(squares / total, 0.25, 0.005) << part;
    }
}

} // namespace
} // namespace mirelon::tools
