// Levels and stereo image of a whole stretch of audio.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace mirelon::tools {

// Feed it blocks, then ask. Sums are of squares in double precision.
class StereoStatistics {
  public:
    void add(std::span<const double> left, std::span<const double> right);

    std::uint64_t frames() const noexcept { return count; }
    double peak(std::size_t channel) const noexcept { return peaks[channel]; }
    double rms(std::size_t channel) const noexcept;

    // Both from -0.5 to +0.5, log base 16 of a ratio of root mean squares, 0 for
    // silence. Width: sum to difference, +0.5 is mono, -0.5 anti-phase. Balance:
    // right to left, +0.5 is right.
    double width() const noexcept;
    double balance() const noexcept;

  private:
    std::uint64_t count = 0;
    std::array<double, 2> peaks{};
    std::array<double, 2> squares{};
    double sumSquares = 0.0;
    double differenceSquares = 0.0;
};

// In decibels below full scale; silence is minus infinity.
double decibels(double amplitude);

} // namespace mirelon::tools
