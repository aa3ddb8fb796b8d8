// Test signals: what a host may send, and what it should not but will.
#pragma once

#include <span>
#include <string_view>

namespace mirelon::signals {

enum class Signal {
    noise,     // uniform, +-1
    silence,   // zeros of both signs
    fullScale, // +-1 exactly
    denormals, // random bits below the smallest normal number
    tiny,      // around the followers' flush offsets and below them
    huge,      // around 1e30
    extremes,  // products and sums overflow
    sparseNan, // noise with a NaN in about every hundredth place
    sparseInf, // noise with infinities of both signs
    anyBits,   // every bit pattern as likely as any other
    gated,     // noise in bursts, silence between them
    mixture,   // all of the above from one sample to the next
    mono       // noise that depends on the seed and place only: equal in both channels
};

inline constexpr Signal allSignals[] = {
    Signal::noise, Signal::silence,  Signal::fullScale, Signal::denormals, Signal::tiny,
    Signal::huge,  Signal::extremes, Signal::sparseNan, Signal::sparseInf, Signal::anyBits,
    Signal::gated, Signal::mixture,  Signal::mono};

std::string_view nameOf(Signal signal);

// The same seed and channel (0 or 1) give the same samples on every machine.
template <typename Sample>
void fill(std::span<Sample> samples, Signal signal, unsigned seed, int channel);

// Equal bit for bit; any NaN equals any other, since the payload of a result is
// the machine's choice.
template <typename Sample>
bool sameBits(Sample a, Sample b);

} // namespace mirelon::signals
