#include "tests/support/signals.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>

namespace mirelon::signals {
namespace {

// The library's generators are the same everywhere, its distributions are not.
using Random = std::mt19937_64;

template <typename Sample>
using Bits = std::conditional_t<sizeof(Sample) == 4, std::uint32_t, std::uint64_t>;

template <typename Sample>
Sample uniform(Random& random) {
    return static_cast<Sample>(static_cast<double>(random() >> 11) * 0x1p-52 - 1.0);
}

template <typename Sample>
Sample signOf(Random& random) {
    return (random() & 1) != 0 ? Sample{1} : Sample{-1};
}

template <typename Sample>
Sample denormal(Random& random) {
    constexpr int digits = std::numeric_limits<Sample>::digits - 1;
    auto bits = static_cast<Bits<Sample>>(random() >> (64 - digits));
    bits >>= random() % static_cast<unsigned>(digits);
    return signOf<Sample>(random) * std::bit_cast<Sample>(bits);
}

template <typename Sample>
Sample sampleOf(Signal signal, Random& random, std::size_t place) {
    constexpr Sample nan = std::numeric_limits<Sample>::quiet_NaN();
    constexpr Sample infinity = std::numeric_limits<Sample>::infinity();
    constexpr int top = std::numeric_limits<Sample>::max_exponent;
    switch (signal) {
    case Signal::noise:
    case Signal::mono:
        return uniform<Sample>(random);
    case Signal::silence:
        return Sample{0} * signOf<Sample>(random);
    case Signal::fullScale:
        return signOf<Sample>(random);
    case Signal::denormals:
        return denormal<Sample>(random);
    case Signal::tiny:
        return std::ldexp(uniform<Sample>(random), -static_cast<int>(random() % 130));
    case Signal::huge:
        return uniform<Sample>(random) * static_cast<Sample>(1e30);
    case Signal::extremes:
        return std::ldexp(uniform<Sample>(random), top - static_cast<int>(random() % 8));
    case Signal::sparseNan:
        return random() % 100 == 0 ? nan : uniform<Sample>(random);
    case Signal::sparseInf:
        return random() % 100 == 0 ? infinity * signOf<Sample>(random) : uniform<Sample>(random);
    case Signal::anyBits:
        return std::bit_cast<Sample>(static_cast<Bits<Sample>>(random()));
    case Signal::gated:
        return (place / 97) % 2 == 0 ? uniform<Sample>(random) : Sample{0};
    case Signal::mixture:
        break;
    }
    constexpr Signal parts[] = {Signal::noise,     Signal::silence, Signal::fullScale,
                                Signal::denormals, Signal::tiny,    Signal::huge};
    return sampleOf<Sample>(parts[random() % std::size(parts)], random, place);
}

} // namespace

std::string_view nameOf(Signal signal) {
    switch (signal) {
    case Signal::noise:
        return "noise";
    case Signal::silence:
        return "silence";
    case Signal::fullScale:
        return "full scale";
    case Signal::denormals:
        return "denormals";
    case Signal::tiny:
        return "tiny";
    case Signal::huge:
        return "huge";
    case Signal::extremes:
        return "extremes";
    case Signal::sparseNan:
        return "sparse NaN";
    case Signal::sparseInf:
        return "sparse infinities";
    case Signal::anyBits:
        return "any bits";
    case Signal::gated:
        return "gated";
    case Signal::mixture:
        return "mixture";
    case Signal::mono:
        return "mono";
    }
    return "";
}

template <typename Sample>
void fill(std::span<Sample> samples, Signal signal, unsigned seed, int channel) {
    const auto own = signal == Signal::mono ? 0U : static_cast<unsigned>(channel);
    Random random(seed * 2U + own);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = sampleOf<Sample>(signal, random, i);
}

template void fill(std::span<float>, Signal, unsigned, int);
template void fill(std::span<double>, Signal, unsigned, int);

template <typename Sample>
bool sameBits(Sample a, Sample b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<Bits<Sample>>(a) == std::bit_cast<Bits<Sample>>(b);
}

template bool sameBits(float, float);
template bool sameBits(double, double);

} // namespace mirelon::signals
