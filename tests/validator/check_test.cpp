// The validator: a good effect passes everything, and for each check there is a
// defect that it finds.
#include "tests/support/virtualdisplay.h"
#include "tests/support/xserver.h"
#include "tests/support/xwindow.h"
#include "tests/validator/checkrun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

const std::string goodEffect = MIRELON_TEST_EFFECT;

TEST(Check, PassesAnEffectWithoutDefects) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json --strict " + goodEffect));
}

TEST(Check, PassesMirelonAtTheHighestLevel) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json --strict --level 10 " + MIRELON_PLUGIN_FILE),
                    Notes::notTaken);
}

TEST(Check, WithoutADisplaySkipsTheEditorAndStillPasses) {
    const Outcome outcome =
        run("env -u DISPLAY " + host + " check --json --level 6 " + MIRELON_PLUGIN_FILE);
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const auto report = reportOf(outcome);
    for (const auto& check : report["checks"]) {
        if (std::string(check["name"]).starts_with("editor-")) {
            EXPECT_EQ(check["result"], "skipped") << check;
        }
    }
    EXPECT_EQ(report["failed"], 0);
    EXPECT_EQ(report["skipped"], 7); // four of the editor, one of the state beside it, two of notes
}

// As on a build server: between two checks nobody is connected.
TEST(Check, HasItsDisplayAlsoWhereTheServerLastsNoLongerThanItsClients) {
    using mirelon::test::XServer;
    const XServer server("800x600x24", XServer::Left::ends);
    ASSERT_NE(server.display(), "") << "Xvfb did not start";
    expectAllPassed(run("DISPLAY=" + server.display() + " " + host +
                        " check --json --only editor-opened-twice "
                        "--only editor-in-two-instances " +
                        goodEffect));
}

TEST(Check, RunsOnlyTheLevelsAskedFor) {
    const Outcome outcome = run(host + " check --json --level 1 " + goodEffect);
    const auto report = reportOf(outcome);
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
    EXPECT_NE(outcome.output.find("level 2, seed 5: 10 passed, 0 failed, 0 warnings, 0 skipped\n"),
              std::string::npos)
        << outcome.output;
}

TEST(Check, RefusesWhatIsNoFile) {
    EXPECT_EQ(run(host + " check /nonexistent.so").status, 2);
    EXPECT_EQ(run(host + " check --only no-such-check " + goodEffect).status, 2);
}

TEST(Check, RefusesAFileThatIsNoPlugInInOneLine) {
    const std::vector<std::pair<std::string, std::string>> files{
        {host, ": not a "}, {"/etc/passwd", ": not a "}, {"/", ": a folder, but no LV2 bundle"}};
    for (const auto& [file, reason] : files) {
        const Outcome outcome = run(host + " check " + file);
        EXPECT_EQ(outcome.status, 2) << outcome.output;
        EXPECT_EQ(outcome.output.rfind("mirelon-host: " + file + reason, 0), 0U) << outcome.output;
        EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
    }
}

TEST(Check, TakesTheInstalledPlugInWhereNoneIsNamed) {
    const Outcome outcome = run(host + " check --json --level 1");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(reportOf(outcome)["plugin"], MIRELON_PLUGIN_FILE);
}

TEST(Check, TakesSeveralPlugInsAndGoesOnAfterABadOne) {
    const Outcome outcome = mirelon::test::runShell(host + " check --json --level 1 " + goodEffect +
                                                    " /etc/passwd " + MIRELON_PLUGIN_FILE);
    EXPECT_EQ(outcome.status, 2);
    const auto report = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(report["plugins"].size(), 2U);
    EXPECT_EQ(report["refused"].size(), 1U);
}

TEST(Check, LeavesOutWhatIsToBeSkipped) {
    const Outcome outcome =
        run(host + " check --json --level 1 --skip load-time --skip load-memory " + goodEffect);
    EXPECT_EQ(reportOf(outcome)["checks"].size(), 3U);
    EXPECT_EQ(run(host + " check --skip no-such-check " + goodEffect).status, 2);
}

TEST(Check, RunsInThisProcessForADebugger) {
    const Outcome good = run(host + " check --in-process --only state-round-trip " + goodEffect);
    EXPECT_EQ(good.status, 0) << good.output;
    const Outcome bad = run("MIRELON_DEFECT=index-wraps " + host +
                            " check --in-process --only parameter-strange-indices " + goodEffect);
    EXPECT_NE(bad.output.find("while: setting parameter -2147483648, which it does not have\n"),
              std::string::npos)
        << bad.output;
    // A crash is this process's own.
    const Outcome crash = run("MIRELON_DEFECT=nan-crash " + host +
                              " check --in-process --only parameter-strange-values " + goodEffect);
    EXPECT_NE(crash.status, 0);
    EXPECT_EQ(crash.output.find("again:"), std::string::npos) << crash.output;
}

TEST(Check, SaysThatAWindowThatStaysDoesSoWhenItIsClosed) {
    VirtualDisplay::start();
    const Outcome outcome = run("MIRELON_DEFECT=window-stays " + host +
                                " check --json --only editor-opened-twice " + goodEffect);
    EXPECT_EQ(reportOf(outcome)["checks"][0]["while"], "closing the editor") << outcome.output;
}

TEST(Check, SaysOfACrashWhatWasDoneHowItEndedAndHowToRepeatIt) {
    const Outcome outcome = run("MIRELON_DEFECT=nan-crash " + host +
                                " check --seed 3 --only parameter-strange-values " + goodEffect);
    EXPECT_EQ(outcome.status, 0) << "no host does that: " << outcome.output;
    for (const std::string& part :
         {std::string("warn   8  parameter-strange-values"), std::string("(SIGABRT)"),
          std::string("while: setting parameter 0 to nan\n"),
          std::string("printed: nan is no value\n"),
          "again: mirelon-host check " + goodEffect +
              " --only parameter-strange-values --seed 3\n"})
        EXPECT_NE(outcome.output.find(part), std::string::npos) << part << "\n" << outcome.output;
}

TEST(Check, WritesNumbersWithAllTheirDigits) {
    const Outcome outcome =
        run("MIRELON_DEFECT=drift " + host + " check --only automation-holds " + goodEffect);
    EXPECT_NE(outcome.output.find("drifts from 1 to 0.899999976"), std::string::npos)
        << outcome.output;
}

TEST(Check, NamesTheFunctionThatCallsWhatItMustNot) {
    const Outcome outcome = run("MIRELON_DEFECT=realtime-set-parameter " + host +
                                " check --only realtime-set-parameter " + goodEffect);
    if (outcome.output.find("sanitizer") != std::string::npos)
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_NE(outcome.output.find("malloc calls"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("TestEffect"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find(" in mirelon_test_effect_good.so"), std::string::npos);
}

TEST(Check, CountsWarningsAsFailuresOnlyWhenItIsToBeStrict) {
    const std::string slow = "MIRELON_DEFECT=slow-load " + host + " check --only load-time ";
    const Outcome outcome = run(slow + goodEffect);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("takes "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find(" ms to load and open"), std::string::npos) << outcome.output;
    EXPECT_EQ(run(slow + "--strict " + goodEffect).status, 1);
}

TEST(Check, DescribesEveryCheckAsThePageDoes) {
    const Outcome page = run(host + " check --list --markdown");
    if (std::string_view(MIRELON_CHECKS_PAGE).empty())
        GTEST_SKIP() << "built without CLAP: the page has more checks";
    std::ifstream stream(MIRELON_CHECKS_PAGE, std::ios::binary);
    const std::string written(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(page.output, written) << "make it anew: mirelon-host check --markdown";
    EXPECT_EQ(page.output.find("| (null) |"), std::string::npos);
    const Outcome list = run(host + " check --list --verbose");
    EXPECT_NE(list.output.find("      Makes two instances"), std::string::npos);
}

// An X error ends most hosts; without a window manager it need not be the effect's.
TEST(Check, DoesNotBlameAnEffectForAMissingWindowManager) {
    VirtualDisplay::start();
    const Outcome outcome =
        run("MIRELON_DEFECT=x-error " + host + " check --only editor-opened-twice " + goodEffect);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_NE(outcome.output.find("causes an X error: BadMatch"), std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("X_SetInputFocus"), std::string::npos);
    EXPECT_NE(outcome.output.find("no window manager"), std::string::npos);
}

TEST(Check, BlamesAnEffectForItsXErrorsWhereThereIsAWindowManager) {
    const mirelon::test::XServer server("800x600x24");
    ASSERT_NE(server.display(), "") << "Xvfb did not start";
    mirelon::test::markScreenAsManaged(server.display());
    const Outcome outcome = run("DISPLAY=" + server.display() + " MIRELON_DEFECT=x-error " + host +
                                " check --only editor-opened-twice " + goodEffect);
    EXPECT_EQ(outcome.status, 1) << outcome.output;
    EXPECT_EQ(outcome.output.find("no window manager"), std::string::npos) << outcome.output;
}

TEST(Check, TakesASwitchThatComesBackAsTheSameSwitch) {
    EXPECT_EQ(run("MIRELON_DEFECT=switches " + host + " check --strict --only state-round-trip " +
                  goodEffect)
                  .status,
              0);
}

TEST(Check, WorksWithoutProc) {
    if (mirelon::hosting::sanitized)
        GTEST_SKIP() << "a sanitizer's runtime needs /proc";
    if (run("unshare --mount true").status != 0)
        GTEST_SKIP() << "this user may not take /proc away";
    const Outcome outcome = run("unshare --mount sh -c 'mount -t tmpfs none /proc && exec " + host +
                                " check --json --level 1'");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(reportOf(outcome)["plugin"], MIRELON_PLUGIN_FILE);
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
    const char* result = "failed";
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
    const auto report = reportOf(withIt);
    if (needsSkipping(report["checks"][0]))
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_EQ(without.status, 0) << without.output;
    EXPECT_EQ(report["checks"][0]["result"], defect.result) << withIt.output;
    EXPECT_EQ(withIt.status, std::string(defect.result) == "failed" ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachCheck, CheckFinds,
    testing::Values(
        Defect{"load-twice", "one-instance"}, Defect{"load-twice", "crash-on-close"},
        Defect{"load-time", "slow-load", "warning"}, Defect{"load-memory", "memory", "warning"},
        Defect{"identity-stable", "name-changes"}, Defect{"programs-stable", "program"},
        Defect{"parameter-texts-stable", "parameter-name"},
        Defect{"parameter-texts-stable", "text-not-terminated"},
        Defect{"parameter-values-in-range", "value-out-of-range"},
        Defect{"parameter-properties-stable", "properties"},
        Defect{"audio-every-rate-and-block", "writes-outside"},
        Defect{"audio-every-rate-and-block", "large-block"},
        Defect{"audio-every-rate-and-block", "huge-block", "warning"},
        Defect{"audio-every-rate-and-block", "telephone-rate", "warning"},
        Defect{"audio-double-precision", "double"}, Defect{"audio-changing-blocks", "odd-block"},
        Defect{"audio-in-place", "clears-output-first"},
        Defect{"audio-silence", "sound-of-silence", "warning"},
        Defect{"audio-silence", "promised-silence"},
        Defect{"state-round-trip", "state-counts", "warning"},
        Defect{"state-round-trip", "state-forgets"},
        Defect{"state-fresh-instance", "state-per-process"},
        Defect{"state-with-editor", "state-editor"}, Defect{"automation-every-block", "automation"},
        Defect{"automation-holds", "drift"}, Defect{"notes-played", "note-highest-key"},
        Defect{"notes-crowded", "short-queue"},
        Defect{"notes-strange-bytes", "note-data-unchecked", "warning"},
        Defect{"notes-strange-events", "note-frame-unchecked", "warning"},
        Defect{"realtime-notes", "realtime-notes"}, Defect{"editor-opened-twice", "second-opening"},
        Defect{"editor-in-two-instances", "one-editor-only"},
        Defect{"editor-sixty-openings", "fiftieth-opening"},
        Defect{"editor-while-processing", "editor-beside-audio"},
        Defect{"editor-before-audio", "rate-unknown"},
        Defect{"suspend-resume-loop", "fiftieth-resume"},
        Defect{"rate-change-while-running", "rate-while-running", "warning"},
        Defect{"parameter-strange-values", "nan-crash", "warning"},
        Defect{"parameter-strange-values", "stays-poisoned", "warning"},
        Defect{"parameter-strange-indices", "index-wraps", "warning"},
        Defect{"parameter-random-bits", "stays-poisoned", "warning"},
        Defect{"state-every-length", "state-length-unchecked", "warning"},
        Defect{"state-every-byte-flipped", "flip", "warning"},
        Defect{"state-noise", "long-state", "warning"},
        Defect{"state-other-byte-order", "byte-order", "warning"},
        Defect{"threads-audio-automation-state", "entered-twice"},
        Defect{"threads-with-editor", "entered-twice"},
        Defect{"realtime-process", "realtime-lock", "warning"},
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
    EXPECT_EQ(outcome.status, 0) << "unusual, no more";
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

TEST(CheckTimeLimit, IsTheOneAskedFor) {
    const Outcome outcome = run("MIRELON_DEFECT=resume-hangs " + host +
                                " check --timeout 1 --only audio-in-place " + goodEffect);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("still runs after 1 s"), std::string::npos) << outcome.output;
}

TEST(CheckTimeLimit, OnlyWarnsOfAnEffectThatIsSlowAndDoesNotHang) {
    const Outcome outcome = run("MIRELON_DEFECT=slow-resume " + host +
                                " check --timeout 1 --only suspend-resume-loop " + goodEffect);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("is too slow to be done in 1 s"), std::string::npos)
        << outcome.output;
}

} // namespace
