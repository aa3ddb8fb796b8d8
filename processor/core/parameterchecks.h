// What the table of parameters promises, as the compiler can check it: of any
// table, so that tests can show that a broken one is noticed.
#pragma once

#include "processor/core/parameters.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace mirelon::parameterchecks {

using Table = std::span<const Parameter>;

// Rows stand in the order of the indices.
constexpr bool everyIndexHasItsRow(Table table) noexcept {
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].index != static_cast<int>(i))
            return false;
    return true;
}

constexpr bool namesDiffer(Table table) noexcept {
    for (const Parameter& a : table)
        for (const Parameter& b : table)
            if (&a != &b && std::string_view(a.name) == b.name)
                return false;
    return true;
}

// Normalised, and a switch is on or off.
constexpr bool initialValuesArePossible(Table table) noexcept {
    for (const Parameter& parameter : table) {
        const bool isEnd = parameter.initial == 0.0F || parameter.initial == 1.0F;
        const bool isWithin = parameter.initial >= 0.0F && parameter.initial <= 1.0F;
        if (parameter.kind == ParameterKind::onOff ? !isEnd : !isWithin)
            return false;
    }
    return true;
}

constexpr std::size_t governorsOf(Table table, float Coefficients::*coefficient) noexcept {
    std::size_t governors = 0;
    for (const Parameter& parameter : table) {
        governors += parameter.working.coefficient == coefficient ? 1 : 0;
        if (parameter.companion)
            governors += parameter.companion->coefficient == coefficient ? 1 : 0;
    }
    return governors;
}

// As many coefficients are governed as there are, all different.
constexpr bool everyCoefficientHasOneParameter(Table table) noexcept {
    std::size_t governed = 0;
    for (const Parameter& parameter : table) {
        if (governorsOf(table, parameter.working.coefficient) != 1)
            return false;
        if (parameter.companion && governorsOf(table, parameter.companion->coefficient) != 1)
            return false;
        governed += parameter.companion ? 2 : 1;
    }
    return governed == sizeof(Coefficients) / sizeof(float);
}

} // namespace mirelon::parameterchecks
