// The mid/side matrix of the grouped loop, on the registers that the including
// file defines for its instruction set. Local to that file.
#pragma once

#include "processor/core/stereofollowers.h"

namespace mirelon::kernels {
namespace {

// The gains of the two inputs in the order in which they enter the matrix.
struct InputGains {
    float first;
    float second;
};
InputGains inputGains(const Coefficients& c) {
    const float left = c.invertL >= 0.5F ? -c.gainLin : c.gainLin;
    const float right = c.invertR >= 0.5F ? -c.gainLin : c.gainLin;
    return c.phaseOn > 0.5F ? InputGains{right, left} : InputGains{left, right};
}

template <typename Sample>
class Matrix {
    using L = Lanes<Sample>;
    using Vector = typename L::Vector;

  public:
    explicit Matrix(const Coefficients& c)
        : width(L::all(c.widthSide))
        , stabilityL(L::all(c.stabilityL))
        , stabilityR(L::all(c.stabilityR))
        , centerL(L::all(c.centerL))
        , minusCenterL(L::all(-c.centerL))
        , centerR(L::all(c.centerR))
        , balanceL(L::all(c.balanceL))
        , balanceR(L::all(c.balanceR)) {
        const InputGains gains = inputGains(c);
        gainFirst = L::all(gains.first);
        gainSecond = L::all(gains.second);
    }

    // The inputs, swapped already if they are to be, become the outputs.
    void operator()(Vector& left, Vector& right) const {
        const Vector a = gainFirst * left;
        const Vector b = gainSecond * right;
        const Vector sum = a + b;
        const Vector diff = a - b;
        const Vector side = diff * width;
        const Vector mid = sum * L::all(0.5F);
        // m - c*x as a fused step with -c: where both cancel, the zero is +0.
        const Vector l = L::fused(side * stabilityL, centerR, mid) * balanceL;
        const Vector r = L::fused(side * stabilityR, minusCenterL, mid) * balanceR;
        left = l * centerL;
        right = centerR * r;
    }

  private:
    Vector gainFirst, gainSecond, width, stabilityL, stabilityR, centerL, minusCenterL, centerR,
        balanceL, balanceR;
};

} // namespace
} // namespace mirelon::kernels
