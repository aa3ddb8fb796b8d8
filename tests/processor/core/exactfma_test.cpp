#include "processor/core/exactfma.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using mirelon::kernels::exactFma;
using mirelon::signals::sameBits;
using mirelon::signals::Signal;

void expectFused(double a, double b, double c) {
    const double expected = std::fma(a, b, c);
    EXPECT_TRUE(sameBits(exactFma(a, b, c), expected))
        << std::hexfloat << a << " * " << b << " + " << c << " is " << expected << ", not "
        << exactFma(a, b, c);
}

TEST(ExactFma, AgreesWithTheLibraryForAnyBits) {
    std::vector<double> values(300000);
    mirelon::signals::fill<double>(values, Signal::anyBits, 1, 0);
    for (std::size_t i = 0; i + 3 <= values.size() && !testing::Test::HasFailure(); i += 3)
        expectFused(values[i], values[i + 1], values[i + 2]);
}

// Sums whose terms overlap, cancel, or just touch each other, at all scales.
TEST(ExactFma, AgreesWithTheLibraryWhereTheTermsMeet) {
    std::mt19937_64 random(3);
    const auto significand = [&] {
        const std::uint64_t mask = random() % 3 == 0 ? 0xFFF0000000000 : 0xFFFFFFFFFFFFF;
        return 1.0 + static_cast<double>(random() & mask) * 0x1p-52;
    };
    for (int i = 0; i < 400000 && !testing::Test::HasFailure(); ++i) {
        const int scale = static_cast<int>(random() % 2200) - 1100;
        const int split = static_cast<int>(random() % 200) - 100;
        const int distance = static_cast<int>(random() % 260) - 130;
        const double a = std::ldexp(significand(), scale / 2 + split);
        const double b = std::ldexp(significand(), scale - scale / 2 - split);
        double c = std::ldexp(significand(), scale + distance);
        if (random() % 4 == 0)
            c = a * b;
        if (random() % 8 == 0)
            c = std::nextafter(c, 0.0);
        expectFused(a, b, random() % 2 == 0 ? c : -c);
    }
}

// The product is 1 + 2^-i + 2^-j + 2^-(i+j); one of all its bits is left.
TEST(ExactFma, AgreesWithTheLibraryWhereAllButTheLastBitCancels) {
    for (const double scale : {1.0, 0x1p-480, 0x1p-500, 0x1p-511})
        for (int i = 1; i <= 52; ++i)
            for (int j = 1; j <= 52; ++j) {
                const double a = scale * (1.0 + std::ldexp(1.0, -i));
                const double b = scale * (1.0 + std::ldexp(1.0, -j));
                const double c = std::fma(a, b, -std::ldexp(scale * scale, -i - j));
                expectFused(a, b, -c);
                expectFused(-a, b, std::nextafter(c, 2.0));
                expectFused(a, -b, std::nextafter(c, 0.0));
            }
}

// Products one above and one below a power of two, which is half of the last bit
// of what they are added to.
TEST(ExactFma, AgreesWithTheLibraryNextToTheMiddleBetweenTwoNumbers) {
    for (int k = 0; k < 4; ++k)
        for (const double sign : {1.0, -1.0}) {
            const double c = sign * (0x1p52 + k);
            expectFused(0x1p24 + 1.0, 0x1p48 - 0x1p24 + 1.0, c * 0x1p73);
            expectFused(0x1p52 - 1.0, 0x1p52 + 1.0, c * 0x1p105);
        }
}

TEST(ExactFma, AgreesWithTheLibraryForSpecialNumbers) {
    using Limits = std::numeric_limits<double>;
    const double special[] = {0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              Limits::min(),
                              -Limits::denorm_min(),
                              Limits::max(),
                              0x1p-537,
                              0x1.8p-538,
                              0x1p512,
                              0.5,
                              Limits::infinity(),
                              Limits::denorm_min(),
                              -Limits::infinity(),
                              Limits::quiet_NaN(),
                              0x1.fffffffffffffp-1022};
    for (const double a : special)
        for (const double b : special)
            for (const double c : special)
                expectFused(a, b, c);
}

} // namespace
