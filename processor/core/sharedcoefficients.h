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
        for (const Governed& governed : parameterAt(index).governs)
            if (governed.coefficient != nullptr)
                std::atomic_ref(shared.*governed.coefficient)
                    .store(governed.law(value), std::memory_order_relaxed);
    }

    Coefficients snapshot() const noexcept {
        return snapshotOf(std::make_index_sequence<kNumParams>());
    }

  private:
    // Unrolled: once for every block, so a loop would show.
    template <std::size_t... i>
    Coefficients snapshotOf(std::index_sequence<i...>) const noexcept {
        Coefficients copy;
        ((load<parameterTable[i].governs[0].coefficient>(copy),
          load<parameterTable[i].governs[1].coefficient>(copy)),
         ...);
        return copy;
    }

    template <float Coefficients::*coefficient>
    void load(Coefficients& copy) const noexcept {
        if constexpr (coefficient != nullptr)
            copy.*coefficient =
                std::atomic_ref(shared.*coefficient).load(std::memory_order_relaxed);
    }

    mutable Coefficients shared; // a reference to an atomic value is never constant
};

} // namespace mirelon
