// The CLAP plug-in's parameters as a host asks for them.
#include "tests/formats/clap/clapfile.h"
#include "tests/support/plugin.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

class ClapParams : public testing::Test {
  protected:
    EmptyPreferences preferences;
    ClapPlugIn plugIn;
    PluginInstance vst;
};

TEST_F(ClapParams, AreTheEffectsInTheirOrder) {
    ASSERT_EQ(plugIn.instance.parameterCount(), kNumParams);
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        const auto info = plugIn.instance.parameterInfo(static_cast<std::uint32_t>(index));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->id, static_cast<clap_id>(index));
        EXPECT_EQ(info->name, vst.effect.parameterName(index));
        EXPECT_EQ(info->min_value, 0.0);
        EXPECT_EQ(info->max_value, 1.0);
        EXPECT_EQ(info->default_value, static_cast<double>(vst.effect.parameter(index)));
        clap_param_info_flags flags = CLAP_PARAM_IS_AUTOMATABLE;
        if (index >= kParamProcess)
            flags |= CLAP_PARAM_IS_STEPPED;
        EXPECT_EQ(info->flags, flags);
    }
    EXPECT_FALSE(plugIn.instance.parameterInfo(kNumParams));
    EXPECT_FALSE(plugIn.instance.parameterInfo(0xFFFFFFFF));
}

TEST_F(ClapParams, TextsBeginWithWhatTheEffectShows) {
    for (VstInt32 index = 0; index < kNumParams; ++index)
        for (const float value : {0.0F, 0.3F, 0.5F, 0.77F, 1.0F}) {
            vst.effect.setParameter(index, value);
            const auto text =
                plugIn.instance.text(static_cast<clap_id>(index), static_cast<double>(value));
            ASSERT_TRUE(text);
            EXPECT_TRUE(text->starts_with(vst.effect.parameterDisplay(index))) << *text;
        }
}

TEST_F(ClapParams, TextsAreReadBack) {
    EXPECT_EQ(plugIn.instance.valueOf(kParamWidth, "156.25 %"), 0.625);
    EXPECT_EQ(plugIn.instance.valueOf(kParamBalance, "C"), 0.5);
    EXPECT_EQ(plugIn.instance.valueOf(kParamProcess, "off"), 0.0);
    EXPECT_FALSE(plugIn.instance.valueOf(kParamProcess, "maybe"));
    EXPECT_FALSE(plugIn.instance.valueOf(kNumParams, "1"));
}

TEST_F(ClapParams, UnknownOnesHaveNoValueAndNoText) {
    for (const clap_id id : {clap_id{kNumParams}, CLAP_INVALID_ID, clap_id{0x80000000}}) {
        EXPECT_FALSE(plugIn.instance.value(id));
        EXPECT_FALSE(plugIn.instance.text(id, 0.5));
    }
    const clap_plugin& made = plugIn.instance.plugin();
    const clap_plugin_params& params = *plugIn.instance.parameters();
    double value = 0.0;
    EXPECT_FALSE(params.get_value(&made, 0, nullptr));
    EXPECT_FALSE(params.value_to_text(&made, 0, 0.5, nullptr, 10));
    EXPECT_FALSE(params.text_to_value(&made, 0, nullptr, &value));
    EXPECT_FALSE(params.text_to_value(&made, 0, "1", nullptr));
    EXPECT_FALSE(params.get_info(&made, 0, nullptr));
}

TEST_F(ClapParams, FlushSetsThemWhileNothingPlays) {
    hosting::ClapInputEvents events;
    for (clap_id id = 0; id < kNumParams; ++id)
        events.add(hosting::clapValueEvent(id * 1000, id, 1.0 / (id + 1.0)));
    hosting::ClapOutputEvents told;
    plugIn.instance.flush(events.list(), told.list());
    for (clap_id id = 0; id < kParamProcess; ++id)
        EXPECT_FLOAT_EQ(static_cast<float>(*plugIn.instance.value(id)),
                        1.0F / (static_cast<float>(id) + 1.0F));
    EXPECT_TRUE(told.told().empty()); // hosts know what they have set
    plugIn.instance.flush(nullptr, nullptr);
}

TEST_F(ClapParams, StartAsThoseOfAnyNewInstance) {
    for (int index = 0; index < kNumParams; ++index)
        EXPECT_EQ(plugIn.value(index), static_cast<double>(vst.effect.parameter(index)));
}

} // namespace
} // namespace mirelon::test
