#include "tools/plot/stereohistory.h"

#include <algorithm>
#include <cmath>

namespace mirelon::tools {

StereoHistory::StereoHistory(std::uint64_t frames_, std::size_t slices)
    : frames(frames_)
    , list(slices) {}

std::uint64_t StereoHistory::startOf(std::size_t slice) const {
    // Quotient and remainder apart: the plain product may not fit.
    const std::uint64_t count = list.size();
    return frames / count * slice + frames % count * slice / count;
}

void StereoHistory::add(std::span<const double> left, std::span<const double> right) {
    std::size_t done = 0;
    while (done < left.size()) {
        while (current + 1 < list.size() && position >= startOf(current + 1))
            ++current;
        std::size_t part = left.size() - done;
        if (current + 1 < list.size())
            part = static_cast<std::size_t>(
                std::min<std::uint64_t>(part, startOf(current + 1) - position));
        list[current].add(left.subspan(done, part), right.subspan(done, part));
        done += part;
        position += part;
    }
}

Goniometer::Goniometer(std::size_t size, double fullScale_)
    : side(size)
    , fullScale(fullScale_)
    , visits(size * size) {}

void Goniometer::add(std::span<const double> left, std::span<const double> right) {
    const double half = static_cast<double>(side) / 2.0;
    const double scale = half / (2.0 * fullScale);
    const double end = static_cast<double>(side);
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double column = half + (right[i] - left[i]) * scale;
        const double row = half - (left[i] + right[i]) * scale;
        // Written so that NaN is outside.
        if (!(column >= 0.0 && column < end && row >= 0.0 && row < end))
            continue;
        std::uint32_t& count =
            visits[static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column)];
        if (count < UINT32_MAX)
            ++count;
        most = std::max(most, count);
    }
}

double Goniometer::density(std::size_t column, std::size_t row) const {
    if (most == 0)
        return 0.0;
    return std::log1p(visits[row * side + column]) / std::log1p(most);
}

void StereoSignal::add(std::span<const double> left, std::span<const double> right) {
    whole.add(left, right);
    levels.add(left, right);
    image.add(left, right);
    goniometer.add(left, right);
}

} // namespace mirelon::tools
