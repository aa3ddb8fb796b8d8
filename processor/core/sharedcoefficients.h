// Coefficients that one thread writes while another reads.
#pragma once

#include "processor/core/parameters.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace mirelon {

// Single values are never torn; a reader may see a mixture of old and new
// ones, which is accepted: the next block has them all. Compiles to plain
// moves.
class SharedCoefficients {
  public:
    // Recomputes what parameter `index` governs; nothing for an index outside the
    // table. Any thread.
    void apply(int index, float value) noexcept {
        if (!isParameter(index))
            return;
        const Parameter& parameter = parameterAt(index);
        store(parameter.working, value);
        if (parameter.companion)
            store(*parameter.companion, value);
    }

    Coefficients snapshot() const noexcept {
        return snapshotOf(std::make_index_sequence<kNumParams>());
    }

  private:
    // Unrolled: once for every block, so a loop would show.
    template <std::size_t... i>
    Coefficients snapshotOf(std::index_sequence<i...>) const noexcept {
        Coefficients copy;
        (load<i>(copy), ...);
        return copy;
    }

    template <std::size_t index>
    void load(Coefficients& copy) const noexcept {
        constexpr const Parameter& parameter = parameterTable[index];
        load(copy, parameter.working.coefficient);
        if constexpr (parameter.companion.has_value())
            load(copy, parameter.companion->coefficient);
    }

    void load(Coefficients& copy, float Coefficients::*coefficient) const noexcept {
        copy.*coefficient = std::atomic_ref(shared.*coefficient).load(std::memory_order_relaxed);
    }

    void store(const Governed& governed, float value) noexcept {
        std::atomic_ref(shared.*governed.coefficient)
            .store(governed.law(value), std::memory_order_relaxed);
    }

    mutable Coefficients shared; // a reference to an atomic value is never constant
};

} // namespace mirelon
