// What a picture of a stereo signal needs to know of it, in bounded memory.
#pragma once

#include "tools/audio/stereostatistics.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mirelon::tools {

// Statistics of equal stretches of time.
class StereoHistory {
  public:
    // `frames` in all, cut into `slices` (at least 1) that differ by a frame at
    // most. Frames beyond count for the last one.
    StereoHistory(std::uint64_t frames, std::size_t slices);

    void add(std::span<const double> left, std::span<const double> right);

    std::span<const StereoStatistics> slices() const noexcept { return list; }

  private:
    std::uint64_t startOf(std::size_t slice) const;

    std::uint64_t frames;
    std::uint64_t position = 0;
    std::size_t current = 0;
    std::vector<StereoStatistics> list;
};

// How often the signal passed each point of a goniometer: mono material draws
// a vertical line, a signal on the left only one from the centre to the upper
// left.
class Goniometer {
  public:
    // A square of `size` by `size` points, whose corners touch `fullScale`.
    Goniometer(std::size_t size, double fullScale);

    void add(std::span<const double> left, std::span<const double> right);

    std::size_t size() const noexcept { return side; }
    // From 0 to 1, of the most visited point's logarithm; row 0 is on top.
    double density(std::size_t column, std::size_t row) const;

  private:
    std::size_t side;
    double fullScale;
    std::uint32_t most = 0;
    std::vector<std::uint32_t> visits;
};

// One signal: the whole of it, level and image over time, goniometer.
struct StereoSignal {
    StereoStatistics whole;
    StereoHistory levels;
    StereoHistory image;
    Goniometer goniometer;

    void add(std::span<const double> left, std::span<const double> right);
};

} // namespace mirelon::tools
