// The validator: a good effect passes everything, and for each check there is a
// defect that it finds.
#include "tests/support/virtualdisplay.h"
#include "tests/validator/checkrun.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

const std::string goodEffect = MIRELON_TEST_EFFECT;

TEST(Check, PassesAnEffectWithoutDefects) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json " + goodEffect));
}

TEST(Check, PassesMirelonAtTheHighestLevel) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json --level 10 " + MIRELON_PLUGIN_FILE));
}

TEST(Check, WithoutADisplaySkipsTheEditorAndStillPasses) {
    const Outcome outcome =
        run("env -u DISPLAY " + host + " check --json --level 6 " + MIRELON_PLUGIN_FILE);
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const auto report = nlohmann::json::parse(outcome.output);
    for (const auto& check : report["checks"]) {
        if (std::string(check["name"]).starts_with("editor-")) {
            EXPECT_EQ(check["result"], "skipped") << check;
        }
    }
    EXPECT_EQ(report["failed"], 0);
    EXPECT_EQ(report["skipped"], 5); // four of the editor, one of the state beside it
}

TEST(Check, RunsOnlyTheLevelsAskedFor) {
    const Outcome outcome = run(host + " check --json --level 1 " + goodEffect);
    const auto report = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(report["checks"].size(), 5U);
    for (const auto& check : report["checks"])
        EXPECT_EQ(check["level"], 1);
}

TEST(Check, ReplaysASeed) {
    const auto seedOf = [](const Outcome& outcome) {
        return nlohmann::json::parse(outcome.output)["seed"].get<std::uint64_t>();
    };
    EXPECT_EQ(seedOf(run(host + " check --json --level 1 --seed 77 " + goodEffect)), 77U);
}

TEST(Check, EndsWithOneSummaryLine) {
    const Outcome outcome = run(host + " check --level 2 --seed 5 " + goodEffect);
    EXPECT_NE(outcome.output.find("level 2, seed 5: 10 passed, 0 failed, 0 skipped\n"),
              std::string::npos)
        << outcome.output;
}

TEST(Check, RefusesWhatIsNoFile) {
    EXPECT_EQ(run(host + " check /nonexistent.so").status, 2);
    EXPECT_EQ(run(host + " check --only no-such-check " + goodEffect).status, 2);
}

TEST(Check, FailsAFileThatIsNoPlugIn) {
    EXPECT_EQ(run(host + " check --level 1 " + host).status, 1);
}

TEST(Check, LeavesTheUsersFilesAlone) {
    VirtualDisplay::start();
    const std::string home = testing::TempDir() + "check-home-" + std::to_string(getpid());
    ASSERT_EQ(run("mkdir " + home).status, 0);
    EXPECT_EQ(run("HOME=" + home + " XDG_CONFIG_HOME=" + home + " " + host + " check --level 6 " +
                  MIRELON_PLUGIN_FILE)
                  .status,
              0);
    EXPECT_EQ(run("rmdir " + home).status, 0) << "something was left in it";
}

struct Defect {
    const char* check;
    const char* name;
};

void PrintTo(const Defect& defect, std::ostream* out) {
    *out << defect.name;
}

class CheckFinds : public testing::TestWithParam<Defect> {};

TEST_P(CheckFinds, TheDefect) {
    VirtualDisplay::start();
    const Defect& defect = GetParam();
    const std::string base = host + " check --json --seed 1 --only " + defect.check + " ";
    const auto without = run(base + goodEffect);
    const auto withIt = mirelon::test::runShell("MIRELON_DEFECT=" + std::string(defect.name) + " " +
                                                base + goodEffect);
    const auto report = nlohmann::json::parse(withIt.output);
    if (needsSkipping(report["checks"][0]))
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_EQ(without.status, 0) << without.output;
    EXPECT_EQ(withIt.status, 1) << withIt.output;
    EXPECT_EQ(report["checks"][0]["result"], "failed");
}

INSTANTIATE_TEST_SUITE_P(
    OfEachCheck, CheckFinds,
    testing::Values(
        Defect{"load-twice", "one-instance"}, Defect{"load-twice", "crash-on-close"},
        Defect{"load-time", "slow-load"}, Defect{"load-memory", "memory"},
        Defect{"identity-stable", "name-changes"}, Defect{"programs-stable", "program"},
        Defect{"parameter-texts-stable", "parameter-name"},
        Defect{"parameter-texts-stable", "text-not-terminated"},
        Defect{"parameter-values-in-range", "value-out-of-range"},
        Defect{"parameter-properties-stable", "properties"},
        Defect{"audio-every-rate-and-block", "writes-outside"},
        Defect{"audio-every-rate-and-block", "large-block"},
        Defect{"audio-double-precision", "double"}, Defect{"audio-changing-blocks", "odd-block"},
        Defect{"audio-in-place", "clears-output-first"},
        Defect{"audio-silence", "sound-of-silence"}, Defect{"state-round-trip", "state-counts"},
        Defect{"state-round-trip", "state-forgets"},
        Defect{"state-fresh-instance", "state-per-process"},
        Defect{"state-with-editor", "state-editor"}, Defect{"automation-every-block", "automation"},
        Defect{"automation-holds", "drift"}, Defect{"editor-opened-twice", "second-opening"},
        Defect{"editor-in-two-instances", "one-editor-only"},
        Defect{"editor-sixty-openings", "fiftieth-opening"},
        Defect{"editor-while-processing", "editor-beside-audio"},
        Defect{"editor-rate-and-block-zero", "rate-zero"},
        Defect{"suspend-resume-loop", "fiftieth-resume"},
        Defect{"rate-change-while-running", "rate-while-running"},
        Defect{"parameter-strange-values", "nan-crash"},
        Defect{"parameter-strange-values", "stays-poisoned"},
        Defect{"parameter-strange-indices", "index-wraps"},
        Defect{"parameter-random-bits", "stays-poisoned"},
        Defect{"state-every-length", "state-length-unchecked"},
        Defect{"state-every-byte-flipped", "flip"}, Defect{"state-noise", "long-state"},
        Defect{"state-other-byte-order", "byte-order"},
        Defect{"threads-audio-automation-state", "entered-twice"},
        Defect{"threads-with-editor", "entered-twice"}, Defect{"realtime-process", "realtime-lock"},
        Defect{"realtime-process", "realtime-file"},
        Defect{"realtime-set-parameter", "realtime-set-parameter"},
        Defect{"realtime-set-parameter", "parameter-system-call"},
        Defect{"realtime-with-editor", "realtime-with-editor"}),
    [](const testing::TestParamInfo<Defect>& info) {
        std::string name = std::string(info.param.check) + "_" + info.param.name;
        for (char& c : name)
            c = c == '-' ? '_' : c;
        return name;
    });

TEST(CheckList, SaysWhichFormatsAreChecked) {
    const Outcome outcome = run(host + " check --list");
    EXPECT_EQ(outcome.status, 0);
    for (const char* const line : {" 3  audio-double-precision           VST 2\n",
                                   " 9  messages-strange-atoms           LV2\n",
                                   " 3  audio-in-place                   all\n"})
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line;
}

TEST(CheckFindsAtBuildTime, ALeakedName) {
    EXPECT_EQ(run(host + " check --only symbols-leaked " + goodEffect).status, 0);
    const Outcome outcome = run(host + " check --only symbols-leaked " + MIRELON_LEAKING_EFFECT);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("leakedHelper"), std::string::npos) << outcome.output;
}

TEST(CheckFindsAtBuildTime, AMissingEntryPoint) {
    EXPECT_EQ(run(host + " check --only symbols-entry " + goodEffect).status, 0);
    EXPECT_EQ(run(host + " check --only symbols-entry " + MIRELON_ENTRYLESS_EFFECT).status, 1);
}

TEST(CheckTimeLimit, EndsAnEffectThatHangs) {

    const Outcome outcome = run("MIRELON_DEFECT=resume-hangs " + host +
                                " check --json --only audio-silence " + goodEffect);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("still runs after"), std::string::npos) << outcome.output;
}

} // namespace
