// Coefficients that one thread writes while another reads.
#pragma once

#include "processor/coefficients.h"

#include <array>
#include <atomic>

namespace mirelon {

// Single values are never torn; a reader may see a mixture of old and new
// ones, which is accepted: the next block has them all. Compiles to plain
// moves.
class SharedCoefficients {
  public:
    // Recomputes what parameter `index` governs. Any thread.
    void apply(VstInt32 index, float value) noexcept {
        Coefficients fresh;
        applyParameter(fresh, index, value);
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (fields[i].governedBy == index)
                shared[i].store(fresh.*fields[i].member, std::memory_order_relaxed);
    }

    Coefficients snapshot() const noexcept {
        Coefficients copy;
        for (std::size_t i = 0; i < fields.size(); ++i)
            copy.*fields[i].member = shared[i].load(std::memory_order_relaxed);
        return copy;
    }

  private:
    struct Field {
        VstInt32 governedBy;
        float Coefficients::*member;
    };
    static constexpr std::array<Field, 13> fields{{
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
    static_assert(sizeof(Coefficients) == fields.size() * sizeof(float));

    std::array<std::atomic<float>, fields.size()> shared{};
};

} // namespace mirelon
