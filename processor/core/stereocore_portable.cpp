// The plain loop: the arithmetic as it is defined, one frame after the other.
#include "processor/core/stereokernels.h"

#include <cmath>

namespace mirelon::kernels {
namespace {

void follow(double& envelope, double level, double k, double offset) noexcept {
    envelope = std::fma(level - envelope, k, envelope);
    envelope = envelope + offset;
    envelope = envelope - offset;
}

template <typename Sample>
void followFrame(Envelopes& envelopes, Sample left, Sample right, double k) noexcept {
    constexpr double offset = flushOffset<Sample>;
    const Sample sum = left + right;
    const Sample diff = left - right;
    follow(envelopes.sum, std::fabs(sum), k, offset);
    follow(envelopes.diff, std::fabs(diff), k, offset);
    follow(envelopes.left, std::fabs(left), k, offset);
    follow(envelopes.right, std::fabs(right), k, offset);
}

template <typename Sample>
void passThrough(const Block<Sample>& block, Envelopes& envelopes) noexcept {
    for (int i = 0; i < block.frames; ++i) {
        const Sample left = block.in.left[i];
        const Sample right = block.in.right[i];
        block.out.left[i] = left;
        block.out.right[i] = right;
        followFrame(envelopes, left, right, block.envelopeCoefficient);
    }
}

template <typename Sample>
void applyMatrix(const Block<Sample>& block, Envelopes& envelopes) noexcept {
    const Coefficients coefficients = block.coefficients;
    const Sample gain = coefficients.gainLin;
    const Sample gainL = coefficients.invertL >= 0.5F ? -gain : gain;
    const Sample gainR = coefficients.invertR >= 0.5F ? -gain : gain;
    const bool swapped = coefficients.phaseOn > 0.5F;
    const Sample* const first = swapped ? block.in.right : block.in.left;
    const Sample* const second = swapped ? block.in.left : block.in.right;
    const Sample gainFirst = swapped ? gainR : gainL;
    const Sample gainSecond = swapped ? gainL : gainR;
    const Sample width = coefficients.widthSide;
    const Sample stabilityL = coefficients.stabilityL;
    const Sample stabilityR = coefficients.stabilityR;
    const Sample centerL = coefficients.centerL;
    const Sample centerR = coefficients.centerR;
    const Sample balanceL = coefficients.balanceL;
    const Sample balanceR = coefficients.balanceR;

    for (int i = 0; i < block.frames; ++i) {
        const Sample a = gainFirst * first[i];
        const Sample b = gainSecond * second[i];
        const Sample sum = a + b;
        const Sample diff = a - b;
        const Sample side = diff * width;
        const Sample mid = sum * static_cast<Sample>(0.5);
        // m - c*x as a fused step with -c: where both cancel, the zero is +0.
        const Sample l = std::fma(side * stabilityL, centerR, mid) * balanceL;
        const Sample r = std::fma(-centerL, side * stabilityR, mid) * balanceR;
        const Sample left = l * centerL;
        const Sample right = centerR * r;
        block.out.left[i] = left;
        block.out.right[i] = right;
        followFrame(envelopes, left, right, block.envelopeCoefficient);
    }
}

// The followers are a copy, so that no output can overlap them.
template <typename Sample>
void process(const Block<Sample>& block) noexcept {
    Envelopes followed = block.envelopes;
    if (block.coefficients.processOn >= 0.5F)
        applyMatrix(block, followed);
    else
        passThrough(block, followed);
    block.envelopes = followed;
}

bool anywhere() noexcept {
    return true;
}

} // namespace

const Kernel portable{"portable", anywhere, process<float>, process<double>};

} // namespace mirelon::kernels
