// The CLAP plug-in in the shape of an effect, as the tools drive it.
#include "hosting/clapeffect.h"
#include "hosting/pluginfile.h"
#include "presetsystem/chunkimage.h"
#include "processor/core/factorypresets.h"
#include "tests/formats/clap/clapfile.h"
#include "tests/support/plugin.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

class ClapAsEffect : public testing::Test {
  protected:
    EmptyPreferences preferences;
    std::unique_ptr<const hosting::PluginModule> module = hosting::openPlugin(MIRELON_CLAP_FILE);
    hosting::RecordingHost host;
    hosting::Effect effect{*module, host};
    PluginInstance vst;
};

TEST_F(ClapAsEffect, IsToldByItsFilesName) {
    EXPECT_EQ(module->format(), hosting::PluginFormat::clap);
    EXPECT_EQ(hosting::formatOf(MIRELON_CLAP_FILE), hosting::PluginFormat::clap);
    EXPECT_EQ(hosting::formatOf(MIRELON_PLUGIN_FILE), hosting::PluginFormat::vst2);
}

TEST_F(ClapAsEffect, SaysOfItselfWhatTheVstPlugInSays) {
    EXPECT_EQ(effect.name(), vst.effect.name());
    EXPECT_EQ(effect.vendor(), vst.effect.vendor());
    EXPECT_EQ(effect.vendorVersion(), vst.effect.vendorVersion());
    EXPECT_EQ(effect.category(), vst.effect.category());
    EXPECT_EQ(effect.programName(), vst.effect.programName());
    EXPECT_EQ(effect.record().uniqueID, vst.effect.record().uniqueID);
    EXPECT_EQ(effect.record().numParams, vst.effect.record().numParams);
    EXPECT_EQ(effect.record().numPrograms, 1) << "the one that sounds";
    EXPECT_EQ(effect.record().numInputs, 2);
    EXPECT_EQ(effect.record().numOutputs, 2);
    EXPECT_EQ(effect.record().initialDelay, 0);
    EXPECT_TRUE(effect.hasFlag(effFlagsHasEditor));
    EXPECT_TRUE(effect.hasFlag(effFlagsCanDoubleReplacing));
}

TEST_F(ClapAsEffect, HasTheVstPlugInsParameters) {
    for (VstInt32 index = 0; index < kNumParams; ++index) {
        EXPECT_EQ(effect.parameterName(index), vst.effect.parameterName(index));
        EXPECT_EQ(effect.parameter(index), vst.effect.parameter(index));
        EXPECT_TRUE(effect.canBeAutomated(index));
        effect.setParameter(index, 1.0F);
        EXPECT_EQ(effect.parameter(index), 1.0F);
    }
    EXPECT_TRUE(effect.parameterProperties(kParamPhase)) << "a switch";
    EXPECT_FALSE(effect.parameterProperties(kParamGain));
    EXPECT_TRUE(effect.setParameterText(kParamGain, "-6 dB"));
    EXPECT_EQ(effect.parameter(kParamGain), 0.25F);
    EXPECT_EQ(effect.parameterDisplay(kParamGain), "-6.00 dB");
    EXPECT_FALSE(effect.setParameterText(kParamGain, "loud"));
    EXPECT_EQ(effect.parameter(kNumParams), 0.0F);
    effect.setParameter(-1, 1.0F);
}

TEST_F(ClapAsEffect, KeepsTheVstPlugInsChunk) {
    for (hosting::Effect* const each : {&effect, &vst.effect}) {
        each->setParameter(kParamWidth, 0.125F);
        each->setParameter(kParamPhase, 1.0F);
    }
    const auto chunk = effect.chunk();
    EXPECT_EQ(chunk, vst.effect.chunk());
    effect.setParameter(kParamWidth, 0.5F);
    EXPECT_NE(effect.setChunk(chunk), 0);
    EXPECT_EQ(effect.parameter(kParamWidth), 0.125F);
    EXPECT_EQ(effect.chunk(), chunk);
    EXPECT_EQ(effect.setChunk(std::vector<std::byte>(692)), 0);
    EXPECT_EQ(effect.chunk(), chunk);
}

template <typename Sample>
void expectSameSound(hosting::Effect& effect, hosting::Effect& vst) {
    StereoBuffer<Sample> input(3000);
    signals::fill<Sample>(input.left, signals::Signal::noise, 1, 0);
    signals::fill<Sample>(input.right, signals::Signal::noise, 1, 1);
    for (hosting::Effect* const each : {&effect, &vst}) {
        each->setSampleRate(48000.0F);
        each->setBlockSize(3000);
        each->setParameter(kParamWidth, 0.7F);
        each->resume();
        each->setParameter(kParamGain, 0.6F);
    }
    const auto heard = processed(effect, input);
    const auto expected = processed(vst, input);
    EXPECT_EQ(heard.left, expected.left);
    EXPECT_EQ(heard.right, expected.right);
    effect.suspend();
    vst.suspend();
}

TEST_F(ClapAsEffect, SoundsAsTheVstPlugIn) {
    expectSameSound<float>(effect, vst.effect);
    expectSameSound<double>(effect, vst.effect);
}

TEST_F(ClapAsEffect, TakesBlocksLargerThanItWasTold) {
    effect.setBlockSize(64);
    vst.effect.setBlockSize(64);
    effect.resume();
    vst.effect.resume();
    StereoBuffer<float> input(1000);
    signals::fill<float>(input.left, signals::Signal::noise, 1, 0);
    signals::fill<float>(input.right, signals::Signal::noise, 1, 1);
    EXPECT_EQ(processed(effect, input).left, processed(vst.effect, input).left);
}

TEST_F(ClapAsEffect, TellsTheSizeOfItsEditorBeforeItIsOpen) {
    ERect* rect = nullptr;
    ASSERT_EQ(effect.dispatch(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect->right - rect->left, 324);
    EXPECT_EQ(rect->bottom - rect->top, 348);
    effect.dispatch(effEditClose);
    EXPECT_EQ(effect.dispatch(effEditOpen), 0) << "without a parent";
}

TEST_F(ClapAsEffect, OfAFileThatIsNoneIsRefused) {
    const TemporaryFolder folder;
    const auto file = folder / "no.clap";
    EXPECT_THROW(hosting::openPlugin(file), hosting::PluginError);
    std::filesystem::copy_file(MIRELON_PLUGIN_FILE, file);
    EXPECT_THROW(hosting::openPlugin(file), hosting::PluginError);
}

} // namespace
} // namespace mirelon::test
