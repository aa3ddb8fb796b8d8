// What a CLAP plug-in in the shape of an effect is told by its host; what such an effect
// answers stands with the tests of Mirelon's CLAP plug-in.
#include "hosting/adaptedeffect.h"
#include "hosting/effect.h"
#include "hosting/pluginfile.h"
#include "hosting/recordinghost.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

// What the test plug-in plays.
struct Told {
    float inputPorts, outputPorts, mostFrames, frames, before, calledBack, rate;
    bool operator==(const Told&) const = default;
};

struct ClapEffectTest : testing::Test {
    Told played(int frames) {
        std::array<float, 256> in{};
        std::array<float, 256> out{};
        float* inputs[] = {in.data()};
        float* outputs[] = {out.data()};
        effect.process(inputs, outputs, frames);
        return {out[0], out[1], out[2], out[3], out[4], out[5], out[6]};
    }

    const std::unique_ptr<const PluginModule> module = openPlugin(MIRELON_TEST_CLAP_TOLD);
    RecordingHost host;
    Effect effect{*module, host};
};

TEST_F(ClapEffectTest, HasTheBlockSizeAndThePortsToldToThePlugIn) {
    effect.setBlockSize(64);
    effect.resume();
    EXPECT_EQ(played(64), (Told{1, 1, 64, 64, 0, 0, 44100}));
    EXPECT_EQ(played(48), (Told{1, 1, 64, 48, 64, 0, 44100}));
}

TEST_F(ClapEffectTest, CallsThePlugInBackOnceForEachTimeThatItAsks) {
    effect.resume();
    effect.dispatch(effEditIdle);
    effect.dispatch(effEditIdle);
    EXPECT_EQ(played(8).calledBack, 1);
    effect.suspend();
    effect.resume();
    EXPECT_EQ(played(8).calledBack, 1);
    effect.dispatch(effEditIdle);
    EXPECT_EQ(played(8).calledBack, 2);
}

TEST_F(ClapEffectTest, HasABlockSizeToldThatChangesWhileItPlays) {
    effect.setBlockSize(64);
    effect.resume();
    played(64);
    effect.setBlockSize(256);
    EXPECT_EQ(played(200), (Told{1, 1, 256, 200, 0, 0, 44100}));
    effect.setBlockSize(256); // the same again interrupts nothing
    EXPECT_EQ(played(200), (Told{1, 1, 256, 200, 200, 0, 44100}));
}

TEST_F(ClapEffectTest, KeepsItsBlockSizeWhenItIsGivenNone) {
    effect.setBlockSize(64);
    effect.setBlockSize(0);
    effect.setBlockSize(-1);
    effect.resume();
    EXPECT_EQ(played(64).mostFrames, 64);
}

TEST_F(ClapEffectTest, HasARateToldThatChangesWhileItPlays) {
    effect.resume();
    EXPECT_EQ(played(8).rate, 44100.0F);
    effect.setSampleRate(96000.0F);
    EXPECT_EQ(played(8).rate, 96000.0F);
}

// The published values of the 32-bit hash.
TEST(IdentifierOfAName, IsItsFnv1aHashWithTheLastBitSet) {
    EXPECT_EQ(static_cast<std::uint32_t>(identifierOf("a")), 0xE40C292DU);
    EXPECT_EQ(static_cast<std::uint32_t>(identifierOf("foobar")), 0xBF9CF969U);
    EXPECT_EQ(static_cast<std::uint32_t>(identifierOf("")), 0x811C9DC5U);
}

} // namespace
} // namespace mirelon::hosting
