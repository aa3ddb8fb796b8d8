#include "tools/audio/equalloudness.h"

#include <algorithm>
#include <cmath>

namespace mirelon::tools {

EqualLoudness::EqualLoudness(int rate)
    : rate(rate)
    , original(rate, TruePeak::ignored)
    , processed(rate, TruePeak::ignored) {}

void EqualLoudness::add(const StereoPart& before, const StereoPart& after) {
    const auto put = [this](Loudness& loudness, const StereoPart& part) {
        left.assign(part.left.begin(), part.left.end());
        right.assign(part.right.begin(), part.right.end());
        loudness.add(left, right);
    };
    put(original, before);
    put(processed, after);
}

LoudnessGains EqualLoudness::gains() {
    const double difference = processed.integrated() - original.integrated(); // LU
    if (!std::isfinite(difference))
        return known;
    const auto factor = [](double decibels) {
        return static_cast<float>(std::pow(10.0, std::min(decibels, 0.0) / 20.0));
    };
    known = {.original = factor(difference), .processed = factor(-difference)};
    return known;
}

void EqualLoudness::restart() {
    original = Loudness(rate, TruePeak::ignored);
    processed = Loudness(rate, TruePeak::ignored);
}

} // namespace mirelon::tools
