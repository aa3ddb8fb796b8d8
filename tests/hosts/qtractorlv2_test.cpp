// The LV2 plug-in in Qtractor, with its window.
#include "formats/lv2/names.h"
#include "tests/hosts/gesture.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/openings.h"
#include "tests/hosts/qtractorcurve.h"
#include "tests/hosts/qtractorwindow.h"

#include <X11/keysym.h>
#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

class QtractorLv2 : public QtractorWindowTest {
  protected:
    QtractorLv2()
        : QtractorWindowTest(MIRELON_PLUGIN_FILE) {}

    void SetUp() override {
        home.addEnvironment(observedLv2Environment(home / "lv2", record));
        QtractorWindowTest::SetUp();
        qtractor::writeSession(qtractor::lv2(lv2::pluginUri), session);
    }

    // The plug-in on a track, one of its parameters automated.
    void launchWithCurveOf(int parameter, const std::string& name) {
        qtractor::writeTrackSession(qtractor::lv2(lv2::pluginUri),
                                    {lv2::portOfParameter(parameter), name, curve}, session);
        ASSERT_NO_FATAL_FAILURE(launch());
        ASSERT_NO_FATAL_FAILURE(openEditorOfTrack());
    }
    // The last number of a port that the host has shown the window.
    float lastShown(VstInt32 parameter) const {
        float last = -1.0F;
        for (const Observation& call : observationsIn(record))
            if (call.kind == Observation::Kind::sets && call.index == parameter)
                last = call.opt;
        return last;
    }

    std::filesystem::path record = home / "observations";
    std::filesystem::path curve = home / "home/curve.mid";
};

TEST_F(QtractorLv2, DragOnASliderIsOneGestureAndIsBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(standsAt(0.5));
    const std::size_t before = observationsIn(record).size();
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    const float last =
        lastOfRisingGesture(finishedGestureOn(balanceSlider.parameter, record, before), "main");
    EXPECT_NEAR(last, 20.0F, 1.0F);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_EQ(saved.size(), 9U);
    ASSERT_TRUE(saved.contains("Balance")) << contentsOf(session);
    EXPECT_NEAR(saved.at("Balance"), last, 1e-3F);
    // It keeps the state compressed, name included.
    EXPECT_NE(contentsOf(session).find("urn:qtractor:state"), std::string::npos);
    quit();

    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    quit();
}

TEST_F(QtractorLv2, TakesAWholeDragBackInOneStepOfUndo) {
    qtractor::writeCurve(curve, {{0.0, 0.5}});
    ASSERT_NO_FATAL_FAILURE(launchWithCurveOf(kParamWidth, "Width"));
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    ASSERT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_TRUE(eventually(seconds(20), [this] { return countsAsChanged(); }));
    clickMain(undo);
    EXPECT_TRUE(eventually(seconds(20), [this] { return standsAt(0.5); }));
    ASSERT_NO_FATAL_FAILURE(save());
    quit();
}

TEST_F(QtractorLv2, ShowsTheHostsAutomationOfASlider) {
    qtractor::writeCurve(curve, {{0.0, 0.5}, {2.0, 0.9}});
    ASSERT_NO_FATAL_FAILURE(launchWithCurveOf(kParamBalance, "Balance"));
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.5); }));
    ASSERT_NO_FATAL_FAILURE(startTransport([this] { return standsAt(0.9); }));
    press(XK_space);
    EXPECT_NEAR(lastShown(kParamBalance), 40.0F, 0.01F);
    quit();
}

TEST_F(QtractorLv2, ShowsTheHostsAutomationOfProcess) {
    qtractor::writeCurve(curve, {{0.0, 1.0}, {2.0, 0.0}});
    ASSERT_NO_FATAL_FAILURE(launchWithCurveOf(kParamProcess, "Process"));
    const auto switched = [this] {
        const Position& at = switchPlaces[0].at;
        return screen->pixels(*editor()).part(at.x - 10, at.y - 8, at.x + 10, at.y + 8);
    };
    const Pixels on = switched();
    ASSERT_NO_FATAL_FAILURE(startTransport([&] { return switched() != on; }));
    press(XK_space);
    EXPECT_EQ(lastShown(kParamProcess), 0.0F);
    quit();
}

// Qtractor's own switch stops running the plug-in and does not know lv2:enabled.
TEST_F(QtractorLv2, KeepsItsOwnSwitchWhenTheHostSwitchesItOffAndOnAgain) {
    qtractor::writeCurve(curve, {{0.0, 0.5}});
    ASSERT_NO_FATAL_FAILURE(launchWithCurveOf(kParamBalance, "Balance"));
    switchPluginOfTrack();
    ASSERT_NO_FATAL_FAILURE(save());
    EXPECT_NE(contentsOf(session).find("<activated>0</activated>"), std::string::npos);
    EXPECT_EQ(qtractor::parametersIn(session).at("Process"), 1.0F);
    switchPluginOfTrack();
    ASSERT_NO_FATAL_FAILURE(save());
    EXPECT_NE(contentsOf(session).find("<activated>1</activated>"), std::string::npos);
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    quit();
}

TEST_F(QtractorLv2, ClosesAndOpensTheWindowAgainAndAgainAndQuitsCleanly) {
    ASSERT_NO_FATAL_FAILURE(launch());
    for (int time = 1; time <= openings(); ++time) {
        ASSERT_NO_FATAL_FAILURE(openEditor()) << "the " << time << ". time";
        ASSERT_NO_FATAL_FAILURE(closeEditor()) << "the " << time << ". time";
    }
    quit();
}

// Its window does not become smaller than it was when it was opened.
TEST_F(QtractorLv2, TakesAnotherSizeAtOnceAndHasItWhenItIsOpenedAgain) {
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    ASSERT_NO_FATAL_FAILURE(changeSize());
    quit();
}

TEST_F(QtractorLv2, HasAPresetThatTheWindowChoseBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    chooseTheThirdPreset();
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_NEAR(saved.at("Balance"), 20.0F, 1e-3F);
    EXPECT_EQ(saved.at("Phase"), 1.0F);
    const Pixels shown = presetPanel();
    quit();

    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(0.7) && presetPanel() == shown; }));
    quit();
}

} // namespace
} // namespace mirelon::test
