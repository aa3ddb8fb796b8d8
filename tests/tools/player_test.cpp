// A player whose blocks are asked for by hand.
#include "tools/audio/player.h"

#include "hosting/hosting.h"
#include "tests/support/allocations.h"
#include "tools/audio/loudness.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <numeric>
#include <random>

namespace mirelon::tools {
namespace {

using ::testing::Each;

constexpr int latency = 5; // of the test plug-in

// Frame n is n + 1 on the left and its negative on the right.
Material countingFrames(std::size_t frames) {
    Material material{48000, {}};
    for (std::size_t i = 0; i < frames; ++i) {
        material.channels[0].push_back(static_cast<float>(i + 1));
        material.channels[1].push_back(-static_cast<float>(i + 1));
    }
    return material;
}

// What is heard on the left.
std::vector<float> heardOf(AudioSource& source, std::size_t frames) {
    std::vector<float> both(2 * frames);
    source.fill(both, {});
    std::vector<float> left(frames);
    for (std::size_t i = 0; i < frames; ++i)
        left[i] = both[2 * i];
    return left;
}

std::vector<float> counted(int first, std::size_t frames) {
    std::vector<float> numbers(frames);
    std::iota(numbers.begin(), numbers.end(), static_cast<float>(first));
    return numbers;
}

class PlayerOfAFile : public ::testing::Test {
  protected:
    const hosting::Module module{MIRELON_TEST_PLUGINS "gain.so"};
    hosting::RecordingHost host;
    hosting::Effect effect{module, host};
};

TEST_F(PlayerOfAFile, PlaysTheFileThroughTheEffect) {
    effect.setProgram(1); // half
    Player player(effect, countingFrames(1000));
    const auto heard = heardOf(player, 700);
    EXPECT_FLOAT_EQ(heard[latency], 0.5F);
    EXPECT_FLOAT_EQ(heard[699], 0.5F * (700 - latency));
    EXPECT_EQ(player.position(), 700);
}

TEST_F(PlayerOfAFile, LoopsFromTheLastFrameToTheFirst) {
    Player player(effect, countingFrames(700));
    const auto heard = heardOf(player, 1500);
    EXPECT_EQ(heard[latency + 699], 700.0F);
    EXPECT_EQ(heard[latency + 700], 1.0F);
    EXPECT_EQ(heard[latency + 1399], 700.0F);
    EXPECT_EQ(heard[latency + 1400], 1.0F);
    EXPECT_EQ(player.position(), 100);
}

TEST_F(PlayerOfAFile, StopsAtTheEndWhenItDoesNotLoop) {
    Player player(effect, countingFrames(700));
    player.loop(false);
    const auto heard = heardOf(player, 1500);
    EXPECT_EQ(heard[latency + 699], 700.0F);
    EXPECT_THAT(std::vector(heard.begin() + latency + 700, heard.end()), Each(0.0F));
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(player.position(), 700);
}

TEST_F(PlayerOfAFile, GoesOnFromTheBeginAfterTheEnd) {
    Player player(effect, countingFrames(700));
    player.loop(false);
    heardOf(player, 1500);
    player.play();
    EXPECT_EQ(heardOf(player, 100)[latency], 1.0F);
    EXPECT_EQ(player.position(), 100);
}

TEST_F(PlayerOfAFile, SeeksToTheVeryFrame) {
    Player player(effect, countingFrames(100000));
    heardOf(player, 1000);
    player.seek(77777);
    EXPECT_EQ(player.position(), 77777);
    const auto heard = heardOf(player, 600);
    EXPECT_EQ(std::vector(heard.begin() + latency, heard.end()), counted(77778, 600 - latency));
    EXPECT_EQ(player.position(), 77777 + 600);
}

TEST_F(PlayerOfAFile, SeeksNoFurtherThanBeginAndEnd) {
    Player player(effect, countingFrames(1000));
    player.loop(false);
    player.seek(-5);
    EXPECT_EQ(player.position(), 0);
    player.seek(5000);
    EXPECT_EQ(player.position(), 1000);
    heardOf(player, 10);
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(PlayerOfAFile, StopsAndGoesOnWhereItWas) {
    Player player(effect, countingFrames(10000));
    heardOf(player, 600);
    player.stop();
    const auto silence = heardOf(player, 600);
    EXPECT_THAT(std::vector(silence.begin() + latency, silence.end()), Each(0.0F));
    EXPECT_EQ(player.position(), 600);
    player.play();
    EXPECT_EQ(heardOf(player, 600)[latency], 601.0F);
}

TEST_F(PlayerOfAFile, TheOriginalIsAsLateAsTheProcessed) {
    effect.setProgram(2); // nothing comes out
    Player player(effect, countingFrames(10000));
    player.bypass(true);
    heardOf(player, 1000); // beyond the fade
    const auto heard = heardOf(player, 100);
    EXPECT_EQ(heard, counted(1001 - latency, 100));
}

TEST_F(PlayerOfAFile, FadesBetweenProcessedAndOriginal) {
    effect.setProgram(2);
    Material steady{48000, {}};
    for (auto& channel : steady.channels)
        channel.assign(48000, 1.0F);
    Player player(effect, std::move(steady));
    heardOf(player, 1000);
    player.bypass(true);
    const auto heard = heardOf(player, 1000);
    float largestStep = 0.0F;
    for (std::size_t i = 1; i < heard.size(); ++i)
        largestStep = std::max(largestStep, std::abs(heard[i] - heard[i - 1]));
    EXPECT_LT(largestStep, 0.01F);
    EXPECT_EQ(heard.back(), 1.0F);
}

TEST_F(PlayerOfAFile, HearsWhatComesIn) {
    Player player(effect, 44100);
    std::vector<float> in(2 * 1200);
    for (std::size_t frame = 0; frame < in.size() / 2; ++frame)
        in[2 * frame] = in[2 * frame + 1] = static_cast<float>(frame + 1);
    std::vector<float> out(in.size());
    player.fill(out, in);
    EXPECT_EQ(out[2 * latency], 1.0F);
    EXPECT_EQ(out.back(), 1200.0F - latency);
    EXPECT_EQ(player.position(), 1200);
    EXPECT_FALSE(player.length());
    player.stop();
    player.fill(out, in);
    EXPECT_EQ(out.back(), 0.0F);
}

TEST_F(PlayerOfAFile, AllocatesNothingWhileItPlays) {
    Player player(effect, countingFrames(5000));
    player.setGains({.original = 0.5F, .processed = 0.5F});
    std::vector<float> out(2 * 1000);
    player.fill(out, {});
    const long before = test::allocationsMade();
    for (int i = 0; i < 20; ++i) {
        player.bypass(i % 2 == 0);
        player.seek(100 * i);
        player.fill(out, {});
    }
    EXPECT_EQ(test::allocationsMade(), before);
}

Material noise(double dbfs, int seconds) {
    constexpr int rate = 48000;
    std::mt19937 random(1);
    Material material{rate, {}};
    const auto height = static_cast<float>(std::pow(10.0, dbfs / 20.0));
    for (int i = 0; i < seconds * rate; ++i)
        for (auto& channel : material.channels)
            channel.push_back(height * (static_cast<float>(random()) / 2147483648.0F - 1.0F));
    return material;
}

// The integrated loudness of what is heard for some seconds.
double loudnessOf(Player& player, int seconds) {
    constexpr std::size_t frames = 4800;
    Loudness loudness(player.rate());
    std::vector<float> out(2 * frames);
    std::vector<double> left(frames);
    std::vector<double> right(frames);
    for (int i = 0; i < 10 * seconds; ++i) {
        player.fill(out, {});
        for (std::size_t frame = 0; frame < frames; ++frame) {
            left[frame] = static_cast<double>(out[2 * frame]);
            right[frame] = static_cast<double>(out[2 * frame + 1]);
        }
        loudness.add(left, right);
    }
    return loudness.integrated();
}

// With the effect's gain turned down and up.
class BypassAtEqualLoudness : public ::testing::TestWithParam<float> {};

TEST_P(BypassAtEqualLoudness, IsAsLoudAsTheProcessed) {
    const hosting::Module module(MIRELON_PLUGIN_FILE);
    hosting::RecordingHost host;
    hosting::Effect effect(module, host);
    for (VstInt32 i = 0; i < effect.record().numParams; ++i) {
        if (effect.parameterName(i) == "gain")
            effect.setParameter(i, GetParam());
    }
    Player player(effect, noise(-20.0, 20));
    EqualLoudness meter(player.rate());
    loudnessOf(player, 5);
    player.measure(meter);
    const double plain = loudnessOf(player, 5);
    player.bypass(true);
    const double original = loudnessOf(player, 5);
    ASSERT_GT(std::abs(plain - original), 1.0) << "the same without";

    const LoudnessGains gains = meter.gains();
    EXPECT_LE(gains.original, 1.0F);
    EXPECT_LE(gains.processed, 1.0F);
    player.setGains(gains);
    loudnessOf(player, 1);
    const double originalMatched = loudnessOf(player, 5);
    player.bypass(false);
    loudnessOf(player, 1);
    const double processedMatched = loudnessOf(player, 5);
    EXPECT_NEAR(originalMatched, processedMatched, 0.1);
    EXPECT_NEAR(processedMatched, std::min(plain, original), 0.1);
}

INSTANTIATE_TEST_SUITE_P(Gains, BypassAtEqualLoudness, ::testing::Values(0.2F, 0.9F));

} // namespace
} // namespace mirelon::tools
