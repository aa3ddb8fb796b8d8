// mirelon-host render: the options that say what OUT is like.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
constexpr int wavFloat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;

class RenderOutput : public testing::Test {
  protected:
    ProgramResult render(const Sound& input, std::vector<std::string> options) {
        writeSound(folder / "in.wav", input);
        options.insert(options.begin(), {"render", folder / "in.wav", folder / "out.wav"});
        return runMirelon(options);
    }
    Sound out() { return readSound(folder / "out.wav"); }

    TemporaryFolder folder;
};

// Two samples of three beyond full scale, the highest by 3.52 dB.
Sound tooLoud(int format) {
    return {format, 44100, 2, {0.5, 1.5, 1.25, 0.5, 0.25, 0.25}};
}

TEST_F(RenderOutput, IsReplacedWhenAskedForOnly) {
    const Sound noise = stereoNoise(wav16, 1000);
    ASSERT_EQ(render(noise, {}).status, 0);
    const ProgramResult again = render(noise, {"--preset", "swapped"});
    EXPECT_EQ(again.status, 2);
    EXPECT_THAT(again.errors, HasSubstr("out.wav: exists; --overwrite replaces it"));
    EXPECT_EQ(out().samples, noise.samples);
    EXPECT_EQ(render(noise, {"--preset", "swapped", "--overwrite"}).status, 0);
    EXPECT_EQ(out().left(5), noise.right(5));
    const ProgramResult same = runMirelon({"render", folder / "in.wav", folder / "in.wav"});
    EXPECT_EQ(same.status, 2);
    EXPECT_THAT(same.errors, HasSubstr("in.wav: exists"));
}

TEST_F(RenderOutput, HasTheFormatAndBitsAskedFor) {
    const Sound noise = stereoNoise(wav16, 1000);
    for (const auto& [kind, bits, format] :
         {std::tuple{"aiff", "24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
          {"rf64", "float", SF_FORMAT_RF64 | SF_FORMAT_FLOAT},
          {"w64", "double", SF_FORMAT_W64 | SF_FORMAT_DOUBLE},
          {"caf", "32", SF_FORMAT_CAF | SF_FORMAT_PCM_32},
          {"flac", "16", SF_FORMAT_FLAC | SF_FORMAT_PCM_16}}) {
        const ProgramResult result =
            render(noise, {"--overwrite", "--format", kind, "--bits", bits});
        ASSERT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(out().format & ~SF_FORMAT_ENDMASK, format) << kind;
        EXPECT_EQ(out().samples, noise.samples) << kind;
    }
    const ProgramResult none =
        render(noise, {"--overwrite", "--format", "flac", "--bits", "float"});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.errors, HasSubstr("FLAC does not take samples of float"));
    EXPECT_EQ(render(noise, {"--format", "docx"}).status, 2);
    EXPECT_EQ(render(noise, {"--bits", "17"}).status, 2);
}

TEST_F(RenderOutput, IsDitheredTheSameEveryTime) {
    Sound quiet{wavFloat, 44100, 2, std::vector<double>(20000, 0.25 / 32768.0)};
    const auto dithered = [&] {
        const ProgramResult result = render(quiet, {"--overwrite", "--bits", "16", "--dither"});
        EXPECT_EQ(result.status, 0) << result.errors;
        return out().samples;
    };
    const auto samples = dithered();
    EXPECT_EQ(samples, dithered());
    // Plain rounding would leave nothing; dither keeps the level on average.
    double sum = 0.0;
    for (const double sample : samples)
        sum += sample * 32768.0;
    EXPECT_NEAR(sum / static_cast<double>(samples.size()), 0.25, 0.02);
    const ProgramResult refused = render(quiet, {"--overwrite", "--dither"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("not of integers"));
}

TEST_F(RenderOutput, TellsOfClippingOnStandardError) {
    const ProgramResult result = render(tooLoud(wavFloat), {"--bits", "24"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors,
                HasSubstr("out.wav: 2 samples are beyond full scale, the highest by 3.52 dB; "
                          "--headroom 3.6 or --bits float keeps them whole"));
}

TEST_F(RenderOutput, IsNotWrittenWhenItMustNotClip) {
    const ProgramResult result = render(tooLoud(wavFloat), {"--bits", "24", "--no-clip"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("2 samples are beyond full scale"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    EXPECT_EQ(render(tooLoud(wavFloat), {"--no-clip"}).status, 0);
    EXPECT_EQ(out().samples, tooLoud(wavFloat).samples);
}

TEST_F(RenderOutput, IsLoweredByTheHeadroom) {
    const ProgramResult result =
        render(tooLoud(wavFloat), {"--bits", "double", "--headroom", "3.6", "--no-clip"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("lowered by 3.60 dB"));
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(out().samples[i], tooLoud(wavFloat).samples[i] * std::pow(10.0, -0.18));
}

TEST_F(RenderOutput, TellsOfSamplesThatAreNoNumber) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Sound bad{wavFloat, 44100, 2, {0.5, nan, infinity, 0.25, nan, 0.5}};
    const ProgramResult result = render(bad, {"--json"});
    EXPECT_THAT(result.errors, HasSubstr("in.wav: 3 samples are infinite or no number"));
    const auto json = nlohmann::json::parse(result.output)["files"][0];
    EXPECT_EQ(json["before"]["notFinite"], 3);
    EXPECT_EQ(json["before"]["left"]["rms"], json["before"]["left"]["rms"]);
    EXPECT_TRUE(json["before"]["right"]["rms"].is_number());
}

TEST_F(RenderOutput, IsReportedInJson) {
    const ProgramResult result =
        render(stereoNoise(wav16, 44100), {"--json", "--loudness", "--preset", "swapped"});
    ASSERT_EQ(result.status, 0) << result.errors;
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json["version"], 1);
    const auto& file = json["files"][0];
    EXPECT_EQ(file["output"]["format"], "WAV, Signed 16 bit PCM");
    EXPECT_EQ(file["frames"], 44100);
    EXPECT_EQ(file["settings"], "preset 10 \"swapped\"");
    EXPECT_EQ(file["before"]["left"]["peak"], file["after"]["right"]["peak"]);
    EXPECT_NEAR(file["before"]["correlation"].get<double>(), 0.0, 0.05);
    // White noise of -10.79 dB in either channel, whose treble the measure lifts by 4 dB.
    EXPECT_NEAR(file["before"]["loudness"].get<double>(), -0.69 - 10.79 + 3.01 + 4.0, 0.5);
    EXPECT_GT(file["after"]["truePeak"].get<double>(), file["after"]["left"]["peak"].get<double>());
}

TEST_F(RenderOutput, IsNotReportedWhenQuiet) {
    const ProgramResult result = render(stereoNoise(wav16, 100), {"--quiet"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.errors, "");
}

} // namespace
} // namespace mirelon::test
