// The meter readings of an effect between its blocks.
#include "processor/mirelon.h"
#include "tests/support/temporaryfolder.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <ostream>
#include <vector>

namespace {

struct Readings {
    float width;
    float balance;
    bool operator==(const Readings&) const = default;
};

void PrintTo(const Readings& readings, std::ostream* out) {
    *out << readings.width << ", " << readings.balance;
}

constexpr Readings lowEnds{0.0F, 0.0F};
constexpr Readings upperEnds{0.5F, 0.5F};

// The whole effect with its window closed, on a host that gives no answer.
class Instance {
  public:
    Instance() {
        setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1);
        effect = std::make_unique<Mirelon>(nullptr);
    }
    Mirelon* operator->() const { return effect.get(); }
    Readings readings() const { return {effect->getWidthMeter(), effect->getBalanceMeter()}; }

    // One block of two constant channels.
    void process(float left, float right, VstInt32 frames = 64) const {
        std::vector<float> l(static_cast<std::size_t>(frames), left);
        std::vector<float> r(l.size(), right);
        std::array<float*, 2> channels{l.data(), r.data()};
        effect->processReplacing(channels.data(), channels.data(), frames);
    }

  private:
    mirelon::test::TemporaryFolder preferences;
    std::unique_ptr<Mirelon> effect;
};

Readings readingsOfOneBlock(float rate) {
    const Instance fresh;
    fresh->setSampleRate(rate);
    fresh.process(0.5F, 0.125F);
    return fresh.readings();
}

TEST(Readings, StandAtTheirLowEndsAfterSuspend) {
    const Instance effect;
    effect.process(0.5F, 0.5F);
    ASSERT_NE(effect.readings(), lowEnds);
    effect->suspend();
    EXPECT_EQ(effect.readings(), lowEnds);
}

TEST(Readings, StandAtTheirUpperEndsAfterResume) {
    const Instance effect;
    effect->resume();
    EXPECT_EQ(effect.readings(), upperEnds);
}

TEST(Readings, AreComputedAnewByABlockWithoutFrames) {
    const Instance effect;
    effect->resume();
    effect.process(0.5F, 0.5F, 0);
    EXPECT_EQ(effect.readings(), lowEnds);
}

TEST(Readings, ForgetTheBlocksBeforeSuspendOrResume) {
    const Readings fresh = readingsOfOneBlock(44100.0F);
    for (const auto reset : {&Mirelon::suspend, &Mirelon::resume}) {
        const Instance effect;
        effect.process(0.0F, 1.0F);
        (*effect.operator->().*reset)();
        effect.process(0.5F, 0.125F);
        EXPECT_EQ(effect.readings(), fresh);
    }
}

TEST(Readings, RecoverFromNoNumberWithSuspendOrResume) {
    const Readings fresh = readingsOfOneBlock(44100.0F);
    for (const auto reset : {&Mirelon::suspend, &Mirelon::resume}) {
        const Instance effect;
        effect.process(std::numeric_limits<float>::quiet_NaN(), 0.5F);
        effect.process(0.5F, 0.125F);
        EXPECT_NE(effect.readings(), fresh);
        (*effect.operator->().*reset)();
        effect.process(0.5F, 0.125F);
        EXPECT_EQ(effect.readings(), fresh);
    }
}

TEST(Readings, FollowANewSampleRateFromTheNextBlockOn) {
    // The first signal has decayed the further, the lower the rate.
    const auto readingsOfTwoSignals = [](const Instance& effect) {
        effect.process(0.0F, 0.5F);
        effect.process(0.5F, 0.375F);
        return effect.readings();
    };
    const Instance atOnce;
    atOnce->setSampleRate(8000.0F);
    const Readings expected = readingsOfTwoSignals(atOnce);
    ASSERT_NE(expected, readingsOfTwoSignals(Instance()));

    const Instance later;
    later.process(0.0F, 0.0F); // leaves the followers at rest
    later->setSampleRate(8000.0F);
    EXPECT_EQ(readingsOfTwoSignals(later), expected);
}

// The follower of 600 ms then takes each sample over at once.
TEST(Readings, OfARateOfZeroAreThoseOfTheLastSample) {
    for (const bool blockBefore : {false, true}) {
        const Instance effect;
        if (blockBefore)
            effect.process(0.25F, 0.0F);
        effect->setSampleRate(0.0F);
        effect.process(0.5F, 0.125F);
        EXPECT_EQ(effect.readings(), readingsOfOneBlock(0.0F));
        EXPECT_NEAR(effect.readings().balance, -0.5F, 1e-6F);
        EXPECT_NEAR(effect.readings().width, std::log2(0.625F / 0.375F) / 4.0F, 1e-6F);
    }
}

TEST(Readings, OfAnotherInstanceAreShownUntilTheNextBlock) {
    const Instance effect;
    effect->resume();
    effect->showReadings(0.25F, -0.125F);
    EXPECT_EQ(effect.readings(), (Readings{0.25F, -0.125F}));
    effect.process(0.0F, 0.0F);
    EXPECT_EQ(effect.readings(), lowEnds);
}

} // namespace
