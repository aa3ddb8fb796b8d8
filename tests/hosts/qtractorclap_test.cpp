// The CLAP plug-in in Qtractor, with its window.
#include "processor/core/parameters.h"
#include "tests/hosts/gesture.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/openings.h"
#include "tests/hosts/qtractorcurve.h"
#include "tests/hosts/qtractorwindow.h"

#include <X11/keysym.h>
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
    // Waits until the plug-in has played so many more blocks.
    void playOn(std::size_t more) const {
        const std::size_t until = blocks().size() + more;
        EXPECT_TRUE(eventually(seconds(60), [&] { return blocks().size() >= until; }));
    }
    // What the host has set the balance to, after so many calls.
    Observations balanceSetSince(std::size_t from) const {
        Observations all = calls();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(from));
        std::erase_if(all, [](const Observation& call) {
            return call.kind != Kind::sets || call.index != balanceSlider.parameter;
        });
        return all;
    }
    // The session's curve is only played from now on.
    void stopRecording() const {
        const std::string recording = "<capture>1</capture>";
        std::string text = contentsOf(session);
        const auto place = text.find(recording);
        ASSERT_NE(place, std::string::npos);
        writeFile(session, text.replace(place, recording.size(), "<capture>0</capture>"));
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
    const float last = lastOfRisingGesture(
        finishedGestureOn(balanceSlider.parameter, record, before), audioThread);
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

TEST_F(QtractorClap, TakesAnotherSizeAtOnceAndHasItWhenItIsOpenedAgain) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    ASSERT_NO_FATAL_FAILURE(changeSize());
    EXPECT_TRUE(comesToFillItsWindow());
    quit();
}

TEST_F(QtractorClap, HasAPresetThatTheWindowChoseBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    chooseTheThirdPreset();
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_EQ(saved.size(), 9U);
    EXPECT_NEAR(saved.at("balance"), 0.7F, 1e-5F);
    EXPECT_EQ(saved.at("phase"), 1.0F);
    const Pixels shown = presetPanel();
    quit();

    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(0.7) && presetPanel() == shown; }));
    expectToKeep(saved);
}

TEST_F(QtractorClap, HasDragsRecordedAsAutomationAndPlaysThemBackInANewProcess) {
    const std::filesystem::path curve = home / "home/curve.mid";
    qtractor::writeCurve(curve, {{0.0, 0.5}});
    qtractor::writeTrackSession(qtractor::clap(home),
                                {kParamBalance, "balance", curve, /*capture*/ true}, session);
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditorOfTrack());
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.5); }));
    const std::size_t before = calls().size();
    // What is on a track plays with the transport alone.
    ASSERT_NO_FATAL_FAILURE(startTransport([this] { return !blocks().empty(); }));
    playOn(50);
    const std::string audioThread = blocks().back().thread;
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    const float there = lastOfRisingGesture(
        finishedGestureOn(balanceSlider.parameter, record, before), audioThread);
    EXPECT_NEAR(there, 0.7, 0.01);
    playOn(100);
    const std::size_t half = calls().size();
    dragSlider(*screen, *editor(), balanceSlider, 0.7, 0.5);
    const Observations wayBack = finishedGestureOn(balanceSlider.parameter, record, half);
    ASSERT_GE(wayBack.size(), 3U);
    const float back = wayBack[wayBack.size() - 2].opt;
    EXPECT_NEAR(back, 0.5, 0.01);
    playOn(50);
    press(XK_space);
    ASSERT_NO_FATAL_FAILURE(save());
    quit();
    const auto points = qtractor::curveIn(qtractor::curveFileOf(session));
    ASSERT_GE(points.size(), 3U);
    EXPECT_NEAR(std::ranges::max(points, {}, &qtractor::CurvePoint::value).value, there, 1e-3);
    EXPECT_NEAR(points.back().value, back, 1e-3);

    stopRecording();
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditorOfTrack());
    const std::size_t again = calls().size();
    clickMain(toTheStart); // JACK keeps where the transport stood
    ASSERT_NO_FATAL_FAILURE(startTransport([this] { return standsAt(0.7); }));
    EXPECT_TRUE(eventually(seconds(20), [this] { return standsAt(0.5); }));
    press(XK_space);
    const Observations set = balanceSetSince(again);
    ASSERT_GE(set.size(), 2U);
    EXPECT_NEAR(std::ranges::max(set, {}, &Observation::opt).opt, there, 1e-3F);
    EXPECT_NEAR(set.back().opt, back, 1e-3F);
    for (const Observation& call : set)
        EXPECT_EQ(call.thread, blocks().back().thread);
    quit();
}

TEST_F(QtractorClap, ShowsTheWindowAgainAndAgainAndPlaysOn) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    for (int opening = 1; opening <= openings(); ++opening) {
        ASSERT_NO_FATAL_FAILURE(closeEditor()) << opening;
        ASSERT_NO_FATAL_FAILURE(openEditor()) << opening;
    }
    EXPECT_EQ(asked(effEditOpen), openings() + 1);
    const std::size_t played = blocks().size();
    EXPECT_TRUE(eventually(seconds(20), [&] { return blocks().size() > played; }));
    EXPECT_TRUE(standsAt(0.5));
    quit();
    EXPECT_EQ(asked(effEditClose), openings() + 1);
}

} // namespace
} // namespace mirelon::test
