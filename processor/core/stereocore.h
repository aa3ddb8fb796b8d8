// The audio path: mid/side matrix, bypass, and the four envelope followers
// that the meters read. Plain functions over plain data.
#pragma once

#include "processor/core/coefficients.h"

namespace mirelon {

// Followers of |left + right|, |left - right|, |left| and |right| of the
// output. They persist from block to block.
struct Envelopes {
    double sum = 0.0;
    double diff = 0.0;
    double left = 0.0;
    double right = 0.0;
};

// Both -0.5 to +0.5. Width: towards +0.5 mono, towards -0.5 anti-phase.
// Balance: towards +0.5 right, towards -0.5 left.
struct MeterReadings {
    float width = 0.0F;
    float balance = 0.0F;
};

// Two channels of `Sample` (float or double), left first.
template <typename Sample>
struct StereoInput {
    const Sample* left;
    const Sample* right;
};
template <typename Sample>
struct StereoOutput {
    Sample* left;
    Sample* right;
};

// The followers' coefficient: 15/16 of a step is covered after 600 ms.
double envelopeCoefficient(float sampleRate) noexcept;

// Processes `frames` frames (0 or less: none) and follows the output. In place
// and crossed in place are allowed; frame by frame both inputs are read before
// an output is written. Same bits on every machine. Audio thread: allocates,
// locks and waits for nothing.
void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<float> in, StereoOutput<float> out,
                  int frames) noexcept;
void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<double> in, StereoOutput<double> out,
                  int frames) noexcept;

// The two readings of the followers as they stand.
MeterReadings readMeters(const Envelopes& envelopes) noexcept;

} // namespace mirelon
