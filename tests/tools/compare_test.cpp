// mirelon-host compare: what it says of two files.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class Compare : public testing::Test {
  protected:
    ProgramResult compare(const Sound& a, const Sound& b, std::vector<std::string> options = {}) {
        writeSound(folder / "a", a);
        writeSound(folder / "b", b);
        options.insert(options.begin(), {"compare", folder / "a", folder / "b"});
        return runHost(options);
    }

    TemporaryFolder folder;
    Sound noise = stereoNoise(wav16, 30000);
};

TEST_F(Compare, FindsTheSameSoundInAnotherFormatIdentical) {
    Sound other = noise;
    other.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    const ProgramResult result = compare(noise, other);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("identical"));
}

TEST_F(Compare, SaysWhereAndHowFarTheyDiffer) {
    Sound other = noise;
    other.samples[2 * 20000 + 1] += 0.25;
    const ProgramResult result = compare(noise, other);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("first       frame 20000"));
    EXPECT_THAT(result.output, HasSubstr("frames      1 differ"));
    // A quarter is -12.04 dB, and one of 60000 samples 47.78 dB less.
    EXPECT_THAT(result.output, HasSubstr("peak -12.04 dBFS, RMS -59.82 dBFS"));
}

TEST_F(Compare, FindsALongerFileDifferent) {
    Sound longer = noise;
    longer.samples.resize(longer.samples.size() + 2 * 20000);
    for (const bool second : {false, true}) {
        const ProgramResult result = second ? compare(noise, longer) : compare(longer, noise);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.output, HasSubstr("first       frame 30000"));
        EXPECT_THAT(result.output, HasSubstr("frames      20000 differ"));
    }
}

TEST_F(Compare, FindsAnotherRateDifferent) {
    Sound other = noise;
    other.sampleRate = 48000;
    const ProgramResult result = compare(noise, other, {"--quiet"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
}

TEST_F(Compare, SaysItInJson) {
    Sound other = noise;
    other.samples[10] += 0.5;
    const ProgramResult result = compare(noise, other, {"--json"});
    EXPECT_EQ(result.status, 1);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["identical"], false);
    EXPECT_EQ(json["firstDifferentFrame"], 5);
    EXPECT_EQ(json["differentFrames"], 1);
    EXPECT_NEAR(json["difference"]["peak"].get<double>(), -6.02, 0.01);
    EXPECT_EQ(json["a"]["frames"], 30000);
}

TEST_F(Compare, FailsWithoutTwoFiles) {
    writeSound(folder / "a", noise);
    const ProgramResult result = runHost({"compare", folder / "a", folder / "missing"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("missing: cannot be read"));
}

} // namespace
} // namespace mirelon::test
