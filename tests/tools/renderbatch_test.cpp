// mirelon-host render --out-dir: many files at a time.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class RenderBatch : public testing::Test {
  protected:
    RenderBatch() {
        for (const char* const name : {"a.wav", "b.wav", "c.wav"})
            writeSound(folder / name, noise);
    }

    ProgramResult render(const std::vector<std::string>& files,
                         const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{"render", "--out-dir", folder / "out"};
        for (const std::string& file : files)
            arguments.push_back(folder / file);
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runMirelon(arguments);
    }

    TemporaryFolder folder;
    Sound noise = stereoNoise(wav16, 3000);
};

TEST_F(RenderBatch, PutsEveryFileIntoTheFolder) {
    for (const char* const jobs : {"1", "2", "8"}) {
        const ProgramResult result =
            render({"a.wav", "b.wav", "c.wav"}, {"--jobs", jobs, "--overwrite"});
        ASSERT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_THAT(result.output, HasSubstr("3 of 3 files rendered"));
        for (const char* const name : {"a.wav", "b.wav", "c.wav"})
            EXPECT_EQ(readSound(folder / "out" / name).samples, noise.samples) << name;
    }
}

TEST_F(RenderBatch, OneBadFileDoesNotStopTheOthers) {
    writeFile(folder / "bad.wav", "no sound at all");
    const ProgramResult result = render({"a.wav", "bad.wav", "missing.wav", "c.wav"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("bad.wav: not an audio file"));
    EXPECT_THAT(result.errors, HasSubstr("missing.wav: cannot be read"));
    EXPECT_THAT(result.output, HasSubstr("2 of 4 files rendered"));
    EXPECT_THAT(result.output, HasSubstr("failed    " + (folder / "bad.wav").string()));
    EXPECT_EQ(readSound(folder / "out" / "c.wav").samples, noise.samples);
    EXPECT_FALSE(exists(folder / "out" / "bad.wav"));
}

TEST_F(RenderBatch, TakesTheExtensionOfTheFormatAskedFor) {
    ASSERT_EQ(render({"a.wav"}, {"--format", "flac"}).status, 0);
    EXPECT_EQ(readSound(folder / "out" / "a.flac").format, SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
}

TEST_F(RenderBatch, RefusesTwoFilesOfOneName) {
    create_directory(folder / "other");
    writeSound(folder / "other" / "a.wav", noise);
    const ProgramResult result = render({"a.wav", "other/a.wav"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("another IN goes to a.wav as well"));
    EXPECT_FALSE(exists(folder / "out" / "a.wav"));
}

TEST_F(RenderBatch, LeavesFilesThatExistAlone) {
    ASSERT_EQ(render({"a.wav"}).status, 0);
    const ProgramResult result = render({"a.wav", "b.wav"}, {"--preset", "swapped"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("a.wav: exists; --overwrite replaces it"));
    EXPECT_EQ(readSound(folder / "out" / "a.wav").samples, noise.samples);
    EXPECT_EQ(readSound(folder / "out" / "b.wav").left(7), noise.right(7));
}

TEST_F(RenderBatch, ReportsAllFilesInOneJsonObject) {
    const ProgramResult result = render({"b.wav", "missing.wav", "a.wav"}, {"--json"});
    EXPECT_EQ(result.status, 2);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json["version"], 1);
    ASSERT_EQ(json["files"].size(), 3U);
    EXPECT_EQ(json["files"][0]["input"]["file"], (folder / "b.wav").string());
    EXPECT_EQ(json["files"][0]["frames"], 3000);
    EXPECT_THAT(json["files"][1]["error"].get<std::string>(), HasSubstr("cannot be read"));
    EXPECT_FALSE(json["files"][2].contains("error"));
}

TEST_F(RenderBatch, SurvivesAPluginThatRefuses) {
    const ProgramResult result = runHost({"render", "--out-dir", folder / "out", folder / "a.wav",
                                          folder / "b.wav", "--plugin", testPlugin("onlymain")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output, HasSubstr("0 of 2 files rendered"));
    EXPECT_THAT(result.output, Not(HasSubstr("real time")));
}

TEST_F(RenderBatch, SurvivesAPluginThatCrashes) {
    Sound deadly = noise;
    deadly.samples[0] = 0.95;
    writeSound(folder / "b.wav", deadly);
    const ProgramResult result =
        runHost({"render", "--out-dir", folder / "out", folder / "a.wav", folder / "b.wav",
                 folder / "c.wav", "--plugin", testPlugin("crash")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("b.wav: the plug-in crashed (Killed)"));
    EXPECT_THAT(result.output, HasSubstr("2 of 3 files rendered"));
    EXPECT_EQ(readSound(folder / "out" / "c.wav").samples, noise.samples);
}

} // namespace
} // namespace mirelon::test
