// Levels and stereo image of a whole stretch of audio.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace mirelon::tools {

// Feed it blocks, then ask. Sums are of squares in double precision. Samples that
// are infinite or no number are left out, except that an infinite one is a peak.
class StereoStatistics {
  public:
    void add(std::span<const double> left, std::span<const double> right);

    std::uint64_t frames() const noexcept { return count; }
    double peak(std::size_t channel) const noexcept { return sums.peaks[channel]; }
    double rms(std::size_t channel) const noexcept;

    // Samples that are infinite or no number.
    std::uint64_t notFinite() const noexcept { return bad; }

    // Both from -0.5 to +0.5, log base 16 of a ratio of root mean squares, 0 for
    // silence. Width: sum to difference, +0.5 is mono, -0.5 anti-phase. Balance:
    // right to left, +0.5 is right.
    double width() const noexcept;
    double balance() const noexcept;

    // Of left and right, from -1 (anti-phase) to +1 (mono); 0 when one is silent.
    double correlation() const noexcept;

  private:
    struct Sums {
        std::array<double, 2> peaks{};
        std::array<double, 2> squares{};
        double sumSquares = 0.0;
        double differenceSquares = 0.0;

        void add(double left, double right) noexcept;
        bool finite() const noexcept;
    };

    void addFinite(std::span<const double> left, std::span<const double> right);

    std::uint64_t count = 0;
    std::uint64_t bad = 0;
    Sums sums;
};

// In decibels below full scale; silence is minus infinity.
double decibels(double amplitude);

} // namespace mirelon::tools
