#include "formats/lv2/portvalues.h"

#include <algorithm>
#include <cmath>

namespace mirelon::lv2 {

namespace {

constexpr double widthOfOne = 400.0; // a parabola: 100 in the middle
constexpr double decibels = 24.0;
constexpr double positions = 100.0;
constexpr double middle = 0.5;

bool isSwitch(int index) noexcept {
    return parameterAt(index).kind == ParameterKind::onOff;
}

} // namespace

PortRange portRange(int index) noexcept {
    return {portValueOf(index, 0.0F), portValueOf(index, 1.0F)};
}

float portValueOf(int index, float value) noexcept {
    const auto exact = static_cast<double>(value);
    if (isSwitch(index))
        return value >= 0.5F ? 1.0F : 0.0F;
    if (index == kParamWidth)
        return static_cast<float>(exact * exact * widthOfOne);
    return static_cast<float>((exact - middle) * (index == kParamGain ? decibels : positions));
}

std::optional<float> valueOfPort(int index, float port) noexcept {
    if (std::isnan(port))
        return std::nullopt;
    if (isSwitch(index))
        return port > 0.0F ? 1.0F : 0.0F;
    const PortRange range = portRange(index);
    const auto exact = static_cast<double>(std::clamp(port, range.minimum, range.maximum));
    if (index == kParamWidth)
        return static_cast<float>(std::sqrt(exact / widthOfOne));
    return static_cast<float>(exact / (index == kParamGain ? decibels : positions) + middle);
}

std::optional<float> changeByPort(int index, float current, float port) noexcept {
    if (portValueOf(index, current) == port)
        return std::nullopt;
    return valueOfPort(index, port);
}

} // namespace mirelon::lv2
