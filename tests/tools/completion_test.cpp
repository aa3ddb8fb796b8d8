// Completion of mirelon-host's command lines, in a shell that has loaded the script.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"

#include <gmock/gmock.h>
#include <sstream>

namespace mirelon::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::UnorderedElementsAre;

class CompletionInBash : public testing::Test {
  protected:
    void SetUp() override {
        create_directory(folder / "takes");
        writeFile(folder / "take.wav", "");
    }

    // What bash offers for the last of these words, in the folder.
    std::vector<std::string> offered(const std::string& words) {
        const std::string script =
            "set -u; cd '" + folder.path.string() +
            "'; source <('" MIRELON_HOST_PROGRAM
            "' completion bash); COMP_WORDS=('" MIRELON_HOST_PROGRAM "' " +
            words +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _mirelon_host; printf '%s\\n' "
            "\"${COMPREPLY[@]}\"";
        const TemporaryFolder home;
        const ProgramResult result = RunningProgram("/bin/bash", {"-c", script}, home.path).wait();
        EXPECT_EQ(result.errors, "");
        std::vector<std::string> list;
        std::istringstream lines(result.output);
        for (std::string line; std::getline(lines, line);) {
            if (!line.empty())
                list.push_back(line);
        }
        return list;
    }

    TemporaryFolder folder;
};

TEST_F(CompletionInBash, OffersCommands) {
    EXPECT_THAT(offered("''"), AllOf(Contains("render"), Contains("check"), Not(Contains(""))));
    EXPECT_THAT(offered("re"), ElementsAre("render"));
    EXPECT_THAT(offered("chunk s"), ElementsAre("save", "show"));
}

TEST_F(CompletionInBash, OffersTheOptionsOfACommand) {
    EXPECT_THAT(offered("render --set"), ElementsAre("--set", "--set-normalised"));
    EXPECT_THAT(offered("chunk save --p"), UnorderedElementsAre("--preset", "--plugin"));
    EXPECT_THAT(offered("chunk load --pre"), ElementsAre());
    EXPECT_THAT(offered("check --r"), Not(Contains("--run"))) << "that one is not for users";
}

TEST_F(CompletionInBash, OffersWhatAnOptionTakes) {
    EXPECT_THAT(offered("render --format fl"), ElementsAre("flac"));
    EXPECT_THAT(offered("render --format = fl"), ElementsAre("flac"));
    EXPECT_THAT(offered("edit --drive ="), UnorderedElementsAre("both", "glib", "idle"));
    EXPECT_THAT(offered("render --out-dir t"), ElementsAre("takes"));
    EXPECT_THAT(offered("render --plugin take."), ElementsAre("take.wav"));
    EXPECT_THAT(offered("render --block t"), ElementsAre());
}

TEST_F(CompletionInBash, OffersTheNamesOfChecks) {
    EXPECT_THAT(offered("check --only load-"),
                UnorderedElementsAre("load-twice", "load-time", "load-memory"));
    EXPECT_THAT(offered("check --skip = audio-in"), ElementsAre("audio-in-place"));
    EXPECT_THAT(offered("check --only no-such"), ElementsAre());
}

TEST_F(CompletionInBash, OffersTheParametersOfThePluginFoundWhereOneIsToBeNamed) {
    EXPECT_THAT(offered("render --set w"), ElementsAre("width="));
    EXPECT_THAT(offered("plot --set-normalised = ga"), ElementsAre("gain="));
    EXPECT_THAT(offered("render --automate balan"), ElementsAre("balance="));
    EXPECT_THAT(offered("edit --set no-such"), ElementsAre());
}

TEST_F(CompletionInBash, OffersTheParametersOfThePluginThatIsNamed) {
    const std::string named = "--plugin '" + testPlugin("displays") + "'";
    EXPECT_THAT(offered("render " + named + " --set D"), ElementsAre("Drive=", "Damping="));
    EXPECT_THAT(offered("render --plugin = '" + testPlugin("displays") + "' --automate Mi"),
                ElementsAre("Mix="));
    EXPECT_THAT(offered("render " + named + " --set mi"), ElementsAre("Mix="))
        << "case does not count in names";
    EXPECT_THAT(offered("render --plugin no/such.so --set D"), ElementsAre());
}

TEST_F(CompletionInBash, OffersNothingForAParametersValue) {
    EXPECT_THAT(offered("render --set width ="), ElementsAre());
    EXPECT_THAT(offered("render --set width = t"), ElementsAre());
}

#ifdef MIRELON_LV2_BUNDLE
TEST_F(CompletionInBash, QuotesTheNameOfAParameterAsTheLineNeedsIt) {
    const std::string named = "--plugin '" MIRELON_LV2_BUNDLE "'";
    EXPECT_THAT(offered("render " + named + " --set center"), ElementsAre("Center\\ Position="));
    EXPECT_THAT(offered("render " + named + " --set 'center\\ p'"),
                ElementsAre("Center\\ Position="));
    EXPECT_THAT(offered("render " + named + " --set '\"center p'"),
                ElementsAre("Center Position="));
}
#endif

TEST_F(CompletionInBash, OffersFilesWhereThereAreToBeFiles) {
    EXPECT_THAT(offered("render --double t"), UnorderedElementsAre("takes", "take.wav"));
    EXPECT_THAT(offered("info t"), ElementsAre());
}

TEST(Completion, InZshIsAScriptThatZshCanRead) {
    const ProgramResult script = runHost({"completion", "zsh"});
    ASSERT_EQ(script.status, 0);
    EXPECT_EQ(script.output.rfind("#compdef mirelon-host\n", 0), 0U);
    EXPECT_THAT(
        script.output,
        testing::HasSubstr("'--out-dir[Render every IN into this folder]:FOLDER:_files -/'"));
    const TemporaryFolder home;
    writeFile(home / "script", script.output);
    const ProgramResult read =
        RunningProgram("/bin/zsh", {"-n", home / "script"}, home.path).wait();
    if (read.status == 127)
        GTEST_SKIP() << "zsh is not installed";
    EXPECT_EQ(read.status, 0);
    EXPECT_EQ(read.errors, "");
}

TEST(Completion, InZshHasTheNamesOfChecks) {
    const ProgramResult script = runHost({"completion", "zsh"});
    EXPECT_THAT(script.output, testing::HasSubstr("'*--only[Only this check, whatever its level; "
                                                  "repeatable]:CHECK:(load-twice load-time "));
}

// What zsh itself makes of keys that a user presses, as far as `awaited` stands on the
// line; empty: there is no zsh.
std::string lineInZsh(const std::string& keys, const std::string& awaited) {
    const TemporaryFolder home;
    create_directory(home / "functions");
    writeFile(home / "functions/_mirelon-host", runHost({"completion", "zsh"}).output);
    const ProgramResult result =
        RunningProgram("/bin/zsh",
                       {"-f", "-c",
                        "zmodload zsh/zpty || exit 9; zpty shell zsh -f -i\n"
                        "zpty -w shell \"stty cols 1000; PS1=; fpath=('" +
                            std::string(home / "functions") +
                            "' $fpath); autoload -Uz compinit; compinit -u -D; "
                            "zstyle ':completion:*' list-grouped false; echo rea''dy\"\n"
                            "while zpty -r shell line; do [[ $line == *ready* ]] && break; done\n"
                            "zpty -n -w shell $'" +
                            keys +
                            "'\n"
                            "text=; repeat 200; do zpty -r -t shell more && text+=$more; "
                            "[[ $text == *" +
                            awaited +
                            "* ]] && break; sleep 0.05; done\n"
                            "zpty -d shell; print -r -- $text"},
                       home.path)
            .wait();
    EXPECT_EQ(result.errors, "");
    return result.status == 127 || result.status == 9 ? "" : result.output;
}

TEST(Completion, InZshOffersCommandsAndOptions) {
    const std::string line = lineInZsh("mirelon-host rend\\t--lou\\t", "--loudness");
    if (line.empty())
        GTEST_SKIP() << "zsh is not installed";
    EXPECT_THAT(line, testing::ContainsRegex("render +--loudness"));
}

TEST(Completion, InZshOffersTheParametersOfThePluginThatIsNamed) {
    const std::string line = lineInZsh(MIRELON_HOST_PROGRAM " render --plugin " +
                                           testPlugin("displays") + " --set dri\\t",
                                       "Drive=");
    if (line.empty())
        GTEST_SKIP() << "zsh is not installed";
    EXPECT_THAT(line, testing::HasSubstr("Drive=")) << "typed without the capital";
}

TEST(Completion, InZshOffersTheParametersOfThePluginFound) {
    const std::string line =
        lineInZsh(MIRELON_HOST_PROGRAM " edit --set-normalised wid\\t", "width=");
    if (line.empty())
        GTEST_SKIP() << "zsh is not installed";
    EXPECT_THAT(line, testing::HasSubstr("--set-normalised width="));
}

} // namespace
} // namespace mirelon::test
