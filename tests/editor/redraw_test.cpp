// What the window draws anew: what has changed, and as soon as it has.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/support/windowdamage.h"

#include <array>
#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

class EditorRedraw : public testing::Test {
  protected:
    EditorRedraw() {
        const Pixels empty = editor.window->pixels();
        editor.open();
        EXPECT_TRUE(editor.runUntilStill(empty)); // the first picture is complete
    }

    EditorHost editor{Drive::glib};
};

TEST_F(EditorRedraw, OfAChangedParameterIsItsControlAndItsReadOut) {
    for (const SliderPlace& slider : sliderPlaces) {
        WindowDamage drawn(*editor.window);
        editor.effect->setParameter(slider.parameter, 0.7F);
        ASSERT_TRUE(editor.runUntilStill(drawn));
        EXPECT_LE(drawn.pixels(), editorWidth * editorHeight / 10) << slider.parameter;
        EXPECT_GT(drawn.top(), slider.y - 20) << slider.parameter;
        EXPECT_LT(drawn.bottom(), slider.y + 20) << slider.parameter;
    }
}

TEST_F(EditorRedraw, OfAParameterThatIsSetToWhatItIsIsNothing) {
    const Pixels before = editor.window->pixels();
    editor.effect->setParameter(0, 0.7F);
    ASSERT_TRUE(editor.runUntilStill(before));
    WindowDamage drawn(*editor.window);
    editor.effect->setParameter(0, 0.7F);
    // What is set later is drawn later, and all that is drawn.
    editor.effect->setParameter(4, 0.7F);
    ASSERT_TRUE(editor.runUntilStill(drawn));
    EXPECT_GT(drawn.top(), sliderPlaces[4].y - 20);
}

// How many pictures of the meters come of so many ticks, each by an idle command or
// by GLib's loop.
int meterPictures(EditorHost& editor, int ticks, Drive drive) {
    constexpr auto apart = 40ms; // more than the idle timer's interval
    constexpr int frames = 2048;
    std::array<float, frames> left{};
    std::array<float, frames> right{};
    std::array<float*, 2> channels{left.data(), right.data()};
    editor.effect->resume();
    WindowDamage drawn(*editor.window);
    for (int tick = 0; tick < ticks; ++tick) {
        left.fill(tick % 2 == 0 ? 0.1F : 0.9F);
        right.fill(0.5F);
        editor.effect->process(channels.data(), channels.data(), frames);
        std::this_thread::sleep_for(apart);
        drawn.look();
        mirelon::hosting::iterateHostLoop(drive, editor.effect.get());
    }
    std::this_thread::sleep_for(apart);
    drawn.look();
    return drawn.pictures();
}

TEST_F(EditorRedraw, OfTheMetersComesWithEveryTickOfGlibsLoop) {
    EXPECT_GE(meterPictures(editor, 20, Drive::glib), 16);
}

TEST_F(EditorRedraw, OfTheMetersComesWithEveryIdleOfASlowHost) {
    EXPECT_GE(meterPictures(editor, 20, Drive::hostIdle), 16);
}

} // namespace
