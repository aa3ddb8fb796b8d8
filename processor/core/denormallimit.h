// From which magnitude on a sample stays clear of denormal numbers all the way
// from input to output. Local to the file that includes it, whose instruction set
// it is compiled for.
#pragma once

#include "processor/core/coefficients.h"

namespace mirelon::kernels {
namespace {

// How far a factor's bits are below those of 1: in units of 2^23, at least as
// many as it halves a sample. Zero leaves nothing to get denormal.
unsigned long bitsBelowOne(float factor) {
    constexpr unsigned one = 0x3F800000;
    const unsigned bits = __builtin_bit_cast(unsigned, factor) & 0x7FFFFFFF;
    return bits - 1 < one ? one - bits : 0;
}

// How often, at most, a sample is halved on its way from input to output. In
// integers, and one by one: the start of a block must not wait for the end of
// the one before.
int halvings(const Coefficients& c) {
    const unsigned long center = bitsBelowOne(c.centerL) + bitsBelowOne(c.centerR);
    const unsigned long all = bitsBelowOne(c.gainLin) + bitsBelowOne(c.widthSide) +
                              bitsBelowOne(c.stabilityL) + bitsBelowOne(c.stabilityR) +
                              bitsBelowOne(c.balanceL) + bitsBelowOne(c.balanceR) + center + center;
    return static_cast<int>((all + 0x7FFFFF) >> 23);
}

// The magnitude below which a sample's products may get denormal. Cancellation
// can bring larger ones there as well; that costs time, never a bit.
void denormalLimit(const Coefficients& c, float& limit) {
    const int exponent = 127 - 100 + halvings(c);
    const unsigned bits = static_cast<unsigned>(exponent < 255 ? exponent : 255) << 23;
    limit = __builtin_bit_cast(float, bits);
}
void denormalLimit(const Coefficients& c, double& limit) {
    const unsigned long exponent = 1023UL - 900UL + static_cast<unsigned long>(halvings(c));
    limit = __builtin_bit_cast(double, exponent << 52);
}

} // namespace
} // namespace mirelon::kernels
