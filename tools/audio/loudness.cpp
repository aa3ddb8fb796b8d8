#include "tools/audio/loudness.h"

#include "tools/commanderror.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace mirelon::tools {

Loudness::Loudness(int sampleRate, TruePeak peak)
    : meter(ebur128_init(2, static_cast<unsigned long>(sampleRate),
                         EBUR128_MODE_I |
                             (peak == TruePeak::measured ? EBUR128_MODE_TRUE_PEAK : 0))) {
    if (!meter)
        throw CommandError("loudness cannot be measured at " + std::to_string(sampleRate) + " Hz");
}

void Loudness::add(std::span<const double> left, std::span<const double> right) {
    const auto finite = [](double sample) { return std::isfinite(sample) ? sample : 0.0; };
    interleaved.resize(2 * left.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        interleaved[2 * i] = finite(left[i]);
        interleaved[2 * i + 1] = finite(right[i]);
    }
    ebur128_add_frames_double(meter.get(), interleaved.data(), left.size());
}

double Loudness::integrated() const {
    double value = 0.0;
    return ebur128_loudness_global(meter.get(), &value) == EBUR128_SUCCESS
               ? value
               : -std::numeric_limits<double>::infinity();
}

double Loudness::truePeak() const {
    double largest = 0.0;
    for (const unsigned channel : {0U, 1U}) {
        double peak = 0.0;
        if (ebur128_true_peak(meter.get(), channel, &peak) == EBUR128_SUCCESS)
            largest = std::max(largest, peak);
    }
    return largest;
}

} // namespace mirelon::tools
