// The matrix for groups whose products may get denormal. A multiplication with a
// denormal operand or result costs some processors 80 cycles and more; conversions
// and additions of denormals do not. So the group is computed where nothing is
// denormal, and every result is rounded to what it would have been: same bits,
// bounded cost. Local to the file that includes it.
//
// An example in double. The sample 5 * 2^-1074 is denormal; times the factor 0.3F,
// which is 0.3000000119..., it is exactly 1.50000006 * 2^-1074, between two
// neighbours, and has to become 2 * 2^-1074. So:
//   2^600 times larger, the sample is      5 * 2^-474, a normal number
//   times the factor                       1.50000006 * 2^-474, still one
//   plus 2^-422, whose last bit is 2^-474  2^-422 + 2 * 2^-474: rounded as required
//   less 2^-422                            2 * 2^-474, exactly
//   2^600 times smaller                    2 * 2^-1074
// A product that was rounded before it came to the third line could stand on a
// half there that it does not have: what was lost decides then.
//
// Long for a header: the steps are one argument and would not be followed apart.
#pragma once

#include "processor/core/denormallimit.h"
#include "processor/core/stereomatrix.h"

namespace mirelon::kernels {
namespace {

template <typename Sample>
class UndenormalMatrix;

// Float samples are computed in double: products of two floats are exact there,
// and sums are rounded to odd before they are rounded to float.
template <>
class UndenormalMatrix<float> {
    using Vector = Four::Vector;

  public:
    static constexpr int count = 4;

    explicit UndenormalMatrix(const Coefficients& c)
        : gains(inputGains(c))
        , coefficients(c) {}

    static bool fits(const float*, const float*) { return true; }

    void operator()(float* left, float* right) const {
        const Coefficients& c = coefficients;
        const Vector first = times(Four::load(left), gains.first);
        const Vector second = times(Four::load(right), gains.second);
        const Vector side = times(Four::toFloatAndBack(first - second), c.widthSide);
        const Vector mid = times(Four::toFloatAndBack(first + second), 0.5F);
        const Vector l = fused(times(side, c.stabilityL), c.centerR, mid);
        const Vector r = fused(times(side, c.stabilityR), -c.centerL, mid);
        Four::store(left, times(times(l, c.balanceL), c.centerL));
        Four::store(right, times(times(r, c.balanceR), c.centerR));
    }

  private:
    static Vector times(Vector a, float b) {
        return Four::toFloatAndBack(a * Four::all(static_cast<double>(b)));
    }
    static Vector fused(Vector a, float b, Vector c) {
        const Vector product = a * Four::all(static_cast<double>(b));
        const Vector sum = product + c;
        const Vector part = sum - product;
        const Vector lost = (product - (sum - part)) + (c - part);
        return Four::toFloatAndBack(Four::toOdd(sum, lost));
    }

    InputGains gains;
    Coefficients coefficients;
};

// Double samples are computed 2^600 times larger. What is denormal without the
// scale is a multiple of `grid` with it, and is rounded to one by adding and
// taking off `smallest`, whose last bit is the grid.
template <>
class UndenormalMatrix<double> {
    using L = Lanes<double>;
    using Vector = L::Vector;

  public:
    static constexpr int count = L::count;

    explicit UndenormalMatrix(const Coefficients& c)
        : gains(inputGains(c))
        , moderate(isModerate(largest(c)))
        , coefficients(c) {}

    // Whether nothing overflows on the larger scale.
    bool fits(const double* left, const double* right) const {
        bool all = moderate;
        for (int i = 0; i < count; ++i)
            all = all && isModerate(left[i]) && isModerate(right[i]);
        return all;
    }

    void operator()(double* left, double* right) const {
        const Coefficients& c = coefficients;
        const Vector first = times(enlarged(L::load(left)), gains.first);
        const Vector second = times(enlarged(L::load(right)), gains.second);
        const Vector side = times(first - second, c.widthSide);
        const Vector mid = times(first + second, 0.5F);
        const Vector l = fused(times(side, c.stabilityL), c.centerR, mid);
        const Vector r = fused(times(side, c.stabilityR), -c.centerL, mid);
        L::store(left, reduced(times(times(l, c.balanceL), c.centerL)));
        L::store(right, reduced(times(times(r, c.balanceR), c.centerR)));
    }

  private:
    static constexpr double scale = 0x1p600;
    static constexpr double smallest = 0x1p-1022 * scale; // normal number
    static constexpr double grid = 0x1p-474;              // 2^-1074 * scale

    static bool isModerate(double v) { return v < 0x1p200 && v > -0x1p200; }

    // The square, at least, of what the factors can make of a one; no number if they
    // are none.
    static double largest(const Coefficients& c) {
        const float factors[] = {c.gainLin, c.widthSide, c.stabilityL, c.stabilityR,
                                 c.centerL, c.centerR,   c.balanceL,   c.balanceR};
        double product = 1.0;
        for (const float factor : factors) {
            const double magnitude = factor < 0.0F ? -static_cast<double>(factor) : factor;
            product *= magnitude <= 1.0 ? 1.0 : magnitude * magnitude;
        }
        return product;
    }

    // The additions lift denormals to normal numbers before they are multiplied.
    static Vector enlarged(Vector v) {
        const Vector magnitude = L::magnitude(v);
        const Vector zero = L::all(0.0);
        const Vector denormal = L::below(magnitude, L::all(0x1p-1022));
        const Vector lifted = magnitude + L::select(denormal, L::all(0x1p-1022), zero);
        const Vector large = lifted * L::all(scale) - L::select(denormal, L::all(smallest), zero);
        return L::withSignOf(large, v);
    }
    static Vector reduced(Vector v) {
        const Vector magnitude = L::magnitude(v);
        const Vector zero = L::all(0.0);
        const Vector denormal = L::below(magnitude, L::all(smallest));
        const Vector lifted = magnitude + L::select(denormal, L::all(smallest), zero);
        // An addition whose result gets denormal is slow, too: the exponent of the
        // smallest normal number is taken off as an integer.
        const Vector small =
            L::bitsLess(lifted * L::all(1.0 / scale), L::select(denormal, L::all(0x1p-1022), zero));
        return L::withSignOf(small, v);
    }

    static Vector toGrid(Vector magnitude) {
        return (magnitude + L::all(smallest)) - L::all(smallest);
    }

    // The product rounded once already is rounded to the grid; what the first
    // rounding lost decides where it lies half-way.
    static Vector times(Vector a, float factor) {
        const Vector b = L::all(static_cast<double>(factor));
        const Vector product = a * b;
        const Vector lost = L::flippedBy(L::fused(a, b, L::all(0.0) - product), product);
        const Vector magnitude = L::magnitude(product);
        const Vector rounded = toGrid(magnitude);
        const Vector over = magnitude - rounded;
        const Vector half = L::all(grid / 2);
        const Vector zero = L::all(0.0);
        const Vector up = L::both(L::equal(over, half), L::below(zero, lost));
        const Vector down = L::both(L::equal(over, zero - half), L::below(lost, zero));
        const Vector corrected =
            rounded + L::select(up, L::all(grid), zero) - L::select(down, L::all(grid), zero);
        return L::select(L::below(magnitude, L::all(smallest)), L::withSignOf(corrected, product),
                         product);
    }

    // The factor is split so that both products are exact, each is taken apart
    // into a multiple of the grid and less than one, and the rest of both, rounded
    // to odd, is rounded together with the multiples, whose sum is exact.
    static Vector fused(Vector a, float factor, Vector c) {
        const Vector b = L::all(static_cast<double>(factor));
        const Vector result = L::fused(a, b, c);
        const Vector high = L::highHalf(a);
        const Vector p = high * b;
        const Vector q = (a - high) * b;
        const Vector pGrid = gridPart(p);
        const Vector qGrid = gridPart(q);
        const Vector pRest = p - pGrid;
        const Vector qRest = q - qGrid;
        const Vector rest = pRest + qRest;
        const Vector part = rest - pRest;
        const Vector lost = (pRest - (rest - part)) + (qRest - part);
        const Vector whole = L::flippedBy((pGrid + c) + qGrid, result);
        const Vector odd = L::flippedBy(L::toOdd(rest, lost), result);
        const Vector rounded = ((whole + L::all(smallest)) + odd) - L::all(smallest);
        const Vector small = L::below(L::magnitude(result), L::all(smallest));
        return L::select(small, L::withSignOf(rounded, result), result);
    }
    static Vector gridPart(Vector v) {
        const Vector magnitude = L::magnitude(v);
        const Vector part =
            L::select(L::below(magnitude, L::all(smallest)), toGrid(magnitude), magnitude);
        return L::withSignOf(part, v);
    }

    InputGains gains;
    bool moderate;
    Coefficients coefficients;
};

} // namespace
} // namespace mirelon::kernels
