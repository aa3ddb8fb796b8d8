// The LV2 plug-in's window in Ardour's.
#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "tests/hosts/ardourwindow.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/openings.h"

#include <X11/keysym.h>

#include <gtest/gtest.h>

#include <chrono>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

constexpr SliderPlace widthSlider = sliderPlaces[0];
constexpr SliderPlace balanceSlider = sliderPlaces[2];

class ArdourLv2Window : public ArdourWindowTest {
  protected:
    ArdourLv2Window()
        : ArdourWindowTest(MIRELON_PLUGIN_FILE) {
        home.addEnvironment(lv2Environment(home / "lv2"));
    }

    void insertPlugin() override {
        ardour::runScript(home, "insert.lua",
                          {session.path(), std::to_string(ArdourSession::rate),
                           std::string("lv2=") + lv2::pluginUri});
    }
    std::string pluginType() const override { return "lv2"; }
    // Ardour makes the window as wide as its own row of buttons; what is beside
    // the editor stays dark.
    std::string shownSize() const override { return "392x348"; }

    std::map<int, float> reloaded() {
        return ardour::parametersIn(
            ardour::runScript(home, "bounce.lua", {session.path(), "1024", "after"}));
    }
};

TEST_F(ArdourLv2Window, KeepsADraggedSliderWhereItWasLeftAndTheSessionKeepsIt) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.5); }));
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.75);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.75); }));
    std::this_thread::sleep_for(seconds(1)); // for the host's echo
    EXPECT_TRUE(standsAt(balanceSlider, 0.75));
    quit();
    EXPECT_NEAR(reloaded().at(balanceSlider.parameter), 25.0F, 1.0F);
}

// Ardour closes an LV2 plug-in's window when it hides it.
TEST_F(ArdourLv2Window, IsClosedAndOpenedAgainAndAgainAndTheHostQuitsCleanly) {
    ASSERT_NO_FATAL_FAILURE(start());
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    ASSERT_TRUE(hideEditor());
    showMixer(*main);
    for (int time = 1; time <= openings(); ++time) {
        ASSERT_TRUE(showEditor()) << "the window was not shown the " << time << ". time";
        EXPECT_TRUE(eventually(seconds(5), [this] { return handle(balanceSlider).has_value(); }))
            << "the window is empty the " << time << ". time";
        ASSERT_TRUE(hideEditor()) << "the window was not hidden the " << time << ". time";
    }
    quit();
}

TEST_F(ArdourLv2Window, ShowsAutomationOfTheHost) {
    std::string parameter = std::to_string(widthSlider.parameter) + ':';
    parameter += std::to_string(lv2::portOfParameter(widthSlider.parameter));
    ardour::runScript(home, "automate.lua", {session.path(), parameter, "0=100", "48000=324"});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(widthSlider, 0.5); }));
    const auto main = screen->windowTitled(mainTitle);
    ASSERT_TRUE(main);
    screen->activate(*main);
    screen->key(XK_space);
    EXPECT_TRUE(eventually(seconds(15), [&] {
        return handle(widthSlider).value_or(0) > handlePosition(0.7);
    })) << "the slider did not move";
}

TEST_F(ArdourLv2Window, KeepsAPresetThatItChoseInTheSession) {
    ASSERT_NO_FATAL_FAILURE(start());
    for (int preset = 1; preset <= 3; ++preset) // the third is "balanse to the left"
        screen->click(*editor(), rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(balanceSlider, 0.7); }));
    std::this_thread::sleep_for(seconds(1));
    quit();
    const auto values = reloaded();
    EXPECT_NEAR(values.at(kParamBalance), 20.0F, 1e-3F);
    EXPECT_EQ(values.at(kParamPhase), 1.0F);
}

} // namespace
} // namespace mirelon::test
