// How loud a whole stretch of audio is, after EBU R 128.
#pragma once

#include <ebur128.h>
#include <memory>
#include <span>
#include <vector>

namespace mirelon::tools {

// Whether the peak between the samples is found too, which takes most of the time.
enum class TruePeak { measured, ignored };

// Feed it blocks, then ask. Samples that are infinite or no number count as
// silence.
class Loudness {
  public:
    // Throws CommandError for a sample rate that the measure is not defined for.
    explicit Loudness(int sampleRate, TruePeak peak = TruePeak::measured);

    void add(std::span<const double> left, std::span<const double> right);

    double integrated() const; // LUFS; silence is minus infinity
    double truePeak() const;   // between the samples too; 1 is full scale; 0 where ignored

  private:
    struct Destroy {
        void operator()(ebur128_state* state) const noexcept { ebur128_destroy(&state); }
    };

    std::unique_ptr<ebur128_state, Destroy> meter;
    std::vector<double> interleaved;
};

} // namespace mirelon::tools
