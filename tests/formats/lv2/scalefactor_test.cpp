#include "formats/lv2/scalefactor.h"

#include "tests/formats/lv2/urids.h"

#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <vector>

namespace mirelon::lv2 {
namespace {

class ScaleFactor : public testing::Test {
  protected:
    double with(std::vector<LV2_Options_Option> options) {
        options.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});
        const LV2_Feature map{LV2_URID__map, urids.map()};
        const LV2_Feature list{LV2_OPTIONS__options, options.data()};
        const LV2_Feature* const features[] = {&map, &list, nullptr};
        return scaleFactor(features);
    }
    template <typename Number>
    LV2_Options_Option option(const char* key, const char* type, const Number& value) {
        return {LV2_OPTIONS_INSTANCE, 0,     urids.number(key), sizeof value,
                urids.number(type),   &value};
    }

    test::Urids urids;
    const float half = 1.5F;
    const double twice = 2.0;
};

TEST_F(ScaleFactor, IsTheHostsAmongItsOptions) {
    EXPECT_EQ(with({option(LV2_UI__updateRate, LV2_ATOM__Float, half),
                    option(LV2_UI__scaleFactor, LV2_ATOM__Float, half)}),
              1.5);
}

TEST_F(ScaleFactor, MayHaveDoublePrecision) {
    EXPECT_EQ(with({option(LV2_UI__scaleFactor, LV2_ATOM__Double, twice)}), 2.0);
}

TEST_F(ScaleFactor, OfAnotherTypeOrSizeIsNotRead) {
    const std::int32_t number = 2;
    EXPECT_EQ(with({option(LV2_UI__scaleFactor, LV2_ATOM__Int, number)}), 1.0);
    EXPECT_EQ(with({option(LV2_UI__scaleFactor, LV2_ATOM__Float, twice)}), 1.0);
}

TEST_F(ScaleFactor, OfSomethingElseIsNotTheWindows) {
    auto other = option(LV2_UI__scaleFactor, LV2_ATOM__Float, half);
    other.context = LV2_OPTIONS_PORT;
    EXPECT_EQ(with({other}), 1.0);
}

TEST_F(ScaleFactor, StandsBeforeTheEndOfTheOptions) {
    const LV2_Options_Option end{LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr};
    EXPECT_EQ(with({end, option(LV2_UI__scaleFactor, LV2_ATOM__Float, half)}), 1.0);
}

TEST_F(ScaleFactor, IsOneWithoutTheOptionOrTheOptions) {
    EXPECT_EQ(with({}), 1.0);
    EXPECT_EQ(scaleFactor(nullptr), 1.0);
}

} // namespace
} // namespace mirelon::lv2
