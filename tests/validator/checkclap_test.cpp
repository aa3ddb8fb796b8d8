// The validator on CLAP plug-ins: Mirelon's, and one with chosen defects.
#include "tests/support/virtualdisplay.h"
#include "tests/validator/checkrun.h"

#include <string>

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

TEST(CheckOfClap, PassesMirelonAtTheHighestLevel) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json --strict --level 10 " + MIRELON_CLAP_FILE));
}

TEST(CheckOfClap, PassesAPlugInWithoutDefectsAndWithoutAWindow) {
    const Outcome outcome = run(host + " check --json --strict " + MIRELON_TEST_CLAP);
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const auto report = reportOf(outcome);
    for (const auto& check : report["checks"]) {
        const std::string name = check["name"];
        if (!needsSkipping(check) && name.find("editor") == std::string::npos) {
            EXPECT_EQ(check["result"], "passed") << check;
        }
    }
}

TEST(CheckOfClap, IsRefusedForPlugInsOfOtherFormats) {
    const Outcome outcome = run(host + " check --only events-every-frame " + MIRELON_PLUGIN_FILE);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.output.find("is for CLAP alone"), std::string::npos) << outcome.output;
}

TEST(CheckOfClap, EndsALoadThatReadsAFailedStreamForEver) {
    const Outcome outcome =
        run("MIRELON_DEFECT=read-errors-repeated " + host +
            " check --json --timeout 2 --only state-stream-fails " + MIRELON_TEST_CLAP);
    const auto check = reportOf(outcome)["checks"][0];
    EXPECT_EQ(check["result"], "warning");
    EXPECT_EQ(check["note"], "still runs after 2 s");
    EXPECT_EQ(check["while"], "loading its state from a stream that fails after 0 of 1000 bytes");
}

TEST(CheckOfClap, SaysInWhichHostThePlugInOpensNoWindow) {
    mirelon::test::VirtualDisplay::start();
    const Outcome outcome =
        mirelon::test::runShell("MIRELON_DEFECT=window-refused " + host +
                                " check --json --only host-without-extensions " MIRELON_TEST_CLAP);
    const auto check = reportOf(outcome)["checks"][0];
    EXPECT_EQ(check["result"], "warning") << outcome.output;
    EXPECT_EQ(check["note"], "opens no window in a host without extensions");
}

struct Defect {
    const char* check;
    const char* name;
    const char* result;
    const char* note;          // a part of it
    const char* activity = ""; // likewise
};

void PrintTo(const Defect& defect, std::ostream* out) {
    *out << defect.name;
}

class CheckOfClapFinds : public testing::TestWithParam<Defect> {};

TEST_P(CheckOfClapFinds, TheDefectAndSaysWhatItIs) {
    const Defect& defect = GetParam();
    const std::string base = host + " check --json --seed 1 --only " + defect.check + " ";
    const Outcome outcome = mirelon::test::runShell("MIRELON_DEFECT=" + std::string(defect.name) +
                                                    " " + base + MIRELON_TEST_CLAP);
    const auto check = reportOf(outcome)["checks"][0];
    if (needsSkipping(check) || isEndedByTheSanitizer(check))
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_EQ(check["result"], defect.result) << outcome.output;
    EXPECT_NE(check["note"].get<std::string>().find(defect.note), std::string::npos)
        << outcome.output;
    EXPECT_NE(check.value("while", std::string()).find(defect.activity), std::string::npos)
        << outcome.output;
}

constexpr auto failed = "failed";
constexpr auto warning = "warning";

INSTANTIATE_TEST_SUITE_P(
    OfFileAndHost, CheckOfClapFinds,
    testing::Values(
        Defect{"entry-reloaded", "init-once", failed, "refuses to be initialised",
               "calling init() in a file that stays in memory, after 1 calls of deinit()"},
        Defect{"entry-reloaded", "process-error", failed,
               "says that it cannot process, after its file was initialised again",
               "loading the file after it was unloaded 0 times"},
        Defect{"entry-counted", "users-uncounted", warning,
               "has no factory for one user of its file once another has left",
               "calling deinit() for one of two users of the file"},
        Defect{"extensions-unknown", "extension-prefix", failed,
               "answers with functions for \"clap.params/77\", an extension that there is not"},
        Defect{"host-without-extensions", "needs-host-params", failed, "dies: Segmentation fault",
               "making an instance in a host without extensions"},
        Defect{"host-without-extensions", "process-error", failed,
               "says that it cannot process, in a host without extensions"},
        Defect{"host-without-extensions", "events-refused", failed,
               "says that it cannot process, in a host without extensions"},
        Defect{"host-without-one-extension", "needs-host-params", failed,
               "dies: Segmentation fault", "making an instance in a host without clap.params"},
        Defect{"host-without-one-extension", "needs-host-state", failed, "dies: Segmentation fault",
               "making an instance in a host without clap.state"},
        Defect{"host-without-one-extension", "needs-host-timers", failed,
               "dies: Segmentation fault",
               "making an instance in a host without clap.timer-support"},
        Defect{"instances-independent", "shared-values", failed,
               "sounds otherwise when another instance processes beside it"},
        Defect{"instances-independent", "shared-mode", failed,
               "parameter 20 (Mode) moves from 0 to 2 when another instance is set"},
        Defect{"instances-independent", "state-for-all", failed, "moves from",
               "giving a state to another instance"}));

INSTANTIATE_TEST_SUITE_P(
    OfParameters, CheckOfClapFinds,
    testing::Values(
        Defect{"parameter-identifiers", "parameterless", "skipped", "has no parameters"},
        Defect{"parameter-identifiers", "identifiers-twice", failed,
               "has several parameters with the identifier 10, one of them parameter 10 (Mode)"},
        Defect{"parameter-identifiers", "identifier-of-none", failed,
               "parameter 4294967295 (Tone) has the identifier that stands for none"},
        Defect{"parameter-identifiers", "name-changes", failed, "when it is asked again"},
        Defect{"parameter-identifiers", "identifiers-per-instance", failed,
               "describes parameter number 0 as parameter 11 (Gain) in a second instance, as "
               "parameter 10 (Gain) before"},
        Defect{"parameter-ranges", "infinite-range", failed,
               "parameter 30 (Tone) goes from -12 to inf"},
        Defect{"parameter-ranges", "inverted-range", failed,
               "parameter 30 (Tone) goes from 12 down to -12"},
        Defect{"parameter-ranges", "default-beyond-range", failed,
               "parameter 30 (Tone) has 13 for its default, beyond its range from -12 to 12"},
        Defect{"parameter-ranges", "value-beyond-range", failed,
               "parameter 10 (Gain) has 3 for its value, beyond its range from 0 to 2"},
        Defect{"parameter-ranges", "value-missing", failed,
               "gives no value for parameter 30 (Tone), which it lists"},
        Defect{"parameter-ranges", "fractional-steps", warning,
               "parameter 20 (Mode) takes whole numbers from 0 to 3.5"},
        Defect{"parameter-texts-read-back", "text-misread", failed,
               "reads \"0.0000\", its own text for parameter 10 (Gain) at 0, as 1 (\"1.0000\")"},
        Defect{"parameter-texts-read-back", "text-read-roughly", warning,
               "reads \"0.0000\", its own text for parameter 10 (Gain) at 0, as 0.04"},
        Defect{"parameter-texts-read-back", "text-read-nearby", warning,
               "reads \"0.0000\", its own text for parameter 10 (Gain) at 0, as 0.09"},
        Defect{"parameter-texts-read-back", "text-read-as-another", failed,
               "reads \"0.0000\", its own text for parameter 10 (Gain) at 0, as 0.11"},
        Defect{"parameter-texts-read-back", "text-unread", warning,
               "does not read \"0.0000\", its own text for parameter 10 (Gain) at 0"},
        Defect{"parameter-texts-read-back", "text-missing", warning,
               "gives no text for parameter 10 (Gain) at 0"},
        Defect{"parameter-texts-read-back", "text-overflows", failed,
               "writes the text of parameter 10 (Gain) beyond the end of a buffer of 2 bytes"},
        Defect{"parameter-texts-read-back", "text-without-end", failed,
               "gives a text of parameter 10 (Gain) without an end in a buffer of 256 bytes"},
        Defect{"parameter-set-and-read", "events-ignored", failed,
               "has 1 for parameter 10 (Gain), which was set to 0 at the start of a block"},
        Defect{"parameter-set-and-read", "quantised", warning,
               "for parameter 30 (Tone), which was set to -11.76 at the start of a block"},
        Defect{"parameter-set-and-read", "set-nearby", warning,
               "has 0.09 for parameter 10 (Gain), which was set to 0 at the start of a block"},
        Defect{"parameter-set-and-read", "set-to-another", failed,
               "has 0.11 for parameter 10 (Gain), which was set to 0 at the start of a block"},
        Defect{"parameter-unknown", "index-unchecked", warning,
               "describes a parameter number 3, where it counts 3 from 0"},
        Defect{"parameter-unknown", "identifier-wraps", warning,
               "gives a value for the parameter 3, which there is not"},
        Defect{"parameter-unknown", "unknown-set", warning,
               "parameter 10 (Gain) moves from 1 to 0.75 when the parameter 3 is set"}));

INSTANTIATE_TEST_SUITE_P(
    OfStates, CheckOfClapFinds,
    testing::Values(
        Defect{"state-in-parts", "writes-once", failed,
               "saves 1 bytes through a stream that takes 1 bytes at a time, and 1000 other ones"},
        Defect{"state-in-parts", "reads-once", failed,
               "refuses its own state of 1000 bytes from a stream that gives 1 bytes at a time"},
        Defect{"state-cut-short", "part-of-a-state-taken", warning,
               "takes a stream that ends after 0 of 1000 bytes for a state, but parameter 10"},
        Defect{"state-cut-short", "state-applied-before-judged", warning,
               "refuses a stream that ends after 500 of 1000 bytes, but parameter 10 (Gain) is"},
        Defect{"state-stream-fails", "part-of-a-state-taken", warning,
               "takes a stream that fails after 0 of 1000 bytes for a state, but parameter 10"},
        Defect{
            "state-stream-fails", "write-errors-ignored", warning,
            "says that it has saved its state into a stream that failed after 0 of 1000 bytes"}));

INSTANTIATE_TEST_SUITE_P(
    OfEvents, CheckOfClapFinds,
    testing::Values(
        Defect{"events-every-frame", "first-event-only", failed,
               "by the last of an event at every frame"},
        Defect{"events-every-frame", "one-event-a-frame", failed,
               "has 0.4 for parameter 10 (Gain), which was set to 0 by the last of four events "
               "at frame 20"},
        Defect{"events-every-frame", "last-frame-lost", failed,
               "has 0 for parameter 10 (Gain), which was set to 2 by the last of one event at the "
               "last frame"},
        Defect{"events-beyond-block", "events-written-to-buffer", warning,
               "wrote outside the buffers it was given, with an event at frame 64 of 64"},
        Defect{"events-unknown-types", "type-unchecked", failed,
               "parameter 10 (Gain) moves from 1 to 0 with an event of space 0 and type 64, which "
               "sets no parameter"},
        Defect{"events-foreign-spaces", "space-unchecked", warning,
               "parameter 10 (Gain) moves from 1 to 0 with an event of space 1 and type 5, which "
               "sets no parameter"},
        Defect{"flush-without-audio", "flush-ignored", failed,
               "has 1 for parameter 10 (Gain), which was set to 0.6 with flush() while it is not "
               "active"},
        Defect{"flush-without-audio", "flush-ignored-in-pauses", failed,
               "which was set to 0.6 with flush() while it is active and not processing"}));

INSTANTIATE_TEST_SUITE_P(
    OfActivationAndThreads, CheckOfClapFinds,
    testing::Values(
        Defect{"activation-loop", "activation-forgets", failed, "with an activation",
               "activating it for time 0"},
        Defect{"activation-loop", "second-block-size-refused", failed,
               "cannot be activated or started at 96000 Hz with blocks of"},
        Defect{"processing-loop", "starts-run-out", failed, "cannot be started again, for time 1"},
        Defect{"processing-loop", "reset-forgets", failed, "with a reset"},
        Defect{"processing-loop", "reset-keeps-sound", warning,
               "sounds otherwise after a reset than after an activation"},
        Defect{"threads-mistaken", "bound-to-thread", warning, "dies: Aborted",
               "calling get_value() on another thread than the main thread"},
        Defect{"threads-mistaken", "state-of-a-thread", warning,
               "saves another state on another thread"},
        Defect{"realtime-events", "process-allocates", failed,
               "process() with events makes malloc calls",
               "processing blocks of 1 frames with events for all parameters"},
        Defect{"realtime-flush-and-reset", "flush-allocates", failed, "flush() makes malloc calls",
               "calling flush() with events for all parameters while it is active"},
        Defect{"realtime-flush-and-reset", "start-allocates", failed,
               "starting, resetting or stopping makes malloc calls"}));

} // namespace
