// Samples as integers.
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <span>

namespace mirelon::tools {

// Rounds samples to nearest, ties to even, and limits them to full scale, which
// is 2^(bits-1): what was read from integers comes back as it was. What is no
// number becomes 0.
class Quantizer {
  public:
    // `bits` is 8 to 32. With a seed, triangular noise of two quantising steps
    // from peak to peak is added first, the same for the same seed.
    explicit Quantizer(int bits, std::optional<std::uint64_t> ditherSeed = {});

    // Interleaves two channels of equal length into `out`, twice as long. The
    // integers stand in the upper bits of 32, or of 16 when there are at most 16.
    void convert(std::span<const double> left, std::span<const double> right,
                 std::span<std::int32_t> out);
    void convert(std::span<const double> left, std::span<const double> right,
                 std::span<std::int16_t> out);

    // Samples that were limited so far; infinite ones count, those that are no
    // number do not.
    std::uint64_t clipped() const noexcept { return limited; }

  private:
    template <typename Integer>
    void convertTo(std::span<const double> left, std::span<const double> right,
                   std::span<Integer> out);
    template <typename Integer>
    void convertDithered(std::span<const double> left, std::span<const double> right,
                         std::span<Integer> out);

    int bits;
    std::optional<std::mt19937_64> random;
    std::uint64_t limited = 0;
};

} // namespace mirelon::tools
