#include "tools/audio/stereostatistics.h"

#include <algorithm>
#include <cmath>

namespace mirelon::tools {

namespace {

// What counts as silence, as the plug-in's meters have it: its difference has a
// lower threshold than the rest.
constexpr double silence = 1e-5;
constexpr double differenceSilence = 1e-7;

double reading(double upper, double upperSilence, double lower, double lowerSilence) {
    const bool hasUpper = upper > upperSilence;
    const bool hasLower = lower > lowerSilence;
    if (!hasUpper || !hasLower)
        return (hasUpper ? 0.5 : 0.0) - (hasLower ? 0.5 : 0.0);
    return std::clamp(std::log2(upper / lower) / 4.0, -0.5, 0.5);
}

} // namespace

void StereoStatistics::add(std::span<const double> left, std::span<const double> right) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double l = left[i];
        const double r = right[i];
        peaks[0] = std::max(peaks[0], std::abs(l));
        peaks[1] = std::max(peaks[1], std::abs(r));
        squares[0] += l * l;
        squares[1] += r * r;
        sumSquares += (l + r) * (l + r);
        differenceSquares += (l - r) * (l - r);
    }
    count += left.size();
}

double StereoStatistics::rms(std::size_t channel) const noexcept {
    return count == 0 ? 0.0 : std::sqrt(squares[channel] / static_cast<double>(count));
}

double StereoStatistics::width() const noexcept {
    const double frameCount = count == 0 ? 1.0 : static_cast<double>(count);
    return reading(std::sqrt(sumSquares / frameCount), silence,
                   std::sqrt(differenceSquares / frameCount), differenceSilence);
}

double StereoStatistics::balance() const noexcept {
    return reading(rms(1), silence, rms(0), silence);
}

double decibels(double amplitude) {
    return 20.0 * std::log10(amplitude);
}

} // namespace mirelon::tools
