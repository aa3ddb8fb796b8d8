// The controls of the nine parameters under a real pointer, and what the host
// hears of it.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr unsigned wheelUp = 4;
constexpr unsigned wheelDown = 5;
constexpr unsigned wheelLeft = 6;
constexpr unsigned wheelRight = 7;

class ParameterControls : public testing::TestWithParam<Drive> {
  protected:
    ParameterControls()
        : editor(GetParam()) {
        editor.open();
        editor.host.forgetCalls();
    }
    EditorHost editor;
};
INSTANTIATE_TEST_SUITE_P(BothDrives, ParameterControls,
                         testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

TEST_P(ParameterControls, ADraggedSliderSetsItsParameterInOneGesture) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.drag(handlePosition(0.5), slider.y, handlePosition(0.75), slider.y);
        EXPECT_NEAR(editor.parameter(slider.parameter), 0.75F, 0.004F) << slider.parameter;
        EXPECT_EQ(editor.touches(slider.parameter), "baae") << slider.parameter;
        const auto told = editor.host.calls(audioMasterAutomate);
        EXPECT_EQ(told.back().opt, editor.parameter(slider.parameter));
    }
}

TEST_P(ParameterControls, TheLowEndOfASliderIsAtItsLeft) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.drag(handlePosition(0.5), slider.y, 64, slider.y);
        EXPECT_EQ(editor.parameter(slider.parameter), 0.0F);
        editor.drag(handlePosition(0), slider.y, 238, slider.y);
        EXPECT_EQ(editor.parameter(slider.parameter), 1.0F);
    }
}

TEST_P(ParameterControls, BothWheelsMoveASlider) {
    for (const SliderPlace& slider : sliderPlaces) {
        const float middle = editor.parameter(slider.parameter);
        editor.wheel(150, slider.y, wheelUp);
        const float up = editor.parameter(slider.parameter);
        EXPECT_GT(up, middle);
        editor.wheel(150, slider.y, wheelDown);
        EXPECT_FLOAT_EQ(editor.parameter(slider.parameter), middle);
        editor.wheel(150, slider.y, wheelRight);
        EXPECT_FLOAT_EQ(editor.parameter(slider.parameter), up);
        editor.wheel(150, slider.y, wheelLeft);
        EXPECT_FLOAT_EQ(editor.parameter(slider.parameter), middle);
    }
}

TEST_P(ParameterControls, TheWheelStepsByAHundredth) {
    editor.wheel(150, sliderPlaces[0].y, wheelUp);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.51F);
}

TEST_P(ParameterControls, ShiftMakesTheWheelTenTimesFiner) {
    editor.hold(XK_Shift_L);
    editor.wheel(150, sliderPlaces[0].y, wheelUp);
    editor.letGo(XK_Shift_L);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.501F);
}

TEST_P(ParameterControls, APressOnTheHandleMovesNothing) {
    for (const SliderPlace& slider : sliderPlaces)
        for (const int off : {-5, 4, 6}) {
            editor.click(handlePosition(0.5) + off, slider.y);
            EXPECT_EQ(editor.parameter(slider.parameter), 0.5F) << slider.parameter << ' ' << off;
            editor.moveTo(20, 280); // no second click of two
        }
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 0U);
}

TEST_P(ParameterControls, AHandleMovesWithThePointerThatHoldsIt) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.effect->setParameter(slider.parameter, 0.3F);
        editor.run();
        const int hold = handlePosition(0.3) + 4;
        editor.drag(hold, slider.y, hold + 41, slider.y); // a quarter of the way
        EXPECT_NEAR(editor.parameter(slider.parameter), 0.55F, 1e-6F) << slider.parameter;
    }
}

TEST_P(ParameterControls, ShiftMakesADragTenTimesFiner) {
    editor.hold(XK_Shift_L);
    editor.drag(handlePosition(0.5) + 4, sliderPlaces[0].y, handlePosition(0.5) + 45,
                sliderPlaces[0].y);
    editor.letGo(XK_Shift_L);
    EXPECT_NEAR(editor.parameter(0), 0.525F, 1e-6F);
}

TEST_P(ParameterControls, APressBesideTheHandleFetchesIt) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.click(handlePosition(0.25), slider.y);
        EXPECT_NEAR(editor.parameter(slider.parameter), 0.25F, 0.004F) << slider.parameter;
        EXPECT_EQ(editor.touches(slider.parameter), "bae");
    }
}

TEST_P(ParameterControls, ADragThatArrivesAllAtOnceEndsAtItsEnd) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.moveTo(handlePosition(0.5), slider.y);
        const auto to = [&](double value) {
            editor.window->moveTo(handlePosition(value) * editor.scale, slider.y * editor.scale);
        };
        editor.window->press();
        for (const double value : {0.55, 0.6, 0.7, 0.75})
            to(value);
        editor.window->release();
        EXPECT_TRUE(
            editor.runUntil([&] { return editor.touches(slider.parameter).ends_with('e'); }));
        EXPECT_NEAR(editor.parameter(slider.parameter), 0.75F, 0.004F) << slider.parameter;
    }
}

TEST_P(ParameterControls, ADoubleClickPutsASliderBackToItsMiddle) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.effect->setParameter(slider.parameter, 0.9F);
        editor.run();
        editor.doubleClick(handlePosition(0.9), slider.y);
        EXPECT_EQ(editor.parameter(slider.parameter), 0.5F);
        // The first click touches the handle.
        EXPECT_EQ(editor.touches(slider.parameter), "bebae");
    }
}

TEST_P(ParameterControls, ADoubleClickCountsSoonAfterAClickAtTheSamePlace) {
    editor.click(100, sliderPlaces[0].y);
    ASSERT_TRUE(editor.runUntil([&] { return editor.parameter(0) != 0.5F; }));
    editor.run(300ms); // less than a double click may take
    editor.window->press();
    editor.window->release();
    editor.window->press();
    editor.window->release();
    EXPECT_TRUE(editor.runUntil([&] { return editor.parameter(0) == 0.5F; }));
}

TEST_P(ParameterControls, ControlAndClickPutASliderBackToItsMiddle) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor.effect->setParameter(slider.parameter, 0.9F);
        editor.hold(XK_Control_L);
        editor.click(100, slider.y);
        editor.letGo(XK_Control_L);
        EXPECT_EQ(editor.parameter(slider.parameter), 0.5F);
        EXPECT_EQ(editor.touches(slider.parameter), "bae");
    }
}

TEST_P(ParameterControls, ASwitchTogglesWhenTheButtonIsReleasedOverIt) {
    for (const SwitchPlace& place : switchPlaces) {
        const float before = editor.parameter(place.parameter);
        editor.moveTo(place.at.x, place.at.y);
        editor.press();
        EXPECT_EQ(editor.parameter(place.parameter), before);
        editor.release();
        EXPECT_EQ(editor.parameter(place.parameter), 1.0F - before);
        EXPECT_EQ(editor.touches(place.parameter), "bae");
        editor.click(place.at.x, place.at.y);
        EXPECT_EQ(editor.parameter(place.parameter), before);
    }
}

TEST_P(ParameterControls, ControlAndClickIsAnOrdinaryClickOnASwitch) {
    editor.hold(XK_Control_L);
    editor.click(switchPlaces[0].at.x, switchPlaces[0].at.y);
    editor.letGo(XK_Control_L);
    EXPECT_EQ(editor.parameter(5), 0.0F);
}

TEST_P(ParameterControls, AMoveOfOneControlTouchesNoOtherParameter) {
    editor.drag(handlePosition(0.5), sliderPlaces[0].y, handlePosition(0.2), sliderPlaces[0].y);
    for (VstInt32 other = 1; other < 9; ++other)
        EXPECT_EQ(editor.touches(other), "");
}

TEST_P(ParameterControls, TheRightButtonMovesNothing) {
    for (const SliderPlace& slider : sliderPlaces)
        editor.click(100, slider.y, 3);
    for (const SwitchPlace& place : switchPlaces)
        editor.click(place.at.x, place.at.y, 3);
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 0U);
}

TEST_P(ParameterControls, TheHostsOwnChangesAreShownAndNotEchoed) {
    const Pixels before = editor.pixels();
    for (VstInt32 parameter = 0; parameter < 9; ++parameter)
        editor.effect->setParameter(parameter, 0.8F);
    editor.effect->setParameter(5, 0.2F);
    EXPECT_NE(editor.pixels(), before);
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 0U);
}

TEST_P(ParameterControls, TheAboutPictureOpensAndClosesOnLeftClicksOnly) {
    const Pixels closed = editor.pixels();
    editor.click(aboutStrip.x, aboutStrip.y, 3);
    editor.moveTo(nowhere.x, nowhere.y);
    EXPECT_EQ(editor.pixels(), closed);
    editor.click(aboutStrip.x, aboutStrip.y);
    editor.moveTo(150, 305);
    const Pixels shown = editor.pixels();
    EXPECT_NE(shown, closed);
    editor.click(150, 150, 3);
    EXPECT_EQ(editor.pixels(), shown);
    // Controls beside the picture do not get the press that closes it.
    editor.click(10, 320);
    editor.moveTo(150, 305);
    EXPECT_EQ(editor.pixels(), closed);
    EXPECT_EQ(editor.host.calls().size(), 0U);
}

} // namespace
