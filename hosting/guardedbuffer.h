// A buffer at a chosen distance from an aligned address, with canaries on both
// sides that tell whether anything was written outside.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mirelon::hosting {

// A copy has the samples and canaries, and lies wherever it comes to lie.
template <typename Sample>
class GuardedBuffer {
  public:
    // `shift` samples past a 64-byte boundary; full of canaries at first.
    GuardedBuffer(std::size_t size, std::size_t shift)
        : storage(size + shift + 2 * guard + alignment, canary)
        , length(size) {
        const auto address = reinterpret_cast<std::uintptr_t>(storage.data() + guard);
        const std::size_t past = (address / sizeof(Sample)) % alignment;
        first = guard + (alignment - past) % alignment + shift;
    }

    Sample* data() { return storage.data() + first; }
    std::span<Sample> samples() { return {data(), length}; }
    std::span<const Sample> samples() const { return {storage.data() + first, length}; }

    bool guardsIntact() const {
        const auto intact = [](Sample s) { return s == canary; };
        const auto begin = storage.begin() + static_cast<std::ptrdiff_t>(first);
        return std::all_of(storage.begin(), begin, intact) &&
               std::all_of(begin + static_cast<std::ptrdiff_t>(length), storage.end(), intact);
    }

  private:
    static constexpr std::size_t alignment = 64 / sizeof(Sample);
    static constexpr std::size_t guard = 64;
    static constexpr Sample canary = static_cast<Sample>(-12345.678);

    std::vector<Sample> storage;
    std::size_t length;
    std::size_t first = 0;
};

} // namespace mirelon::hosting
