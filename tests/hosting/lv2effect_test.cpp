// LV2 plug-ins in the shape of effects: an amplifier with a port of every kind,
// and Mirelon.
#include "hosting/effectbank.h"
#include "hosting/hosting.h"
#include "hosting/pluginfile.h"

#include <array>
#include <atomic>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

namespace mirelon::hosting {
namespace {

constexpr int frames = 64;

struct Lv2EffectTest : testing::Test {
    explicit Lv2EffectTest(const std::string& plugin = MIRELON_TEST_AMPLIFIER)
        : module(openPlugin(plugin)) {}

    // Both channels' blocks, and what comes out of the first.
    float played(float left, float right = 0.0F) {
        std::array<std::array<float, frames>, 2> in{};
        std::array<std::array<float, frames>, 2> out{};
        in[0].fill(left);
        in[1].fill(right);
        float* inputs[] = {in[0].data(), in[1].data()};
        float* outputs[] = {out[0].data(), out[1].data()};
        effect.process(inputs, outputs, frames);
        return out[0][frames - 1];
    }

    std::unique_ptr<const PluginModule> module;
    RecordingHost host;
    Effect effect{*module, host};
};

TEST_F(Lv2EffectTest, SaysWhatItsDataFilesSay) {
    EXPECT_EQ(effect.name(), "Test Amplifier");
    EXPECT_EQ(effect.vendor(), "Test Vendor");
    EXPECT_EQ(effect.vendorVersion(), 3004);
    EXPECT_EQ(effect.record().numInputs, 1);
    EXPECT_EQ(effect.record().numOutputs, 1);
    EXPECT_EQ(effect.record().numParams, 5);
    EXPECT_EQ(effect.record().initialDelay, 7);
    EXPECT_NE(effect.record().uniqueID, 0);
    EXPECT_FALSE(effect.hasFlag(effFlagsHasEditor));
    EXPECT_FALSE(effect.hasFlag(effFlagsProgramChunks));
    EXPECT_FALSE(effect.hasFlag(effFlagsCanDoubleReplacing));
}

TEST_F(Lv2EffectTest, StartsFromItsPortsDefaults) {
    EXPECT_EQ(effect.parameter(0), 0.25F);
    EXPECT_EQ(effect.parameterName(0), "Factor");
    EXPECT_EQ(effect.parameterDisplay(0), "1.00");
    EXPECT_EQ(effect.parameterLabel(0), "x");
    EXPECT_EQ(effect.parameterDisplay(1), "Plain");
}

TEST_F(Lv2EffectTest, PlaysWhatItsParametersSay) {
    effect.resume();
    EXPECT_EQ(played(0.5F), 0.5F);
    effect.setParameter(0, 0.75F);
    EXPECT_EQ(played(0.5F), 1.5F);
    EXPECT_TRUE(effect.setParameterText(1, "Inverted"));
    EXPECT_EQ(played(0.5F), -1.5F);
    effect.setParameter(2, 1.0F);
    EXPECT_EQ(played(0.5F), 0.0F);
}

TEST_F(Lv2EffectTest, RefusesTextsThatItsPortsCannotMean) {
    EXPECT_FALSE(effect.setParameterText(0, "5"));
    EXPECT_FALSE(effect.setParameterText(5, "1"));
    EXPECT_EQ(effect.parameter(0), 0.25F);
}

TEST_F(Lv2EffectTest, HasItsPresetsAsPrograms) {
    EXPECT_EQ(effect.record().numPrograms, 2);
    EXPECT_EQ(effect.programNameAt(0), "loud");
    EXPECT_EQ(effect.programNameAt(1), "muted");
    EXPECT_EQ(effect.programNameAt(2), std::nullopt);
    effect.setProgram(1);
    EXPECT_EQ(effect.programName(), "muted");
    EXPECT_EQ(effect.parameter(2), 1.0F);
    effect.setProgram(0);
    EXPECT_EQ(effect.parameter(0), 1.0F);
    EXPECT_EQ(effect.parameter(2), 0.0F);
    effect.setProgram(7);
    EXPECT_EQ(effect.program(), 0);
}

TEST_F(Lv2EffectTest, KeepsItsParametersAtAnotherRateAndALargerBlock) {
    effect.setParameter(0, 1.0F);
    effect.setSampleRate(96000.0F);
    effect.setBlockSize(100000);
    effect.setSampleRate(0.0F); // changes nothing
    effect.resume();
    EXPECT_EQ(effect.parameter(0), 1.0F);
    EXPECT_EQ(played(0.5F), 2.0F);
}

// --- Mirelon ---

struct Lv2EffectOfMirelon : Lv2EffectTest {
    Lv2EffectOfMirelon()
        : Lv2EffectTest(MIRELON_LV2_BUNDLE) {}

    Module vst2Module{MIRELON_PLUGIN_FILE};
    Effect vst2{vst2Module, host};
};

TEST_F(Lv2EffectOfMirelon, HasTheVst2PluginsIdentifierAndEditor) {
    EXPECT_EQ(effect.record().uniqueID, vst2.record().uniqueID);
    EXPECT_EQ(effect.record().numParams, vst2.record().numParams);
    EXPECT_TRUE(effect.hasFlag(effFlagsHasEditor));
    EXPECT_EQ(effect.name(), vst2.name());
    EXPECT_EQ(effect.category(), kPlugCategSpacializer);
}

TEST_F(Lv2EffectOfMirelon, WritesTheVst2PluginsChunk) {
    EXPECT_EQ(effect.chunk(), vst2.chunk());
    for (Effect* const each : {&effect, &vst2}) {
        each->setParameter(0, 0.75F);
        each->setParameter(2, 0.25F);
        each->setParameter(5, 0.0F);
    }
    EXPECT_EQ(effect.chunk(), vst2.chunk());
}

TEST_F(Lv2EffectOfMirelon, TakesTheVst2PluginsChunkToTheLastBit) {
    for (int i = 0; i < 5; ++i)
        vst2.setParameter(i, 0.123456F * static_cast<float>(i + 1));
    const auto chunk = vst2.chunk();
    EXPECT_EQ(effect.setChunk(chunk), 1);
    EXPECT_EQ(effect.chunk(), chunk);
    for (int i = 0; i < 9; ++i)
        EXPECT_NEAR(effect.parameter(i), vst2.parameter(i), 1e-7F);
    EXPECT_EQ(effect.programName(), vst2.programName());
}

TEST_F(Lv2EffectOfMirelon, KeepsAGivenChunkWhileItPlays) {
    auto bank = bankOf(vst2);
    ASSERT_TRUE(bank);
    bank->current = 4;
    effect.resume();
    played(0.1F);
    ASSERT_TRUE(giveBank(effect, *bank));
    played(0.1F);
    EXPECT_EQ(effect.chunk(), bank->chunk(effect.record().uniqueID));
    EXPECT_EQ(effect.programName(), "balanse to the right");
}

TEST_F(Lv2EffectOfMirelon, KeepsTheParameterForWhichAChunkHasNoValue) {
    auto bank = bankOf(vst2);
    ASSERT_TRUE(bank);
    bank->presets[0].setValue(0, 2.0F);
    bank->presets[0].setValue(1, 0.25F);
    bank->current = 0;
    effect.setParameter(0, 0.75F);
    EXPECT_EQ(effect.setChunk(bank->chunk(effect.record().uniqueID)), 1);
    EXPECT_EQ(effect.parameter(0), 0.75F);
    EXPECT_NEAR(effect.parameter(1), 0.25F, 1e-7F);
}

TEST_F(Lv2EffectOfMirelon, RefusesAChunkThatIsNoneAndStaysAsItWas) {
    effect.setParameter(0, 0.75F);
    const auto before = effect.chunk();
    auto chunk = vst2.chunk();
    EXPECT_EQ(effect.setChunk(std::span(chunk).first(691)), 0);
    chunk[4] = std::byte{0}; // another owner
    EXPECT_EQ(effect.setChunk(chunk), 0);
    EXPECT_EQ(effect.chunk(), before);
    EXPECT_EQ(effect.parameter(0), 0.75F);
}

TEST_F(Lv2EffectOfMirelon, MakesNoSoundOfItsOwnWhileEverythingChangesBesideIt) {
    effect.resume();
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::thread audio([&] {
        while (!stop)
            if (!std::isfinite(played(0.1F, 0.1F)))
                ++wrong;
    });
    for (int i = 0; i < 200; ++i) {
        effect.setParameter(i % 9, static_cast<float>(i % 11) / 10.0F);
        effect.setChunk(effect.chunk());
        if (i % 20 == 0)
            effect.setSampleRate(i % 40 == 0 ? 44100.0F : 96000.0F);
    }
    stop = true;
    audio.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace mirelon::hosting
