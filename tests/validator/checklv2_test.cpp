// The validator on LV2 plug-ins: Mirelon's, and one with chosen defects.
#include "tests/support/virtualdisplay.h"
#include "tests/validator/checkrun.h"

#include <filesystem>

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

TEST(CheckOfLv2, PassesMirelonAtTheHighestLevel) {
    VirtualDisplay::start();
    const Outcome outcome = run(host + " check --json --strict --level 10 " + MIRELON_LV2_BUNDLE);
    expectAllPassed(outcome);
    // Only what belongs to another format is left out.
    const auto report = reportOf(outcome);
    for (const auto& check : report["checks"])
        EXPECT_NE(check["name"], "audio-double-precision");
}

TEST(CheckOfLv2, PassesAPlugInWithoutWindowAndStateAndTakesItsUri) {
    const std::string folder = std::filesystem::path(MIRELON_TEST_AMPLIFIER).parent_path();
    const Outcome outcome = run("env -u DISPLAY LV2_PATH=" + folder + " " + host +
                                " check --json urn:mirelon:test:amplifier");
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const auto report = reportOf(outcome);
    EXPECT_EQ(report["plugin"], "urn:mirelon:test:amplifier");
    EXPECT_EQ(report["failed"], 0);
    for (const auto& check : report["checks"])
        if (std::string(check["name"]).starts_with("messages-")) {
            EXPECT_EQ(check["result"], "passed") << check;
        }
}

TEST(CheckOfLv2, FindsEachDefectInTheReadingOfMessages) {
    for (const char* const kind : {"atom", "object", "sequence"}) {
        const std::string command = std::string(host) +
                                    " check --strict --seed 1 --only messages-strange-" + kind +
                                    "s " + MIRELON_TEST_AMPLIFIER;
        EXPECT_EQ(run(command).status, 0) << kind;
        EXPECT_EQ(run("MIRELON_DEFECT=message-" + std::string(kind) + " " + command).status, 1)
            << kind;
    }
}

TEST(CheckOfLv2, SaysHowManyMessagesItHasSent) {
    const auto noteOf = [](const std::string& check) {
        const Outcome outcome = run(host + " check --json --only messages-strange-" + check + " " +
                                    MIRELON_TEST_AMPLIFIER);
        return reportOf(outcome)["checks"][0]["note"].get<std::string>();
    };
    EXPECT_EQ(noteOf("atoms"), "980 atoms");
    EXPECT_EQ(noteOf("objects"), "2000 objects");
    EXPECT_EQ(noteOf("sequences"), "1000 sequences");
}

TEST(CheckOfLv2, FindsALockThatAMessageTakes) {
    const std::string command = std::string(host) +
                                " check --strict --json --only realtime-messages " +
                                MIRELON_TEST_AMPLIFIER;
    const Outcome without = run(command);
    const Outcome withIt = run("MIRELON_DEFECT=message-lock " + command);
    if (saysItIsSanitized(withIt))
        GTEST_SKIP() << "this build has a sanitizer in it";
    EXPECT_EQ(without.status, 0) << without.output;
    EXPECT_EQ(withIt.status, 1) << withIt.output;
    EXPECT_NE(withIt.output.find("pthread_mutex_lock"), std::string::npos) << withIt.output;
}

TEST(CheckOfLv2, EchoesTheBankOfMirelon) {
    const Outcome outcome =
        run(std::string(host) + " check --json --only realtime-messages " + MIRELON_LV2_BUNDLE);
    if (saysItIsSanitized(outcome))
        GTEST_SKIP() << "this build has a sanitizer in it";
    const auto check = reportOf(outcome)["checks"][0];
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(check["note"], "30 messages"); // one for each restored state
}

TEST(CheckOfLv2, IsRefusedForWhatIsNotThereAndForChecksOfOtherFormats) {
    const auto refused = [](const std::string& arguments, const std::string& reason) {
        const Outcome outcome = run(host + " check " + arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.output.find(reason), std::string::npos) << outcome.output;
    };
    refused("http://dravik.example/nothing", "no LV2 plug-in of this name");
    refused("/tmp", "no manifest.ttl");
    refused(std::string("--only messages-strange-atoms ") + MIRELON_PLUGIN_FILE,
            "is for LV2 alone");
    refused(std::string("--only audio-double-precision ") + MIRELON_LV2_BUNDLE,
            "is for VST 2 alone");
}

} // namespace
