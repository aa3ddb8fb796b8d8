// The LV2 plug-in's sound: that of the effect, bit for bit.
#include "tests/formats/lv2/lv2bundle.h"
#include "tests/support/plugin.h"
#include "tests/support/signals.h"
#include "tests/support/temporaryfolder.h"

#include "formats/lv2/portvalues.h"
#include "processor/core/factorypresets.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace mirelon::test {
namespace {

using hosting::Lv2Features;
using hosting::Lv2Instance;
using Buffer = StereoBuffer<float>;

Buffer noise(std::size_t frames, unsigned seed) {
    Buffer buffer(frames);
    signals::fill<float>(buffer.left, signals::Signal::noise, seed, 0);
    signals::fill<float>(buffer.right, signals::Signal::noise, seed, 1);
    return buffer;
}

Buffer ranThrough(Lv2Instance& instance, Buffer input) {
    Buffer output(input.left.size());
    instance.run(input.pointers(), output.pointers(), static_cast<std::uint32_t>(input.frames()));
    return output;
}

void expectSame(const Buffer& a, const Buffer& b) {
    EXPECT_EQ(a.left, b.left);
    EXPECT_EQ(a.right, b.right);
}

// The port numbers and values that a test moves both plug-ins to.
struct Setting {
    float width, gain, balance, stability, centerPos;
    bool process, phase, invertL, invertR;
};

constexpr Setting settings[] = {
    {100.0F, 0.0F, 0.0F, 0.0F, 0.0F, true, false, false, false},
    {156.25F, 2.4F, 20.0F, -12.5F, 30.0F, true, true, false, true},
    {0.0F, -12.0F, -50.0F, 50.0F, -7.3F, true, false, true, false},
    {400.0F, 12.0F, 50.0F, 3.25F, 50.0F, false, true, true, true},
};

void apply(const Setting& setting, Lv2Instance& instance) {
    const float numbers[] = {setting.width,
                             setting.gain,
                             setting.balance,
                             setting.stability,
                             setting.centerPos,
                             setting.process ? 1.0F : 0.0F,
                             setting.phase ? 1.0F : 0.0F,
                             setting.invertL ? 1.0F : 0.0F,
                             setting.invertR ? 1.0F : 0.0F};
    for (int index = 0; index < kNumParams; ++index)
        instance.control(lv2::portOfParameter(index)) = numbers[index];
}

// What the ports of an instance stand for.
void apply(Lv2Instance& ports, hosting::Effect& effect) {
    for (int index = 0; index < kNumParams; ++index)
        effect.setParameter(
            index, lv2::valueOfPort(index, ports.control(lv2::portOfParameter(index))).value());
}

class Lv2Audio : public testing::Test {
  protected:
    Lv2Audio() { setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1); }

    TemporaryFolder preferences;
};

TEST_F(Lv2Audio, IsTheEffectsAtEveryRateBlockAndSetting) {
    for (const double rate : {44100.0, 48000.0, 96000.0, 22050.5}) {
        Lv2Instance instance(lv2Bundle(), rate);
        PluginInstance direct;
        direct.effect.setSampleRate(static_cast<float>(rate));
        direct.effect.resume();
        unsigned seed = 1;
        for (const Setting& setting : settings) {
            apply(setting, instance);
            apply(instance, direct.effect);
            for (const std::size_t frames : {1U, 7U, 64U, 441U, 1024U, 8192U}) {
                const Buffer input = noise(frames, ++seed);
                expectSame(ranThrough(instance, input), processed(direct.effect, input));
            }
        }
    }
}

TEST_F(Lv2Audio, IsTheSameWithoutAnyFeatureOfTheHost) {
    Lv2Instance with(lv2Bundle(), 48000.0, Lv2Features::all);
    Lv2Instance without(lv2Bundle(), 48000.0, Lv2Features::none);
    for (const Setting& setting : settings) {
        apply(setting, with);
        apply(setting, without);
        const Buffer input = noise(512, 3);
        expectSame(ranThrough(with, input), ranThrough(without, input));
    }
    EXPECT_EQ(without.restore({}), LV2_STATE_ERR_NO_FEATURE);
    EXPECT_TRUE(without.save().empty());
    EXPECT_TRUE(without.received().empty());
}

TEST_F(Lv2Audio, IsTheSameInPlaceAndCrossed) {
    Lv2Instance apart(lv2Bundle(), 48000.0);
    Lv2Instance inPlace(lv2Bundle(), 48000.0);
    Lv2Instance crossed(lv2Bundle(), 48000.0);
    for (Lv2Instance* instance : {&apart, &inPlace, &crossed})
        apply(settings[1], *instance);
    for (const std::size_t frames : {1U, 100U, 1024U}) {
        const Buffer input = noise(frames, 5);
        const Buffer expected = ranThrough(apart, input);
        const auto count = static_cast<std::uint32_t>(frames);

        Buffer same = input;
        inPlace.run(same.pointers(), same.pointers(), count);
        expectSame(same, expected);

        Buffer swapped = input;
        float* outputs[] = {swapped.right.data(), swapped.left.data()};
        crossed.run(swapped.pointers(), outputs, count);
        EXPECT_EQ(swapped.right, expected.left);
        EXPECT_EQ(swapped.left, expected.right);
    }
}

// Stored defaults are a matter of the window's buttons: the host has set the
// ports' own defaults.
TEST_F(Lv2Audio, OfAFreshInstanceIsThatOfItsPortsDefaults) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    const Buffer input = noise(256, 9);
    const Buffer output = ranThrough(instance, input);
    for (std::size_t i = 0; i < input.left.size(); ++i)
        EXPECT_NEAR(output.left[i], input.left[i], 1e-6F);
}

TEST_F(Lv2Audio, IsUntouchedWithProcessOff) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    apply(settings[3], instance);
    const Buffer input = noise(777, 4);
    expectSame(ranThrough(instance, input), input);
}

TEST_F(Lv2Audio, GoesOnWithUnconnectedPorts) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    for (std::uint32_t port = 0; port < instance.portCount() + 3; ++port)
        instance.connect(port, nullptr);
    Buffer input = noise(64, 4);
    float* nowhere[] = {nullptr, nullptr};
    instance.run(nowhere, nowhere, 64);
    Buffer output(64);
    instance.run(input.pointers(), output.pointers(), 64);
    EXPECT_NEAR(output.left[10], input.left[10], 1e-6F);
}

TEST_F(Lv2Audio, ComesInBlocksOfNoFramesToo) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    Buffer buffer(1);
    instance.run(buffer.pointers(), buffer.pointers(), 0);
    EXPECT_EQ(buffer.left[0], 0.0F);
}

TEST_F(Lv2Audio, MetersAreTheEffects) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    Buffer buffer(48000);
    std::fill(buffer.left.begin(), buffer.left.end(), 0.5F);
    buffer.right = buffer.left;
    ranThrough(instance, buffer);
    EXPECT_EQ(instance.control("width_meter"), 0.5F);
    EXPECT_NEAR(instance.control("balance_meter"), 0.0F, 1e-3F);
    std::fill(buffer.right.begin(), buffer.right.end(), 0.0F);
    for (int i = 0; i < 20; ++i)
        ranThrough(instance, buffer);
    EXPECT_EQ(instance.control("balance_meter"), -0.5F);
}

TEST_F(Lv2Audio, OfEachPresetInTheBundleIsThatOfTheFactoryPreset) {
    ASSERT_EQ(lv2Bundle().presets().size(), factoryPresets.size());
    for (const FactoryPreset& factory : factoryPresets) {
        Lv2Instance instance(lv2Bundle(), 48000.0);
        for (const auto& [symbol, number] : lv2Bundle().preset(std::string(factory.name)))
            instance.control(symbol) = number;
        PluginInstance direct;
        direct.effect.setSampleRate(48000.0F);
        int index = 0;
        for (const float value : factory.values)
            direct.effect.setParameter(index++, value);
        direct.effect.resume();
        const Buffer input = noise(512, 11);
        expectSame(ranThrough(instance, input), processed(direct.effect, input));
    }
}

TEST_F(Lv2Audio, InputPortsAreNeverWritten) {
    Lv2Instance instance(lv2Bundle(), 48000.0);
    std::minstd_rand random(3);
    Buffer buffer(32);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<float> before;
        for (std::uint32_t port = 0; port < instance.portCount(); ++port)
            if (instance.isControlInput(port))
                before.push_back(instance.control(port) =
                                     static_cast<float>(random() % 1000) - 300.0F);
        ranThrough(instance, buffer);
        std::vector<float> after;
        for (std::uint32_t port = 0; port < instance.portCount(); ++port)
            if (instance.isControlInput(port))
                after.push_back(instance.control(port));
        ASSERT_EQ(after, before);
    }
}

} // namespace
} // namespace mirelon::test
