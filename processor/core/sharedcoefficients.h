// Coefficients that one thread writes while another reads.
#pragma once

#include "processor/core/coefficients.h"

#include <array>
#include <atomic>
#include <utility>

namespace mirelon {

// Single values are never torn; a reader may see a mixture of old and new
// ones, which is accepted: the next block has them all. Compiles to plain
// moves.
class SharedCoefficients {
  public:
    // Recomputes what parameter `index` governs. Any thread.
    void apply(int index, float value) noexcept {
        Coefficients fresh;
        applyParameter(fresh, index, value);
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (fields[i].governedBy == index)
                shared[i].store(fresh.*fields[i].member, std::memory_order_relaxed);
    }

    Coefficients snapshot() const noexcept {
        return snapshotOf(std::make_index_sequence<fieldCount>());
    }

  private:
    struct Field {
        int governedBy;
        float Coefficients::*member;
    };
    static constexpr std::size_t fieldCount = sizeof(Coefficients) / sizeof(float);
    static constexpr std::array<Field, fieldCount> fields{{
        {kParamWidth, &Coefficients::widthSide},
        {kParamWidth, &Coefficients::widthNorm},
        {kParamGain, &Coefficients::gainLin},
        {kParamBalance, &Coefficients::balanceL},
        {kParamBalance, &Coefficients::balanceR},
        {kParamStability, &Coefficients::stabilityL},
        {kParamStability, &Coefficients::stabilityR},
        {kParamCenterPos, &Coefficients::centerL},
        {kParamCenterPos, &Coefficients::centerR},
        {kParamProcess, &Coefficients::processOn},
        {kParamPhase, &Coefficients::phaseOn},
        {kParamInvertL, &Coefficients::invertL},
        {kParamInvertR, &Coefficients::invertR},
    }};
    static_assert(fields.back().member != nullptr);

    using Shared = std::array<std::atomic<float>, fields.size()>;

    // Unrolled: once for every block, so a loop would show.
    template <std::size_t... i>
    Coefficients snapshotOf(std::index_sequence<i...>) const noexcept {
        Coefficients copy;
        ((copy.*fields[i].member = shared[i].load(std::memory_order_relaxed)), ...);
        return copy;
    }

    Shared shared{};
};

} // namespace mirelon
