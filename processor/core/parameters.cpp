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

consteval bool initialValuesArePossible() {
    for (const Parameter& parameter : parameterTable) {
        const bool isEnd = parameter.initial == 0.0F || parameter.initial == 1.0F;
        const bool isBetween = parameter.initial > 0.0F && parameter.initial < 1.0F;
        if (!isEnd && (parameter.kind == ParameterKind::onOff || !isBetween))
            return false;
    }
    return true;
}

consteval std::size_t governorsOf(float Coefficients::*coefficient) {
    std::size_t governors = 0;
    for (const Parameter& parameter : parameterTable) {
        governors += parameter.working.coefficient == coefficient ? 1 : 0;
        governors += parameter.companion && parameter.companion->coefficient == coefficient ? 1 : 0;
    }
    return governors;
}

// There are as many governed coefficients as there are coefficients, all different.
consteval bool everyCoefficientHasOneParameter() {
    std::size_t number = 0;
    for (const Parameter& parameter : parameterTable) {
        if (governorsOf(parameter.working.coefficient) != 1)
            return false;
        if (parameter.companion && governorsOf(parameter.companion->coefficient) != 1)
            return false;
        number += parameter.companion ? 2 : 1;
    }
    return number == sizeof(Coefficients) / sizeof(float);
}

} // namespace

static_assert(everyIndexHasItsRow(), "rows stand in the order of the indices, each with a name");
static_assert(namesDiffer(), "two parameters have the same name");
static_assert(initialValuesArePossible(), "initial values are 0 to 1, a switch's 0 or 1");
static_assert(everyCoefficientHasOneParameter(),
              "a coefficient is governed by no parameter, or by more than one");

void applyParameter(Coefficients& coefficients, int index, float value) noexcept {
    if (!isParameter(index))
        return;
    const Parameter& parameter = parameterAt(index);
    coefficients.*parameter.working.coefficient = parameter.working.law(value);
    if (parameter.companion)
        coefficients.*parameter.companion->coefficient = parameter.companion->law(value);
}

float workingValue(const Coefficients& coefficients, int index) noexcept {
    return isParameter(index) ? coefficients.*parameterAt(index).working.coefficient : 0.0F;
}

void parameterDisplay(int index, float value, const Coefficients& coefficients,
                      char* text) noexcept {
    if (isParameter(index))
        parameterAt(index).display(value, workingValue(coefficients, index), text);
}

} // namespace mirelon
