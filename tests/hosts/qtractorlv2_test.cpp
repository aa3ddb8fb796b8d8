// The LV2 plug-in in Qtractor, with its window.
#include "formats/lv2/names.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/openings.h"
#include "tests/hosts/qtractorwindow.h"

#include <chrono>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

class QtractorLv2 : public QtractorWindowTest {
  protected:
    QtractorLv2()
        : QtractorWindowTest(MIRELON_PLUGIN_FILE) {}

    void SetUp() override {
        home.addEnvironment(lv2Environment(home / "lv2"));
        QtractorWindowTest::SetUp();
        qtractor::writeSession(qtractor::lv2(lv2::pluginUri), session);
    }
};

TEST_F(QtractorLv2, HasADraggedSliderBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(standsAt(0.5));
    dragSlider(*screen, *editor(), balanceSlider, 0.5, 0.7);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_EQ(saved.size(), 9U);
    ASSERT_TRUE(saved.contains("Balance")) << contentsOf(session);
    EXPECT_NEAR(saved.at("Balance"), 20.0F, 1.0F);
    // It keeps the state compressed, name included.
    EXPECT_NE(contentsOf(session).find("urn:qtractor:state"), std::string::npos);
    quit();

    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
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

TEST_F(QtractorLv2, HasAPresetThatTheWindowChoseBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    for (int preset = 1; preset <= 3; ++preset) // the third is "balanse to the left"
        screen->click(*editor(), rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(0.7); }));
    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    EXPECT_NEAR(saved.at("Balance"), 20.0F, 1e-3F);
    EXPECT_EQ(saved.at("Phase"), 1.0F);
    const Pixels shown = screen->pixels(*editor());
    quit();

    ASSERT_NO_FATAL_FAILURE(launch());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    // The panel with the preset's name, below the meters.
    const auto panel = [](const Pixels& window) {
        return window.part(84, 312, 206, window.height);
    };
    EXPECT_TRUE(eventually(seconds(10), [&] {
        return standsAt(0.7) && panel(screen->pixels(*editor())) == panel(shown);
    }));
    quit();
}

} // namespace
} // namespace mirelon::test
