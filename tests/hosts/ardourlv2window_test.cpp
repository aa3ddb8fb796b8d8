// The LV2 plug-in's window in Ardour's.
#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "tests/hosts/ardourwindow.h"
#include "tests/hosts/gesture.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/openings.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

constexpr SliderPlace widthSlider = sliderPlaces[0];
constexpr SliderPlace balanceSlider = sliderPlaces[2];

class ArdourLv2Window : public ArdourWindowTest {
  protected:
    ArdourLv2Window()
        : ArdourWindowTest(MIRELON_PLUGIN_FILE) {
        home.addEnvironment(observedLv2Environment(home / "lv2", record));
    }

    void insertPlugin() override {
        ardour::runScript(home, "insert.lua",
                          {session.path(), std::to_string(ArdourSession::rate),
                           std::string("lv2=") + lv2::pluginUri});
    }
    std::string pluginType() const override { return "lv2"; }
    // Ardour makes the window as wide as its own row of buttons; what is beside
    // the editor stays dark.
    std::string shownSize(int shownPercent) const override {
        return shownPercent == 100 ? "392x348" : editorSize(shownPercent);
    }

    // Of a parameter's port; in the host's mode of automation of this name.
    void automate(int parameter, const std::vector<std::string>& points,
                  const std::string& mode = "Play") const {
        ardour::automate(home, session.path(),
                         {parameter, points, lv2::portOfParameter(parameter), mode});
    }
    std::map<int, float> reloaded() {
        return ardour::parametersIn(
            ardour::runScript(home, "bounce.lua", {session.path(), "1024", "after"}));
    }

    std::filesystem::path record = home / "observations";
};

TEST_F(ArdourLv2Window, DragOnASliderIsOneGestureAndStaysWhereItWasLeftAndIsSaved) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.5); }));
    const std::size_t before = observationsIn(record).size();
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.75);
    const float last =
        lastOfRisingGesture(finishedGestureOn(balanceSlider.parameter, record, before), "main");
    EXPECT_NEAR(last, 25.0F, 1.0F);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.75); }));
    std::this_thread::sleep_for(seconds(1)); // for the host's echo
    EXPECT_TRUE(standsAt(balanceSlider, 0.75));
    quit();
    EXPECT_EQ(reloaded().at(balanceSlider.parameter), last);
}

// Ardour closes an LV2 plug-in's window when it hides it.
TEST_F(ArdourLv2Window, IsClosedAndOpenedAgainAndAgainAndTheHostQuitsCleanly) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(hideAndShowEditor(openings()));
    quit();
}

TEST_F(ArdourLv2Window, TakesAnotherSizeAtOnceAndHasItWhenItIsOpenedAgain) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(changeSize());
    quit();
}

TEST_F(ArdourLv2Window, ShowsAutomationOfTheHost) {
    automate(widthSlider.parameter, {"0=100", "48000=324"});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(widthSlider, 0.5); }));
    ASSERT_NO_FATAL_FAILURE(pressSpace());
    expectToRise(widthSlider, 0.7);
}

// In the host's mode "touch" a control's automation is written from the gesture's
// begin to its end, and plays before and after it.
TEST_F(ArdourLv2Window, WritesADragAsOneStretchOfTouchAutomation) {
    automate(widthSlider.parameter, {"0=100", "400000=324"}); // shows that the transport runs
    automate(balanceSlider.parameter, {"0=0", "470000=0"}, "Touch");
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.5); }));
    ASSERT_NO_FATAL_FAILURE(pressSpace());
    expectToRise(widthSlider, 0.55);
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.75);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.5); }))
        << "the curve does not play again after the gesture";
    ASSERT_NO_FATAL_FAILURE(pressSpace());
    quit();

    const std::vector<float> curve = ardour::pointsIn(ardour::runScript(
        home, "points.lua", {session.path(), std::to_string(balanceSlider.parameter)}));
    ASSERT_GE(curve.size(), 4U);
    EXPECT_EQ(curve.front(), 0.0F);
    EXPECT_EQ(curve.back(), 0.0F);
    EXPECT_NEAR(*std::ranges::max_element(curve), 25.0F, 1.0F);
    const auto leaves = std::ranges::adjacent_find(
        curve, [](float now, float next) { return now == 0.0F && next > 0.0F; });
    ASSERT_NE(leaves, curve.end());
    EXPECT_EQ(std::adjacent_find(leaves + 1, curve.end(),
                                 [](float now, float next) { return now == 0.0F && next > 0.0F; }),
              curve.end())
        << "more than one stretch";
}

TEST_F(ArdourLv2Window, KeepsAPresetThatItChoseInTheSession) {
    ASSERT_NO_FATAL_FAILURE(start());
    for (int preset = 1; preset <= 3; ++preset) // the third is "balanse to the left"
        screen->click(*editor(), rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.7); }));
    std::this_thread::sleep_for(seconds(1)); // for the bank: nothing shows that it has come
    quit();
    const auto values = reloaded();
    EXPECT_NEAR(values.at(kParamBalance), 20.0F, 1e-3F);
    EXPECT_EQ(values.at(kParamPhase), 1.0F);
}

} // namespace
} // namespace mirelon::test
