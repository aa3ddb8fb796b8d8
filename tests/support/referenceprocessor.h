// What the plug-in must compute, bit for bit, written independently of it: every
// operation is carried out in binary128 arithmetic and rounded once, by hand, so
// that neither the compiler's contraction nor the machine's fused instructions
// have a say. Slow (microseconds a frame) and simple.
#pragma once

#include <array>

namespace mirelon::reference {

// The factors the audio path multiplies with, before they are widened to the
// working precision.
struct Factors {
    float gain = 1.0F;
    float width = 0.5F;
    float balanceL = 1.0F;
    float balanceR = 1.0F;
    float stabilityL = 1.0F;
    float stabilityR = 1.0F;
    float centerL = 1.0F;
    float centerR = 1.0F;
    bool process = true;
    bool swap = false;
    bool invertL = false;
    bool invertR = false;
};

// The factors for nine normalised values in the order of the parameters.
Factors factorsFor(const std::array<float, 9>& normalised);

// Followers of |sum|, |difference|, |left| and |right|.
using Followers = std::array<double, 4>;

struct Readings {
    float width = 0.0F;
    float balance = 0.0F;
};
Readings readingsOf(const Followers& followers);

double followerCoefficient(float sampleRate);

// One frame: the inputs in, the outputs in their place, the followers moved on.
// For float and double.
template <typename Sample>
void processFrame(const Factors& factors, double coefficient, Followers& followers, Sample& left,
                  Sample& right);

// An instance as a host sees it: parameters, sample rate, blocks, readings.
class ReferenceProcessor {
  public:
    // All continuous parameters in the middle, processing on.
    ReferenceProcessor();

    void setParameter(int index, float normalised);
    void setSampleRate(float rate) { sampleRate = rate; }
    // Suspend and resume: the followers start over; the readings stand at 0
    // (suspend) or 0.5 (resume) until a block has been processed.
    void suspend();
    void resume();

    // Frame by frame, so that any aliasing of the buffers does what it must.
    template <typename Sample>
    void process(const Sample* leftIn, const Sample* rightIn, Sample* leftOut, Sample* rightOut,
                 int frames);

    const Followers& followers() const { return state; }
    Readings readings() const { return meters; }

  private:
    std::array<float, 9> normalised{0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F};
    float sampleRate = 44100.0F;
    Followers state{};
    Readings meters{};
};

} // namespace mirelon::reference
