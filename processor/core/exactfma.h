// a * b + c with one rounding, in integers: for processors without the
// instruction, where floating-point arithmetic cannot tell the result.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

namespace mirelon::kernels {

inline int leadingZeros(unsigned __int128 v) noexcept {
    const auto high = static_cast<std::uint64_t>(v >> 64);
    return high != 0 ? std::countl_zero(high)
                     : 64 + std::countl_zero(static_cast<std::uint64_t>(v));
}

// A finite number as significand * 2^exponent.
struct Unpacked {
    explicit Unpacked(double value) noexcept {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const auto field = static_cast<int>(bits >> 52 & 0x7FF);
        negative = bits >> 63 != 0;
        significand = bits & 0xFFFFFFFFFFFFF;
        if (field != 0)
            significand |= std::uint64_t{1} << 52;
        exponent = (field != 0 ? field : 1) - 1075;
    }

    Unpacked(unsigned __int128 theSignificand, int theExponent, bool isNegative) noexcept
        : significand(theSignificand)
        , exponent(theExponent)
        , negative(isNegative) {}

    // Moves the leading bit to where one more is free for a carry.
    void normalise() noexcept {
        const int shift = leadingZeros(significand) - 2;
        significand <<= shift;
        exponent -= shift;
    }

    unsigned __int128 significand;
    int exponent;
    bool negative;
};

inline bool isFinite(double value) noexcept {
    return (std::bit_cast<std::uint64_t>(value) >> 52 & 0x7FF) != 0x7FF;
}

// significand / 2^shift, to the nearest integer, plus something below its last bit
// if `more`. The shift is 1 to 127.
inline std::uint64_t shiftedDown(unsigned __int128 significand, int shift, bool more) noexcept {
    const unsigned __int128 one = 1;
    const unsigned __int128 rest = significand & ((one << shift) - 1);
    const unsigned __int128 half = one << (shift - 1);
    const auto result = static_cast<std::uint64_t>(significand >> shift);
    const bool up = rest > half || (rest == half && (more || (result & 1) != 0));
    return up ? result + 1 : result;
}

// The double nearest to significand * 2^exponent, plus something below the last
// bit if `more`. The significand is not zero; the exponent is no less than that of
// the smallest number when its leading bit is moved up.
inline double rounded(unsigned __int128 significand, int exponent, bool more,
                      bool negative) noexcept {
    constexpr int least = -1074; // exponent of the last bit of a denormal number
    const int top = 127 - leadingZeros(significand) + exponent;
    const int last = std::max(top - 52, least);
    const int shift = last - exponent;
    const std::uint64_t kept = shift <= 0 ? static_cast<std::uint64_t>(significand << -shift)
                                          : shiftedDown(significand, shift, more);
    // The significand's leading bit, if it has one, adds the last unit of the
    // exponent field.
    const std::uint64_t result = kept + (static_cast<std::uint64_t>(last - least) << 52);
    constexpr std::uint64_t infinity = std::uint64_t{0x7FF} << 52;
    return std::bit_cast<double>(std::min(result, infinity) | std::uint64_t{negative} << 63);
}

inline double exactFma(double a, double b, double c) noexcept {
    if (!isFinite(a) || !isFinite(b) || a == 0.0 || b == 0.0)
        return a * b + c; // nothing is rounded before the sum
    if (!isFinite(c))
        return c;
    if (c == 0.0)
        return a * b;

    const Unpacked x(a);
    const Unpacked y(b);
    Unpacked product(x.significand * y.significand, x.exponent + y.exponent,
                     x.negative != y.negative);
    Unpacked addend(c);
    product.normalise();
    addend.normalise();
    const bool productIsLarger =
        product.exponent > addend.exponent ||
        (product.exponent == addend.exponent && product.significand >= addend.significand);
    const Unpacked& large = productIsLarger ? product : addend;
    const Unpacked& small = productIsLarger ? addend : product;

    // At 127 nothing is left of the smaller.
    const int distance = std::min(large.exponent - small.exponent, 127);
    const unsigned __int128 shifted = small.significand >> distance;
    const bool more = shifted << distance != small.significand;
    if (large.negative == small.negative)
        return rounded(large.significand + shifted, large.exponent, more, large.negative);
    // What was shifted out is taken off as a whole unit of which a part remains.
    const unsigned __int128 difference = large.significand - shifted - (more ? 1 : 0);
    if (difference == 0)
        return 0.0;
    return rounded(difference, large.exponent, more, large.negative);
}

} // namespace mirelon::kernels
