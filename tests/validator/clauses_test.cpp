// Each thing that a check looks at, by an effect that is wrong in that alone: the
// check says just that of it.
#include "tests/support/virtualdisplay.h"
#include "tests/validator/checkrun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

struct Clause {
    std::string check;
    std::string defect;
    std::string message; // a part of it
    std::string result = "failed";
};

void PrintTo(const Clause& clause, std::ostream* out) {
    *out << clause.defect;
}

nlohmann::json checkOf(const std::string& check, const std::string& defect) {
    const Outcome outcome =
        mirelon::test::runShell("MIRELON_DEFECT=" + defect + " " + host +
                                " check --json --seed 1 --only " + check + " " MIRELON_TEST_EFFECT);
    return reportOf(outcome)["checks"][0];
}

class CheckSays : public testing::TestWithParam<Clause> {
  protected:
    CheckSays() { VirtualDisplay::start(); }
};

TEST_P(CheckSays, WhatIsWrong) {
    const Clause& clause = GetParam();
    if (mirelon::hosting::sanitized && clause.defect == "one-record")
        GTEST_SKIP() << "a sanitizer ends the program when the record is closed twice";
    const auto check = checkOf(clause.check, clause.defect);
    if (needsSkipping(check))
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_EQ(check["result"], clause.result) << check;
    EXPECT_NE(std::string(check["note"]).find(clause.message), std::string::npos) << check;
}

std::string nameOf(const testing::TestParamInfo<Clause>& info) {
    std::string name = info.param.check + "_" + info.param.defect;
    std::ranges::replace(name, '-', '_');
    return name;
}

const std::string warning = "warning";
const std::string notFinite = "put out something that is not a number, ";
const std::string outside = "wrote outside ";

INSTANTIATE_TEST_SUITE_P(
    OfLoading, CheckSays,
    testing::Values(
        Clause{"load-twice", "one-record", "gives two instances the same effect record"},
        Clause{"load-twice", "id-changes", "changes its unique ID from one instance to the next"},
        Clause{"load-time", "slow-load", "ms to load and open", warning},
        Clause{"load-memory", "memory", "KiB an instance", warning},
        // The report has arrived whole by then.
        Clause{"audio-silence", "crash-at-the-end", "dies: Aborted (SIGABRT)"},
        Clause{"audio-silence", "status-at-the-end", "ends the host's process with exit status 3"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfIdentity, CheckSays,
    testing::Values(
        Clause{"identity-stable", "name-changes", "the effect name reads \"aest effect\" first"},
        Clause{"identity-stable", "vendor-changes",
               "the vendor reads \"aests\" first and \"bests\""},
        Clause{"identity-stable", "name-per-instance",
               "the effect name differs between two instances"},
        Clause{"identity-stable", "no-name", "has neither an effect name nor a product name"},
        Clause{"identity-stable", "version-per-instance",
               "answers opcode 49 differently in two instances"},
        Clause{"identity-stable", "no-id", "has no unique ID"},
        Clause{"programs-stable", "program", "is on program 0 after being set to 1"},
        Clause{"programs-stable", "program-misnumbered",
               "is on program 0 after being set to 1, which it took", warning},
        Clause{"programs-stable", "program-beyond", "is on program 2 after being set to 2"},
        Clause{"programs-stable", "program-before", "is on program -1 after being set to -1"},
        Clause{"programs-stable", "program-renamed", "calls program 0 \"other\" and \"one\""},
        Clause{"parameter-texts-stable", "parameter-name", "the name of parameter 0 is empty"},
        Clause{"parameter-texts-stable", "text-not-terminated",
               "the label of parameter 0 is not terminated within 128 bytes"},
        Clause{"parameter-texts-stable", "display-changes",
               "the display of parameter 0 reads \"x\" first and \"y\" then"},
        Clause{"parameter-values-in-range", "value-out-of-range", "parameter 0 reads 1.5"},
        Clause{"parameter-values-in-range", "value-creeps",
               "parameter 0 changes without being set"},
        Clause{"parameter-properties-stable", "properties",
               "parameter 0 has an integer range from 0 to -1"},
        Clause{"parameter-properties-stable", "properties-sometimes",
               "describes parameter 0 only sometimes"},
        Clause{"parameter-properties-stable", "properties-none", "0 described", "passed"},
        Clause{"parameter-properties-stable", "properties-change",
               "describes parameter 0 differently each time"},
        Clause{"parameter-properties-stable", "properties-not-terminated",
               "the label in the properties of parameter 0 is not terminated"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfAudio, CheckSays,
    testing::Values(
        Clause{"audio-every-rate-and-block", "changes-input",
               "changed its input buffers, at 22050 Hz in blocks of 1"},
        Clause{"audio-every-rate-and-block", "writes-outside", outside},
        Clause{"audio-every-rate-and-block", "writes-before", outside},
        Clause{"audio-double-precision", "double", notFinite + "at 22050 Hz"},
        Clause{"audio-double-precision", "writes-before", outside},
        Clause{"audio-double-precision", "changes-input", "changed its input buffers, "},
        Clause{"audio-changing-blocks", "odd-noise", notFinite + "in a block of "},
        Clause{"audio-in-place", "clears-output-first", "puts out something else in place"},
        Clause{"audio-silence", "whisper", "makes sound of silence in block 0", warning},
        Clause{"audio-silence", "promised-silence",
               "makes sound of silence in block 0, which it says it does not"},
        Clause{"automation-every-block", "automation", notFinite + "in automated block "},
        Clause{"automation-every-block", "value-leaves-range", "reads 1.5 after automation"},
        Clause{"automation-holds", "drift", "parameter 0 drifts from 1 to "},
        Clause{"suspend-resume-loop", "fiftieth-resume", notFinite + "after resume "},
        Clause{"rate-change-while-running", "rate-while-running",
               notFinite + "after a change to 96000 Hz while running", warning}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfStates, CheckSays,
    testing::Values(
        Clause{"state-round-trip", "state-empty", "answers with an empty state"},
        Clause{"state-round-trip", "state-forgets", "brings parameter 1 back as 0 "},
        Clause{"state-round-trip", "wordless-switches", "brings parameter 0 back as ", warning},
        Clause{"state-round-trip", "state-rounds", "brings parameter 1 back as ", warning},
        Clause{"state-round-trip", "state-counts", "writes another state when it is asked again",
               warning},
        Clause{"state-fresh-instance", "state-per-process", "brings parameter 0 back as 0.5 "},
        Clause{"state-with-editor", "state-editor", "brings parameter 0 back as "},
        Clause{"state-every-length", "state-poisons",
               notFinite + "with a good state after damaged ones", warning},
        Clause{"state-every-length", "state-overruns",
               "wrote outside its buffers after a damaged state of 0 bytes", warning},
        Clause{"state-every-length", "state-keeps-damage",
               "writes another state than the good one given", warning},
        Clause{"state-every-byte-flipped", "state-poisons",
               notFinite + "with a good state after damaged ones", warning},
        Clause{"state-noise", "state-overruns",
               "wrote outside its buffers after a damaged state of 1048576 bytes", warning},
        Clause{"state-other-byte-order", "state-poisons",
               notFinite + "with a good state after damaged ones", warning}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfStrangeValues, CheckSays,
    testing::Values(Clause{"parameter-strange-values", "value-overruns",
                           "wrote outside its buffers after a strange value of parameter 0",
                           warning},
                    Clause{"parameter-strange-values", "stays-poisoned",
                           notFinite + "with ordinary values after strange ones", warning},
                    Clause{"parameter-strange-indices", "index-at-count",
                           "parameter 0 is moved by an index that no parameter has", warning},
                    Clause{"parameter-random-bits", "stays-poisoned",
                           notFinite + "with ordinary values after strange ones", warning}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfNotes, CheckSays,
    testing::Values(
        Clause{"notes-played", "note-highest-key", notFinite + "with all keys of channel 1"},
        Clause{"notes-played", "note-last-channel", notFinite + "with a phrase on channel 16"},
        Clause{"notes-played", "note-pedal-poisons",
               notFinite + "after the controllers that end all notes"},
        Clause{"notes-played", "note-sound-off-poisons",
               notFinite + "after the controllers that end all notes"},
        Clause{"notes-played", "note-wheel-overruns",
               outside + "the buffers it was given, with a "},
        Clause{"notes-played", "note-end-alone", "dies: Aborted (SIGABRT)"},
        Clause{"notes-played", "changes-input", "changed its input buffers, with a phrase"},
        Clause{"notes-played", "no-notes", "takes no notes", "skipped"},
        Clause{"notes-crowded", "short-queue", notFinite + "with 512 events in a block"},
        Clause{"notes-crowded", "no-notes", "takes no notes", "skipped"},
        Clause{"notes-strange-bytes", "note-data-unchecked", "dies: Aborted (SIGABRT)", warning},
        Clause{"notes-strange-bytes", "note-system-poisons",
               notFinite + "with ordinary notes after strange ones", warning},
        Clause{"notes-strange-bytes", "note-status-overruns",
               outside + "its buffers, after bytes that are no message", warning},
        Clause{"notes-strange-events", "note-frame-unchecked",
               outside + "its buffers, with a note at frame -1 of 256", warning},
        Clause{"notes-strange-events", "event-type-unchecked", "dies: Aborted (SIGABRT)", warning},
        Clause{"notes-strange-events", "no-event-crash", "dies: Aborted (SIGABRT)", warning},
        Clause{"realtime-notes", "realtime-notes", "process with notes makes malloc calls"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfWhatThereIsNotToCheck, CheckSays,
    testing::Values(
        Clause{"audio-every-rate-and-block", "no-outputs", "has no outputs", "skipped"},
        Clause{"audio-double-precision", "no-doubles", "processes no doubles", "skipped"},
        Clause{"audio-in-place", "one-input", "has not as many inputs as outputs", "skipped"},
        Clause{"audio-in-place", "never-the-same", "puts out something else each time", "skipped"},
        Clause{"audio-silence", "instrument", "is an instrument", "skipped"},
        Clause{"automation-every-block", "no-parameters", "has no parameters", "skipped"},
        Clause{"parameter-random-bits", "no-parameters", "has no parameters", "skipped"},
        Clause{"realtime-set-parameter", "no-parameters", "has no parameters", "skipped"},
        Clause{"editor-opened-twice", "no-editor", "has no editor", "skipped"},
        Clause{"state-round-trip", "no-state", "keeps no state of its own", "skipped"},
        Clause{"state-noise", "no-state", "keeps no state of its own", "skipped"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfTheWindow, CheckSays,
    testing::Values(
        Clause{"editor-opened-twice", "second-opening", "opens no window in the host's"},
        Clause{"editor-opened-twice", "window-stays", "leaves its window behind when it is closed"},
        Clause{"editor-opened-twice", "no-rectangle", "gives no rectangle for its open editor"},
        Clause{"editor-opened-twice", "opengl-x-error",
               "; OpenGL asked for that, which has no graphics card here", warning},
        // The same request from elsewhere is not excused by it.
        Clause{"editor-opened-twice", "picture-x-error", "; there is no window manager", warning},
        Clause{"editor-in-two-instances", "one-window-only", "opens no window in the host's"},
        Clause{"editor-sixty-openings", "fiftieth-opening", "opens no window in the host's"},
        Clause{"editor-while-processing", "editor-beside-audio",
               notFinite + "while the editor was in use"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfThreads, CheckSays,
    testing::Values(
        Clause{"threads-audio-automation-state", "overruns-entered-twice",
               "wrote outside its buffers while several threads were in it"},
        Clause{"realtime-process", "realtime-lock", "process makes pthread_mutex_lock calls",
               warning},
        Clause{"realtime-process", "realtime-file", "process makes open"},
        Clause{"realtime-process", "realtime-aligned", "process makes posix_memalign"},
        Clause{"realtime-process", "realtime-double", "process with doubles makes malloc calls"},
        Clause{"realtime-set-parameter", "realtime-set-parameter",
               "setParameter makes malloc calls"},
        Clause{"realtime-set-parameter", "realtime-get-parameter",
               "setParameter makes malloc calls"},
        Clause{"realtime-set-parameter", "parameter-system-call", "setParameter makes system call"},
        Clause{"realtime-with-editor", "realtime-with-editor",
               "the audio thread, with the editor open, makes malloc calls"}),
    nameOf);

// Of an effect that ends the process it says what was asked of it last.
struct End {
    std::string check;
    std::string defect;
    std::string activity; // its beginning
};

void PrintTo(const End& end, std::ostream* out) {
    *out << end.defect;
}

class CheckSaysOfACrash : public testing::TestWithParam<End> {
  protected:
    CheckSaysOfACrash() { VirtualDisplay::start(); }
};

TEST_P(CheckSaysOfACrash, WhatWasDone) {
    const End& end = GetParam();
    const auto check = checkOf(end.check, end.defect);
    EXPECT_EQ(check["note"], "dies: Aborted (SIGABRT)") << check;
    EXPECT_EQ(check.value("while", std::string()).substr(0, end.activity.size()), end.activity);
}

INSTANTIATE_TEST_SUITE_P(
    , CheckSaysOfACrash,
    testing::Values(End{"audio-every-rate-and-block", "huge-block",
                        "processing at 22050 Hz in blocks of 16384 frames"},
                    End{"audio-changing-blocks", "odd-block", "processing a block of "},
                    End{"editor-before-audio", "value-before-rate",
                        "setting parameter 0 to 0.75 with the editor open and no audio yet"},
                    End{"state-every-length", "state-spoils-name",
                        "given the first 0 bytes of its state"},
                    End{"state-every-byte-flipped", "flip", "given its state with byte 4 flipped"},
                    End{"state-noise", "long-state", "given a state of 1 MiB of noise"},
                    End{"state-other-byte-order", "byte-order",
                        "given its state with the first 20 bytes swapped in fours"}),
    [](const testing::TestParamInfo<End>& info) {
        std::string name = info.param.check + "_" + info.param.defect;
        std::ranges::replace(name, '-', '_');
        return name;
    });

TEST(Check, GivesTheEffectFoldersOfItsOwn) {
    const Outcome outcome =
        mirelon::test::runShell("unset XAUTHORITY; MIRELON_DEFECT=prints-folders " + host +
                                " check --json --only audio-silence " MIRELON_TEST_EFFECT);
    const auto printed = reportOf(outcome)["checks"][0]["printed"];
    ASSERT_EQ(printed.size(), 5U) << printed;
    const std::string home = printed[0];
    EXPECT_NE(home, std::getenv("HOME"));
    EXPECT_EQ(printed[1], home + "/.config");
    EXPECT_EQ(printed[2], home + "/.local/share");
    EXPECT_EQ(printed[3], home + "/.cache");
    EXPECT_EQ(printed[4], std::getenv("HOME") + std::string("/.Xauthority"))
        << "the display's key is the user's";
}

// What the guard against denormal numbers leaves is no sound.
TEST(CheckSaysNothing, OfASilenceBelowAllHearing) {
    EXPECT_EQ(checkOf("audio-silence", "against-denormals")["result"], "passed");
}

// What was tried is said of a check that passes as well.
using CheckCounts = CheckSays;

TEST_P(CheckCounts, WhatItTries) {
    const auto check = checkOf(GetParam().check, GetParam().defect);
    EXPECT_EQ(check["result"], GetParam().result) << check;
    EXPECT_EQ(check["note"], GetParam().message) << check;
}

INSTANTIATE_TEST_SUITE_P(
    , CheckCounts,
    testing::Values(
        Clause{"identity-stable", "none", "test effect", "passed"},
        Clause{"programs-stable", "none", "2 programs", "passed"},
        Clause{"programs-stable", "many-programs", "256 of 300 programs", "passed"},
        Clause{"parameter-texts-stable", "none", "3 parameters", "passed"},
        Clause{"parameter-properties-stable", "none", "3 described", "passed"},
        Clause{"audio-every-rate-and-block", "none", "13 rates, 23 block sizes", "passed"},
        Clause{"state-every-length", "none", "0 to 2000 bytes", "passed"},
        Clause{"state-every-byte-flipped", "none", "20 bytes flipped", "passed"},
        Clause{"state-noise", "none", "1 MiB, and 200 of the state's own size", "passed"}),
    nameOf);

struct Place {
    const char* family;
    std::vector<int> numbers;
    std::string result;
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << place.family << "... " << place.result;
}

// Every rate and every size of a block is tried, in both precisions.
class CheckTries : public testing::TestWithParam<Place> {};

TEST_P(CheckTries, EveryOne) {
    for (const int number : GetParam().numbers)
        for (const char* const check : {"audio-every-rate-and-block", "audio-double-precision"}) {
            const auto report = checkOf(check, GetParam().family + std::to_string(number));
            EXPECT_EQ(report["result"], GetParam().result) << number << ' ' << report;
        }
}

std::string placeName(const testing::TestParamInfo<Place>& info) {
    constexpr std::array names{"UsualRate", "StrangeRate", "Block", "HugeBlock"};
    return names.at(info.index);
}

INSTANTIATE_TEST_SUITE_P(
    OfAudio, CheckTries,
    testing::Values(
        Place{"rate-", {22050, 32000, 44100, 48000, 88200, 96000, 176400, 192000}, "failed"},
        Place{"rate-", {8000, 11025, 16000, 384000, 768000}, "warning"},
        Place{"block-",
              {1,  2,  3,   7,   16,  17,  31,   32,   33,   63,   64,
               65, 99, 127, 256, 441, 999, 1024, 2048, 4096, 8191, 8192},
              "failed"},
        Place{"block-", {16384}, "warning"}),
    placeName);

} // namespace
