#include "processor/core/factorypresets.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string_view>

namespace {

using namespace mirelon;

TEST(FactoryPresets, TheFirstHasEveryParametersInitialValue) {
    for (const Parameter& parameter : parameterTable)
        EXPECT_EQ(factoryPresets[0].values[static_cast<std::size_t>(parameter.index)],
                  parameter.initial)
            << parameter.name;
}

TEST(FactoryPresets, OthersDifferFromItInTheParametersTheyName) {
    const ParameterValues changed =
        initialValuesBut({{kParamBalance, 0.7F}, {kParamInvertR, 1.0F}});
    ParameterValues expected = factoryPresets[0].values;
    expected[kParamBalance] = 0.7F;
    expected[kParamInvertR] = 1.0F;
    EXPECT_EQ(changed, expected);
}

TEST(FactoryPresets, NoTwoHaveANameOrAllTheirValuesInCommon) {
    std::set<std::string_view> names;
    std::set<ParameterValues> values;
    for (const FactoryPreset& preset : factoryPresets) {
        names.insert(preset.name);
        values.insert(preset.values);
    }
    EXPECT_EQ(names.size(), factoryPresets.size());
    EXPECT_EQ(values.size(), factoryPresets.size());
}

} // namespace
