#include "formats/clap/parametervalues.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace mirelon::clap {

namespace {

bool isSwitch(int index) noexcept {
    return parameterAt(index).kind == ParameterKind::onOff;
}

bool isOn(double value) noexcept {
    return value >= 0.5;
}

// The label without the blanks that centre it in other hosts.
std::string_view unitOf(int index) noexcept {
    const std::string_view label = parameterAt(index).label;
    const std::size_t first = label.find_first_not_of(' ');
    return first == std::string_view::npos
               ? std::string_view()
               : label.substr(first, label.find_last_not_of(' ') - first + 1);
}

} // namespace

double hostValueOf(int index, float value) noexcept {
    const auto exact = static_cast<double>(value);
    if (isSwitch(index))
        return isOn(exact) ? 1.0 : 0.0;
    return exact > 0.0 ? std::min(exact, 1.0) : 0.0;
}

std::optional<float> changeByHost(int index, float current, double hostValue) noexcept {
    if (std::isnan(hostValue) || hostValue == hostValueOf(index, current))
        return std::nullopt;
    if (isSwitch(index))
        return isOn(hostValue) ? 1.0F : 0.0F;
    return static_cast<float>(std::clamp(hostValue, 0.0, 1.0));
}

bool textOfHostValue(int index, double hostValue, std::span<char> text) noexcept {
    const auto value = static_cast<float>(hostValue);
    Coefficients coefficients;
    applyParameter(coefficients, index, value);
    std::array<char, 64> number{};
    parameterDisplay(index, value, coefficients, number.data());
    const std::string_view shown(number.data());
    const std::string_view unit = unitOf(index);
    const std::size_t length = shown.size() + (unit.empty() ? 0 : 1 + unit.size());
    if (shown.empty() || length >= text.size())
        return false;
    auto end = std::ranges::copy(shown, text.begin()).out;
    if (!unit.empty()) {
        *end++ = ' ';
        end = std::ranges::copy(unit, end).out;
    }
    *end = '\0';
    return true;
}

std::optional<double> hostValueOfText(int index, std::string_view text) noexcept {
    const auto value = parameterValueOf(index, text);
    if (!value)
        return std::nullopt;
    return hostValueOf(index, *value);
}

} // namespace mirelon::clap
