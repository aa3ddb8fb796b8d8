#include "processor/core/parameters.h"

#include "processor/core/parameterchecks.h"

namespace mirelon {

static_assert(parameterchecks::everyIndexHasItsRow(parameterTable),
              "rows stand in the order of the indices");
static_assert(parameterchecks::namesDiffer(parameterTable), "two parameters have the same name");
static_assert(parameterchecks::initialValuesArePossible(parameterTable),
              "an initial value is 0 to 1, a switch's 0 or 1");
static_assert(parameterchecks::everyCoefficientHasOneParameter(parameterTable),
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
