// The commands on the LV2 plug-in: what they do with the VST 2 one, and the
// same bytes.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

ProgramResult runLv2(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--plugin", MIRELON_LV2_BUNDLE});
    return runHost(std::move(arguments));
}

class Lv2Commands : public testing::Test {
  protected:
    using Run = ProgramResult (*)(std::vector<std::string>);

    // The samples that a render leaves; the header has the time of day in it.
    std::vector<double> rendered(Run run, const std::vector<std::string>& options) {
        std::vector<std::string> arguments{"render", "--overwrite",     "--bits",
                                           "float",  folder / "in.wav", folder / "out.wav"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ProgramResult result = run(std::move(arguments));
        EXPECT_EQ(result.status, 0) << result.errors;
        return readSound(folder / "out.wav").samples;
    }
    // The bytes of the file that a command leaves.
    std::string written(Run run, std::vector<std::string> arguments, const std::string& file) {
        const ProgramResult result = run(std::move(arguments));
        EXPECT_EQ(result.status, 0) << result.errors;
        std::string bytes = contentsOf(folder / file);
        std::filesystem::remove(folder / file);
        EXPECT_FALSE(bytes.empty());
        return bytes;
    }

    TemporaryFolder folder;
};

TEST_F(Lv2Commands, RenderTheSamplesOfTheVst2PlugIn) {
    writeSound(folder / "in.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_FLOAT, 20000, 16, 48000));
    const std::vector<std::vector<std::string>> settings{
        {},
        {"--preset", "extended width"},
        {"--set", "width=0.75", "--set", "gain=-6dB", "--block", "64"},
        {"--preset", "9", "--set", "width=156.25%"},
        {"--automate", "width=0:1", "--block", "1000"},
    };
    std::vector<std::vector<double>> all;
    for (const auto& options : settings) {
        const std::vector<double> vst2 = rendered(runMirelon, options);
        EXPECT_EQ(vst2.size(), 40000U);
        EXPECT_TRUE(rendered(runLv2, options) == vst2);
        EXPECT_TRUE(std::ranges::find(all, vst2) == all.end());
        all.push_back(vst2);
    }
}

TEST_F(Lv2Commands, SaveAndLoadTheChunkOfTheVst2PlugIn) {
    const std::vector<std::string> save{"chunk", "save",  folder / "a", "--preset",
                                        "4",     "--set", "gain=6dB"};
    const std::string vst2 = written(runMirelon, save, "a");
    EXPECT_TRUE(written(runLv2, save, "a") == vst2);
    writeFile(folder / "vst2", vst2);
    const ProgramResult loaded = runLv2({"chunk", "load", folder / "vst2"});
    EXPECT_EQ(loaded.status, 0) << loaded.errors;
    EXPECT_THAT(loaded.output, HasSubstr("program \"balanse to the right\""));
    EXPECT_THAT(loaded.output, HasSubstr("Gain 6.00 dB"));
    EXPECT_EQ(runLv2({"chunk", "show", folder / "vst2"}).status, 0);
}

TEST_F(Lv2Commands, WriteThePresetFileOfTheVst2PlugIn) {
    const std::vector<std::string> save{"preset", "save",  folder / "a.dvp", "--preset",
                                        "2",      "--set", "width=0.25"};
    EXPECT_TRUE(written(runLv2, save, "a.dvp") == written(runMirelon, save, "a.dvp"));
}

TEST_F(Lv2Commands, InfoTellsFormatAndUri) {
    EXPECT_THAT(runLv2({"info"}).output, HasSubstr("LV2, http://dravik.example/mirelon"));
    const auto lv2 = nlohmann::json::parse(runLv2({"info", "--json"}).output);
    EXPECT_EQ(lv2["format"], "LV2");
    EXPECT_EQ(lv2["uri"], "http://dravik.example/mirelon");
    const auto vst2 = nlohmann::json::parse(runMirelon({"info", "--json"}).output);
    EXPECT_EQ(vst2["format"], "VST 2");
    EXPECT_FALSE(vst2.contains("uri"));
    EXPECT_EQ(lv2["presets"], vst2["presets"]);
}

TEST_F(Lv2Commands, TakeAUriFromLv2Path) {
    const std::string bundles = std::filesystem::path(MIRELON_LV2_BUNDLE).parent_path();
    const auto run = [&](const std::string& uri) {
        return RunningProgram(MIRELON_HOST_PROGRAM, {"info", "--plugin", uri}, folder.path,
                              {{"LV2_PATH", bundles}})
            .wait();
    };
    EXPECT_EQ(run("http://dravik.example/mirelon").status, 0);
    const ProgramResult missing = run("http://dravik.example/other");
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.errors, HasSubstr("http://dravik.example/other: no LV2 plug-in"));
}

TEST_F(Lv2Commands, RefuseDoublePrecisionWhichLv2DoesNotHave) {
    writeSound(folder / "in.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_FLOAT, 100));
    const ProgramResult result =
        runLv2({"render", "--double", folder / "in.wav", folder / "out.wav"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("does not process in double precision"));
}

} // namespace
} // namespace mirelon::test
