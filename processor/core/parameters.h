// The nine parameters: indices, names, labels, and what a host is told of them.
#pragma once

#include <array>
#include <string_view>

enum ParameterIndex : int {
    kParamWidth,
    kParamGain,
    kParamBalance,
    kParamStability,
    kParamCenterPos,
    kParamProcess,
    kParamPhase,
    kParamInvertL,
    kParamInvertR,
    kNumParams
};

namespace mirelon {

enum class ParameterKind { continuous, onOff };

struct ParameterInfo {
    std::string_view name;
    std::string_view label; // blanks included: hosts show it centred
    ParameterKind kind;
};

inline constexpr std::array<ParameterInfo, kNumParams> parameterTable{{
    {"width", "    %   ", ParameterKind::continuous},
    {"gain", "   dB   ", ParameterKind::continuous},
    {"balance", "       ", ParameterKind::continuous},
    {"stability", "         ", ParameterKind::continuous},
    {"centerPos", "         ", ParameterKind::continuous},
    {"process", "         ", ParameterKind::onOff},
    {"phase", "         ", ParameterKind::onOff},
    {"-L", "    ", ParameterKind::onOff},
    {"-R", "    ", ParameterKind::onOff},
}};

constexpr bool isParameter(int index) noexcept {
    return index >= 0 && index < kNumParams;
}

constexpr const ParameterInfo& parameterInfo(int index) noexcept {
    return parameterTable[static_cast<std::size_t>(index)];
}

} // namespace mirelon
