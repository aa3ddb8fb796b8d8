// Two signals made equally loud, so that the louder does not win for that alone.
#pragma once

#include "tools/audio/loudness.h"

#include <span>
#include <vector>

namespace mirelon::tools {

// Neither is above 1.
struct LoudnessGains {
    float original = 1.0F;
    float processed = 1.0F;
};

// Two spans of one length.
struct StereoPart {
    std::span<const float> left;
    std::span<const float> right;
};

// Measures the integrated loudness (EBU R 128) of an effect's input and of its output,
// of the same stretch of time. Allocates: for no audio thread.
class EqualLoudness {
  public:
    // Throws CommandError for a rate that the measure is not defined for.
    explicit EqualLoudness(int rate);

    void add(const StereoPart& original, const StereoPart& processed);

    // From now on counts what comes only. The gains stay until they are known anew.
    void restart();

    // With them both are as loud as the quieter is: the louder is turned down, so that
    // nothing clips that did not before. Both 1 before there is enough to measure
    // (0.4 s) and while one of them is silent.
    LoudnessGains gains();

  private:
    int rate;
    Loudness original;
    Loudness processed;
    std::vector<double> left;
    std::vector<double> right;
    LoudnessGains known;
};

} // namespace mirelon::tools
