#include "processor/core/parameters.h"

#include <string_view>

namespace mirelon {

// The table's own promises.
namespace {

consteval bool everyIndexHasItsRow() {
    for (std::size_t i = 0; i < parameterTable.size(); ++i)
        if (parameterTable[i].index != static_cast<int>(i) || parameterTable[i].name[0] == '\0')
            return false;
    return true;
}

consteval bool namesDiffer() {
    for (const Parameter& a : parameterTable)
        for (const Parameter& b : parameterTable)
            if (&a != &b && std::string_view(a.name) == b.name)
                return false;
    return true;
}

consteval bool everyRowGovernsAndDisplays() {
    for (const Parameter& parameter : parameterTable) {
        if (parameter.governs[0].coefficient == nullptr || parameter.display == nullptr)
            return false;
        for (const Governed& governed : parameter.governs)
            if ((governed.coefficient == nullptr) != (governed.law == nullptr))
                return false;
    }
    return true;
}

// Whether a switch starts on or off and governs a coefficient that is on or off.
consteval bool switchesSwitch() {
    for (const Parameter& parameter : parameterTable) {
        const bool isSwitch = parameter.kind == ParameterKind::onOff;
        for (const Governed& governed : parameter.governs)
            if (governed.law != nullptr && (governed.law == laws::onOff) != isSwitch)
                return false;
        const float initial = parameter.initial;
        if (!(initial >= 0.0F && initial <= 1.0F) ||
            (isSwitch && initial != 0.0F && initial != 1.0F))
            return false;
    }
    return true;
}

consteval int governorsOf(float Coefficients::*coefficient) {
    int governors = 0;
    for (const Parameter& parameter : parameterTable)
        for (const Governed& governed : parameter.governs)
            governors += governed.coefficient == coefficient ? 1 : 0;
    return governors;
}

// There are as many governed coefficients as there are coefficients, all different.
consteval bool everyCoefficientHasOneParameter() {
    std::size_t number = 0;
    for (const Parameter& parameter : parameterTable)
        for (const Governed& governed : parameter.governs) {
            if (governed.coefficient == nullptr)
                continue;
            if (governorsOf(governed.coefficient) != 1)
                return false;
            ++number;
        }
    return number == sizeof(Coefficients) / sizeof(float);
}

} // namespace

static_assert(everyIndexHasItsRow());
static_assert(namesDiffer());
static_assert(everyRowGovernsAndDisplays());
static_assert(switchesSwitch());
static_assert(everyCoefficientHasOneParameter());

void applyParameter(Coefficients& coefficients, int index, float value) noexcept {
    if (!isParameter(index))
        return;
    for (const Governed& governed : parameterAt(index).governs)
        if (governed.coefficient != nullptr)
            coefficients.*governed.coefficient = governed.law(value);
}

float workingValue(const Coefficients& coefficients, int index) noexcept {
    return isParameter(index) ? coefficients.*parameterAt(index).governs[0].coefficient : 0.0F;
}

void parameterDisplay(int index, float value, const Coefficients& coefficients,
                      char* text) noexcept {
    if (isParameter(index))
        parameterAt(index).display(value, workingValue(coefficients, index), text);
}

} // namespace mirelon
