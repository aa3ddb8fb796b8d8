#include "tools/audio/quantizer.h"

#include <cmath>
#include <limits>

namespace mirelon::tools {

namespace {

// Added and taken off again, rounds any smaller number to an integer: from here
// on doubles are one apart.
constexpr double rounder = 0x1.8p52;

struct Range {
    double scale;
    double lowest;
    double highest;
    double alignment; // to the upper end of the integer
};

template <typename Integer>
Range rangeOf(int bits) {
    const auto scale = static_cast<double>(std::uint64_t{1} << (bits - 1));
    const auto alignment =
        static_cast<double>(std::uint64_t{1} << (std::numeric_limits<Integer>::digits + 1 - bits));
    return {scale, -scale, scale - 1.0, alignment};
}

// Without a branch, so that the compiler can do several at a time. `over` grows
// by one for a sample that is limited.
template <typename Integer>
Integer quantised(double scaled, const Range& range, std::uint64_t& over) {
    const double rounded = (scaled + rounder) - rounder;
    const double raised = rounded < range.lowest ? range.lowest : rounded;
    const double within = raised > range.highest ? range.highest : raised;
    const double valid = std::isnan(scaled) ? 0.0 : within;
    over += static_cast<std::uint64_t>(rounded < range.lowest) +
            static_cast<std::uint64_t>(rounded > range.highest);
    return static_cast<Integer>(static_cast<std::int32_t>(valid * range.alignment));
}

} // namespace

Quantizer::Quantizer(int bits_, std::optional<std::uint64_t> ditherSeed)
    : bits(bits_) {
    if (ditherSeed)
        random.emplace(*ditherSeed);
}

template <typename Integer>
void Quantizer::convertTo(std::span<const double> left, std::span<const double> right,
                          std::span<Integer> out) {
    if (random) {
        convertDithered(left, right, out);
        return;
    }
    const Range range = rangeOf<Integer>(bits);
    std::uint64_t over = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        out[2 * i] = quantised<Integer>(left[i] * range.scale, range, over);
        out[2 * i + 1] = quantised<Integer>(right[i] * range.scale, range, over);
    }
    limited += over;
}

template <typename Integer>
void Quantizer::convertDithered(std::span<const double> left, std::span<const double> right,
                                std::span<Integer> out) {
    const Range range = rangeOf<Integer>(bits);
    // The difference of two even distributions is the triangular one.
    const auto noise = [this] {
        const std::uint64_t two = (*random)();
        const auto upper = static_cast<std::int64_t>(two >> 32U);
        const auto lower = static_cast<std::int64_t>(two & 0xFFFF'FFFFU);
        return static_cast<double>(upper - lower) * 0x1p-32;
    };
    for (std::size_t i = 0; i < left.size(); ++i) {
        out[2 * i] = quantised<Integer>(left[i] * range.scale + noise(), range, limited);
        out[2 * i + 1] = quantised<Integer>(right[i] * range.scale + noise(), range, limited);
    }
}

void Quantizer::convert(std::span<const double> left, std::span<const double> right,
                        std::span<std::int32_t> out) {
    convertTo(left, right, out);
}

void Quantizer::convert(std::span<const double> left, std::span<const double> right,
                        std::span<std::int16_t> out) {
    convertTo(left, right, out);
}

} // namespace mirelon::tools
