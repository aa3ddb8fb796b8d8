// The CLAP plug-in in Qtractor, with its window.
#include "tests/hosts/gesture.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/qtractorwindow.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;
using Kind = Observation::Kind;

class QtractorClap : public QtractorWindowTest {
  protected:
    QtractorClap()
        : QtractorWindowTest(MIRELON_CLAP_OBSERVER_FILE) {}

    void SetUp() override {
        home.addEnvironment(
            {{"MIRELON_OBSERVED", MIRELON_CLAP_FILE}, {"MIRELON_OBSERVATIONS", record}});
        QtractorWindowTest::SetUp();
        qtractor::writeSession(qtractor::clap(home), session);
    }

    // Starts Qtractor with the session and waits until the plug-in plays.
    void start() {
        std::filesystem::remove(record);
        ASSERT_NO_FATAL_FAILURE(launch());
        ASSERT_TRUE(eventually(seconds(60), [this] { return !blocks().empty(); }))
            << contentsOf(home / "qtractor.log");
    }

    Observations calls() const { return observationsIn(record); }
    Observations blocks() const {
        Observations all = calls();
        std::erase_if(all, [](const Observation& call) { return call.kind != Kind::plays; });
        return all;
    }
    std::ptrdiff_t asked(VstInt32 opcode) const {
        return std::ranges::count_if(
            calls(), [=](const Observation& call) { return call.is(Kind::asks, opcode); });
    }

    // Saves once more and leaves: a session whose plug-in has told it to look at
    // the values of its state again counts as changed.
    void expectToKeep(const std::map<std::string, float>& values) {
        ASSERT_NO_FATAL_FAILURE(save());
        EXPECT_EQ(qtractor::parametersIn(session), values);
        quit();
    }

    std::filesystem::path record = home / "observations";
};

TEST(QtractorScanner, ReportsNameChannelsParametersAndEditorOfTheClapPlugIn) {
    SKIP_WITHOUT_QTRACTOR();
    const HostHome home(MIRELON_CLAP_FILE);
    const Outcome scan = qtractor::scan(home, "CLAP");
    ASSERT_TRUE(scan.inTime);
    EXPECT_EQ(scan.exitCode, 0);
    EXPECT_THAT(scan.output,
                HasSubstr("CLAP|Dravik Mirelon|2:2|0:0|9:0|GUI,EXT,RT|" + home.plugin().string()));
}

TEST_F(QtractorClap, PlaysBlockAfterBlockOnTheAudioThread) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(eventually(seconds(60), [this] { return blocks().size() >= 100; }));
    quit();
    std::set<std::string> threads;
    for (const Observation& block : blocks()) {
        EXPECT_EQ(block.value, JackServer::blockFrames);
        threads.insert(block.thread);
    }
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains("main"));
    EXPECT_TRUE(calls().back().is(Kind::asks, effClose));
}

TEST_F(QtractorClap, DragOnASliderIsOneGestureAndIsBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(standsAt(0.5));
    const std::string audioThread = blocks().back().thread;
    const std::size_t before = calls().size();
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    Observations gesture;
    ASSERT_TRUE(eventually(seconds(20), [&] {
        gesture = gestureOn(balanceSlider.parameter, calls(), before);
        return isOver(gesture);
    }));
    const float last = lastOfRisingGesture(gesture, audioThread);
    EXPECT_NEAR(last, 0.7, 0.01);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    ASSERT_EQ(saved.size(), 9U);
    EXPECT_NEAR(saved.at("balance"), last, 1e-5F);
    EXPECT_GT(asked(effGetChunk), 0);
    quit();
    EXPECT_EQ(asked(effEditOpen), asked(effEditClose));

    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_EQ(asked(effSetChunk), 1);
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    expectToKeep(saved);
}

TEST_F(QtractorClap, HasAPresetThatTheWindowChoseBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    for (int preset = 1; preset <= 3; ++preset) // the third is "balanse to the left"
        screen->click(*editor(), rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_EQ(saved.size(), 9U);
    EXPECT_NEAR(saved.at("balance"), 0.7F, 1e-5F);
    EXPECT_EQ(saved.at("phase"), 1.0F);
    const Pixels shown = screen->pixels(*editor());
    quit();

    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    // The panel with the preset's name, below the meters.
    const auto panel = [](const Pixels& window) {
        return window.part(84, 312, 206, window.height);
    };
    EXPECT_TRUE(eventually(seconds(10), [&] {
        return standsAt(0.7) && panel(screen->pixels(*editor())) == panel(shown);
    }));
    expectToKeep(saved);
}

TEST_F(QtractorClap, ShowsTheWindowFiftyTimesAndPlaysOn) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    for (int opening = 1; opening <= 50; ++opening) {
        ASSERT_NO_FATAL_FAILURE(closeEditor()) << opening;
        ASSERT_NO_FATAL_FAILURE(openEditor()) << opening;
    }
    EXPECT_EQ(asked(effEditOpen), 51);
    const std::size_t played = blocks().size();
    EXPECT_TRUE(eventually(seconds(20), [&] { return blocks().size() > played; }));
    EXPECT_TRUE(standsAt(0.5));
    quit();
    EXPECT_EQ(asked(effEditClose), 51);
}

} // namespace
} // namespace mirelon::test
