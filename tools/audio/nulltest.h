// How far two recordings are apart, sample by sample.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace mirelon::tools {

// Feed it blocks of both, equally long, then ask. Samples are the same when they
// are equal or both no number.
class NullTest {
  public:
    using Block = std::span<const double>;

    void add(Block leftA, Block rightA, Block leftB, Block rightB);
    // Frames that only one of the two has: all of them differ, from here on.
    void addExcess(std::uint64_t frames);

    bool identical() const noexcept { return !first; }
    std::optional<std::uint64_t> firstDifferent() const noexcept { return first; }
    std::uint64_t differentFrames() const noexcept { return different; }

    // Of the difference between the frames that both have; infinite when one of
    // the two is not finite where the other differs.
    double peak() const noexcept { return largest; }
    double rms() const noexcept;

  private:
    void addDifferent(double a, double b);

    std::uint64_t frames = 0;
    std::uint64_t different = 0;
    std::optional<std::uint64_t> first;
    double largest = 0.0;
    double squares = 0.0;
};

} // namespace mirelon::tools
