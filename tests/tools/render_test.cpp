// mirelon-host render: what the sound is afterwards.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <sndfile.h>
#include <sstream>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

constexpr int wavFloat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
constexpr int wavDouble = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;

class Render : public testing::Test {
  protected:
    // Renders `input` with the options and gives back the result.
    Sound rendered(const Sound& input, std::vector<std::string> options) {
        writeSound(folder / "in.wav", input);
        options.insert(options.begin(),
                       {"render", "--overwrite", folder / "in.wav", folder / "out.wav"});
        result = runMirelon(options);
        EXPECT_EQ(result.status, 0) << result.errors;
        return readSound(folder / "out.wav");
    }

    TemporaryFolder folder;
    ProgramResult result;
};

Sound constant(double left, double right, std::size_t frames) {
    Sound sound{wavFloat, 48000, 2, {}};
    for (std::size_t i = 0; i < frames; ++i)
        sound.samples.insert(sound.samples.end(), {left, right});
    return sound;
}

TEST_F(Render, DefaultsAreTheIdentityBitForBit) {
    for (const auto& [format, bits] : {std::pair{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16},
                                       {SF_FORMAT_WAV | SF_FORMAT_PCM_24, 24},
                                       {wavFloat, 24}}) {
        const Sound noise = stereoNoise(format, 5000, bits);
        const Sound out = rendered(noise, {});
        EXPECT_EQ(out.samples, noise.samples) << "format " << format;
        EXPECT_EQ(out.format, format);
    }
}

// The bytes are worked out here, sample by sample, from the plug-in's own
// arithmetic in single precision.
TEST_F(Render, IntegersOfEveryDepthAreTheNearest) {
    for (const auto& [subtype, bits] : {std::pair{+SF_FORMAT_PCM_U8, 8},
                                        {+SF_FORMAT_PCM_16, 16},
                                        {+SF_FORMAT_PCM_24, 24},
                                        {+SF_FORMAT_PCM_32, 32}}) {
        const Sound noise = stereoNoise(SF_FORMAT_WAV | subtype, 20001, bits);
        Sound fine = noise;
        fine.format = wavFloat;
        const Sound exact = rendered(fine, {"--set", "width=324", "--set", "gain=2.4"});
        const Sound out = rendered(noise, {"--set", "width=324", "--set", "gain=2.4"});
        const double scale = std::ldexp(1.0, bits - 1);
        ASSERT_EQ(out.samples.size(), noise.samples.size());
        for (std::size_t i = 0; i < out.samples.size(); ++i) {
            const double nearest = std::nearbyint(exact.samples[i] * scale);
            ASSERT_EQ(out.samples[i] * scale, std::clamp(nearest, -scale, scale - 1.0))
                << bits << " bits, sample " << i;
        }
    }
}

TEST_F(Render, SwappedPresetSwaps) {
    const Sound noise = stereoNoise(wavFloat, 3000);
    const Sound out = rendered(noise, {"--preset", "swapped"});
    ASSERT_EQ(out.frames(), noise.frames());
    for (std::size_t i = 0; i < noise.frames(); ++i) {
        EXPECT_EQ(out.left(i), noise.right(i));
        EXPECT_EQ(out.right(i), noise.left(i));
    }
}

TEST_F(Render, PresetsGoByNumberToo) {
    const Sound noise = stereoNoise(wavFloat, 3000);
    EXPECT_EQ(rendered(noise, {"--preset", "7"}).samples,
              rendered(noise, {"--preset", "Center Shift LEFT"}).samples);
    EXPECT_THAT(result.output, HasSubstr("preset 7 \"center shift left\""));
}

TEST_F(Render, SettingsTakeNumbersAndShownValues) {
    const Sound input = constant(0.25, 0.25, 100);
    const double minusSix = std::pow(10.0, -6.0 / 20.0);
    for (const char* const text : {"gain=-6", "gain=-6dB", "gain=-6.00", "GAIN = -6 db"})
        EXPECT_NEAR(rendered(input, {"--set", text}).left(50), 0.25 * minusSix, 1e-6) << text;
    EXPECT_THAT(result.output, HasSubstr("gain -6.00 dB"));
    EXPECT_EQ(rendered(input, {"--set-normalised", "gain=1"}).left(50),
              rendered(input, {"--set", "gain=12"}).left(50));

    const Sound leaning = rendered(input, {"--set", "balance=20L"});
    EXPECT_NEAR(leaning.left(50), 0.25 * 1.4, 1e-3);
    EXPECT_NEAR(leaning.right(50), 0.25 * 0.6, 1e-3);
}

TEST_F(Render, SettingsFindAValueBetweenThoseThatAreShownFirst) {
    // The side of a signal on the left only is half of it, times width^2 * 4.
    const Sound out = rendered(constant(0.5, 0.0, 100), {"--set", "width=123.45"});
    EXPECT_NEAR(out.left(50), 0.25 + 0.25 * 1.2345, 1e-5);
    EXPECT_THAT(result.output, HasSubstr("width 123.45 %"));
}

TEST_F(Render, SettingsOfBothScalesGoInTheOrderOfTheCommandLine) {
    const Sound input = constant(0.25, 0.25, 100);
    EXPECT_EQ(rendered(input, {"--set-normalised", "gain=0", "--set", "gain=0"}).left(50), 0.25);
    EXPECT_NE(rendered(input, {"--set", "gain=0", "--set-normalised", "gain=0"}).left(50), 0.25);
}

TEST_F(Render, ASettingBeyondTheRangeIsItsEndAndWarnedOf) {
    const Sound input = constant(0.25, 0.25, 100);
    const Sound out = rendered(input, {"--set", "gain=-99"});
    EXPECT_THAT(result.errors, HasSubstr("warning: \"-99\" is beyond the range of gain"));
    EXPECT_EQ(out.left(50), rendered(input, {"--set", "gain=-12"}).left(50));
    EXPECT_EQ(result.errors, "");
}

TEST_F(Render, WidthNoughtIsMono) {
    const Sound noise = stereoNoise(wavFloat, 1000);
    const Sound out = rendered(noise, {"--set", "width=0%"});
    for (std::size_t i = 0; i < out.frames(); ++i)
        ASSERT_EQ(out.left(i), out.right(i)) << i;
}

TEST_F(Render, SettingsTakeNamesThatLookLikeOptions) {
    const Sound out = rendered(constant(0.25, 0.5, 100), {"--set", "-L=1", "--set", "-R=+R"});
    EXPECT_EQ(out.left(50), -0.25);
    EXPECT_EQ(out.right(50), 0.5);
}

TEST_F(Render, SettingsGoOverThePreset) {
    const Sound out = rendered(constant(0.25, 0.5, 100),
                               {"--set", "phase=Off", "--preset", "swapped", "--set", "-L=-L"});
    EXPECT_EQ(out.left(50), -0.25);
    EXPECT_EQ(out.right(50), 0.5);
}

TEST_F(Render, BlockSizeDoesNotChangeTheSound) {
    const Sound noise = stereoNoise(wavFloat, 5000);
    const std::vector<std::string> state{"--preset", "side bal left", "--set-normalised",
                                         "gain=0.7"};
    const auto withBlock = [&](const char* frames) {
        std::vector<std::string> options = state;
        options.insert(options.end(), {"--block", frames});
        return rendered(noise, options).samples;
    };
    const auto reference = withBlock("5000");
    for (const char* const frames : {"1", "7", "64", "1024", "4999", "100000"})
        EXPECT_EQ(withBlock(frames), reference) << frames;
}

TEST_F(Render, DoublePrecisionKeepsWhatSingleRounds) {
    const Sound fine = stereoNoise(wavDouble, 3000, 40);
    EXPECT_EQ(rendered(fine, {"--double"}).samples, fine.samples);
    const auto single = rendered(fine, {}).samples;
    EXPECT_NE(single, fine.samples);
    for (std::size_t i = 0; i < single.size(); ++i)
        EXPECT_NEAR(single[i], fine.samples[i], 1e-6);
}

TEST_F(Render, AutomationMovesAParameterInALine) {
    constexpr std::size_t block = 100;
    constexpr std::size_t blocks = 11;
    const Sound out = rendered(constant(0.25, 0.25, block * (blocks - 1) + 30),
                               {"--block", "100", "--automate-normalised", "gain=0.25:0.75"});
    for (std::size_t i = 0; i < out.frames(); ++i) {
        const std::size_t number = i / block;
        const double value = 0.25 + 0.5 * static_cast<double>(number) / (blocks - 1);
        EXPECT_NEAR(out.left(i), 0.25 * std::pow(10.0, (value - 0.5) * 1.2), 1e-6) << i;
    }
}

TEST_F(Render, AutomationTakesShownValuesAndSeveralParameters) {
    const Sound out = rendered(constant(0.25, 0.25, 2000),
                               {"--block", "1000", "--automate", "balance=50L:50R", "--automate",
                                "-R=+R:-R", "--automate", "process=On:On"});
    EXPECT_NEAR(out.left(500), 0.5, 1e-6);
    EXPECT_NEAR(out.right(500), 0.0, 1e-6);
    EXPECT_NEAR(out.left(1500), 0.0, 1e-6);
    EXPECT_NEAR(out.right(1500), -0.5, 1e-6);
}

TEST_F(Render, MonoIsFedToBothSides) {
    Sound mono{wavFloat, 8000, 1, {}};
    for (int i = 0; i < 500; ++i)
        mono.samples.push_back(i / 1024.0);
    const Sound out = rendered(mono, {});
    EXPECT_EQ(out.channels, 2);
    EXPECT_EQ(out.sampleRate, 8000);
    ASSERT_EQ(out.frames(), 500U);
    for (std::size_t i = 0; i < 500; ++i) {
        EXPECT_EQ(out.left(i), mono.samples[i]);
        EXPECT_EQ(out.right(i), mono.samples[i]);
    }
}

TEST_F(Render, NothingComesOutOfNothing) {
    EXPECT_EQ(rendered(Sound{wavFloat, 44100, 2, {}}, {"--automate", "gain=0:1"}).frames(), 0U);
    EXPECT_THAT(result.output, HasSubstr("frames    0 (0.00 s)"));
}

TEST_F(Render, IntegersAreRoundedToNearestAndClippedAtFullScale) {
    Sound loud{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 2, {}};
    loud.samples = {0.75, -0.75, 3.0 / 32768.0, 5.0 / 32768.0};
    const Sound out = rendered(loud, {"--set", "gain=12", "--set", "width=100"});
    EXPECT_EQ(out.left(0), 32767.0 / 32768.0);
    EXPECT_EQ(out.right(0), -1.0);
    const double gain = std::pow(10.0, 0.6);
    EXPECT_EQ(out.left(1), std::round(3.0 * gain) / 32768.0);
    EXPECT_EQ(out.right(1), std::round(5.0 * gain) / 32768.0);
    EXPECT_THAT(result.output, HasSubstr("2 samples were beyond full scale"));
}

// The numbers of the report's line that begins with `name`.
std::vector<double> reported(const std::string& output, const std::string& name) {
    std::istringstream line(output.substr(output.find("  " + name + " ") + name.size() + 2));
    std::vector<double> numbers;
    for (double number = 0; numbers.size() < 6 && line >> number;)
        numbers.push_back(number);
    return numbers;
}

TEST_F(Render, ReportsLevelsAndImageOfBothEnds) {
    rendered(constant(0.5, 0.25, 1000), {"--preset", "swapped"});
    // Width: log16 of 0.75 / 0.25, balance: log16 of 1/2 and of 2.
    const double width = std::log(3.0) / std::log(16.0);
    const double half = -6.0206;
    EXPECT_THAT(reported(result.output, "before"),
                testing::Pointwise(testing::DoubleNear(0.006),
                                   {half, half, 2 * half, 2 * half, width, -0.25}));
    EXPECT_THAT(reported(result.output, "after"),
                testing::Pointwise(testing::DoubleNear(0.006),
                                   {2 * half, 2 * half, half, half, width, 0.25}));
    EXPECT_THAT(result.output, HasSubstr("frames    1000 (0.02 s)"));
    EXPECT_THAT(result.output, HasSubstr("x real time"));
}

TEST_F(Render, TakesTheLatencyOfAPluginOut) {
    writeSound(folder / "in.wav", constant(0.25, 0.5, 1003));
    for (const char* const block : {"2", "1000", "4096"}) {
        result = runHost({"render", "--overwrite", folder / "in.wav", folder / "out.wav", "--block",
                          block, "--plugin", testPlugin("gain"), "--preset", "half"});
        ASSERT_EQ(result.status, 0) << result.errors;
        const Sound out = readSound(folder / "out.wav");
        ASSERT_EQ(out.frames(), 1003U);
        for (std::size_t i = 0; i < out.frames(); ++i) {
            ASSERT_EQ(out.left(i), 0.125) << i;
            ASSERT_EQ(out.right(i), 0.25) << i;
        }
    }
}

TEST_F(Render, PushesTheLastFramesOutOfAPluginWithSilence) {
    writeSound(folder / "in.wav", constant(0.25, 0.125, 10));
    for (const char* const block : {"2", "4096"}) {
        result = runHost({"render", "--overwrite", folder / "in.wav", folder / "out.wav", "--block",
                          block, "--plugin", testPlugin("lookahead")});
        ASSERT_EQ(result.status, 0) << result.errors;
        const Sound out = readSound(folder / "out.wav");
        ASSERT_EQ(out.frames(), 10U);
        for (std::size_t i = 0; i < out.frames(); ++i) {
            const double times = i < 7 ? 2.0 : 1.0;
            EXPECT_EQ(out.left(i), times * 0.25) << i;
            EXPECT_EQ(out.right(i), times * 0.125) << i;
        }
    }
}

TEST_F(Render, AsksThePluginToUnderstandATextFirst) {
    writeSound(folder / "in.wav", constant(0.25, 0.5, 10));
    result = runHost({"render", "--overwrite", folder / "in.wav", folder / "out.wav", "--plugin",
                      testPlugin("gain"), "--set", "level=a quarter"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(readSound(folder / "out.wav").right(3), 0.125);
}

} // namespace
} // namespace mirelon::test
