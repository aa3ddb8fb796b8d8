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

inline void StereoStatistics::Sums::add(double left, double right) noexcept {
    peaks[0] = std::max(peaks[0], std::abs(left));
    peaks[1] = std::max(peaks[1], std::abs(right));
    squares[0] += left * left;
    squares[1] += right * right;
    sumSquares += (left + right) * (left + right);
    differenceSquares += (left - right) * (left - right);
}

bool StereoStatistics::Sums::finite() const noexcept {
    // No sum with what is not finite is.
    return std::isfinite(sumSquares);
}

void StereoStatistics::add(std::span<const double> left, std::span<const double> right) {
    Sums with = sums;
    for (std::size_t i = 0; i < left.size(); ++i)
        with.add(left[i], right[i]);
    // One sample that is not finite would show in the sums for good.
    if (with.finite())
        sums = with;
    else
        addFinite(left, right);
    count += left.size();
}

void StereoStatistics::addFinite(std::span<const double> left, std::span<const double> right) {
    const auto finite = [this](double sample, double& peak) {
        if (std::isfinite(sample))
            return sample;
        ++bad;
        peak = std::max(peak, std::abs(sample));
        return 0.0;
    };
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double l = finite(left[i], sums.peaks[0]);
        const double r = finite(right[i], sums.peaks[1]);
        sums.add(l, r);
    }
}

double StereoStatistics::rms(std::size_t channel) const noexcept {
    return count == 0 ? 0.0 : std::sqrt(sums.squares[channel] / static_cast<double>(count));
}

double StereoStatistics::width() const noexcept {
    const double frameCount = count == 0 ? 1.0 : static_cast<double>(count);
    return reading(std::sqrt(sums.sumSquares / frameCount), silence,
                   std::sqrt(sums.differenceSquares / frameCount), differenceSilence);
}

double StereoStatistics::balance() const noexcept {
    return reading(rms(1), silence, rms(0), silence);
}

double StereoStatistics::correlation() const noexcept {
    if (rms(0) <= silence || rms(1) <= silence)
        return 0.0;
    const double products = (sums.sumSquares - sums.differenceSquares) / 4.0;
    return std::clamp(products / std::sqrt(sums.squares[0] * sums.squares[1]), -1.0, 1.0);
}

double decibels(double amplitude) {
    return 20.0 * std::log10(amplitude);
}

} // namespace mirelon::tools
