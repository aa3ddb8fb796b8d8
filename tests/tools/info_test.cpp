// mirelon-host info, and how every command finds and refuses plug-ins.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace mirelon::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// One clear line on standard error, status 2, nothing said to be done.
void expectRefusal(const ProgramResult& result, const std::string& why) {
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, AllOf(StartsWith("mirelon-host: "), EndsWith("\n"), HasSubstr(why)));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

TEST(Info, DescribesThePluginAsJson) {
    const ProgramResult result = runMirelon({"info", "--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    const auto all = nlohmann::json::parse(result.output);
    EXPECT_EQ(all["version"], 1);
    EXPECT_EQ(all["name"], "Dravik Mirelon");
    EXPECT_EQ(all["product"], "Mirelon");
    EXPECT_EQ(all["vendorVersion"], 1980);
    EXPECT_EQ(all["vstVersion"], 2400);
    EXPECT_EQ(all["category"], "mastering");
    EXPECT_EQ(all["record"]["magic"], "VstP");
    EXPECT_EQ(all["record"]["uniqueID"], "MrLn");
    EXPECT_EQ(all["record"]["inputs"], 2);
    EXPECT_EQ(all["record"]["programs"], 1);
    EXPECT_THAT(all["record"]["flagNames"], testing::Contains("double replacing"));
    ASSERT_EQ(all["parameters"].size(), 9U);
    const auto& gain = all["parameters"][1];
    EXPECT_EQ(gain["name"], "gain");
    EXPECT_EQ(gain["label"], "   dB   ");
    EXPECT_EQ(gain["display"], "0.00");
    EXPECT_EQ(gain["value"], 0.5);
    EXPECT_EQ(gain["properties"]["step"], 1.0 / 256.0);
    EXPECT_EQ(gain["properties"]["switch"], false);
    EXPECT_EQ(all["parameters"][5]["properties"]["switch"], true);
    ASSERT_EQ(all["presets"].size(), 11U);
    EXPECT_EQ(all["presets"][3], "balanse to the left");
    EXPECT_EQ(all["currentPreset"], 0);
}

TEST(Info, PrintsTheNamesOfTheParametersAloneOneOnALine) {
    const ProgramResult result =
        runHost({"info", "--parameter-names", "--plugin", testPlugin("displays")});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "Drive\nMix\nRelease\nDamping\nMode\nVoices\nPan\n");
}

TEST(Info, DescribesThePluginToPeople) {
    const ProgramResult result = runMirelon({"info"});
    EXPECT_EQ(result.status, 0);
    for (const char* const part : {"Dravik Mirelon", "VST 2400, unique ID MrLn", "2 in, 2 out",
                                   "centerPos", "extended width", "init  (current)"})
        EXPECT_THAT(result.output, HasSubstr(part));
    EXPECT_EQ(result.errors, "");
}

TEST(Info, DescribesAnyOtherPlugin) {
    const ProgramResult result = runHost({"info", "--json", "--plugin", testPlugin("gain")});
    ASSERT_EQ(result.status, 0) << result.errors;
    const auto all = nlohmann::json::parse(result.output);
    EXPECT_EQ(all["record"]["initialDelay"], 5);
    EXPECT_EQ(all["parameters"][0]["name"], "Level");
    EXPECT_EQ(all["presets"], nlohmann::json({"unity", "half", "none"}));
}

TEST(Info, TakesThePluginOfTheBuildByItself) {
    const ProgramResult result = runHost({"info", "--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(nlohmann::json::parse(result.output)["file"],
              std::filesystem::canonical(MIRELON_PLUGIN_FILE).string());
}

// A copy of the program that stands alone.
class LoneProgram : public testing::Test {
  protected:
    void SetUp() override {
        create_directories(folder / "bin");
        copy_file(MIRELON_HOST_PROGRAM, program);
    }
    void putPluginInto(const std::string& name) {
        create_directories(folder / name);
        std::filesystem::copy_file(testPlugin("onlymain"), folder / name / "mirelon.so");
    }
    std::string foundFile(const std::vector<std::pair<std::string, std::string>>& environment) {
        const auto result =
            RunningProgram(program, {"info", "--json"}, folder.path, environment).wait();
        EXPECT_EQ(result.status, 0) << result.errors;
        return nlohmann::json::parse(result.output, nullptr, false)["file"];
    }

    TemporaryFolder folder;
    std::filesystem::path program = folder / "bin" / "mirelon-host";
};

TEST_F(LoneProgram, FindsThePluginOfItsInstallation) {
    putPluginInto("lib/vst");
    putPluginInto(".vst");
    EXPECT_EQ(foundFile({}), folder / "lib" / "vst" / "mirelon.so");
}

TEST_F(LoneProgram, FindsThePluginInTheHomeFolder) {
    putPluginInto(".vst");
    putPluginInto("elsewhere");
    EXPECT_EQ(foundFile({{"VST_PATH", (folder / "elsewhere").string()}}),
              folder / ".vst" / "mirelon.so");
}

TEST_F(LoneProgram, FindsThePluginInAFolderOfTheSearchPath) {
    putPluginInto("elsewhere");
    EXPECT_EQ(foundFile({{"VST_PATH", "/nowhere::" + (folder / "elsewhere").string()}}),
              folder / "elsewhere" / "mirelon.so");
}

TEST(Refusal, OfAMissingPlugin) {
    expectRefusal(runHost({"info", "--plugin", "/nowhere/effect.so"}),
                  "/nowhere/effect.so: no such plug-in file");
}

TEST(Refusal, OfAFileThatIsNoPlugin) {
    const TemporaryFolder folder;
    writeFile(folder / "song.txt", "la la");
    expectRefusal(runHost({"info", "--plugin", folder / "song.txt"}), "song.txt: not a plug-in");
    expectRefusal(runHost({"info", "--plugin", testPlugin("noentry")}), "exports no VSTPluginMain");
}

TEST(Refusal, OfAPluginThatAnswersNonsense) {
    expectRefusal(runHost({"info", "--plugin", testPlugin("nullanswer")}), "made no instance");
    expectRefusal(runHost({"info", "--plugin", testPlugin("wrongmagic")}), "wrong magic word");
    expectRefusal(runHost({"info", "--plugin", testPlugin("nofunctions")}), "lacks a function");
}

TEST(Refusal, OfACommandLineThatMakesNoSense) {
    expectRefusal(runHost({}), "subcommand is required");
    expectRefusal(runHost({"rendre"}), "unknown command \"rendre\", the nearest is \"render\"");
    expectRefusal(runHost({"info", "--tempo", "3"}), "--tempo");
    expectRefusal(runHost({"render", "only-one.wav"}), "OUT is required");
}

TEST(Help, NamesEveryCommand) {
    const ProgramResult result = runHost({"--help"});
    EXPECT_EQ(result.status, 0);
    for (const char* const command : {"info", "render", "plot", "chunk"})
        EXPECT_THAT(result.output, HasSubstr(command));
}

} // namespace
} // namespace mirelon::test
