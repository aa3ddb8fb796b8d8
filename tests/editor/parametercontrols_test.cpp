// The controls of the nine parameters under a real pointer, and what the host
// hears of it.
#include "tests/editor/editorhost.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

using namespace mirelon::test;

namespace {

constexpr unsigned wheelUp = 4;
constexpr unsigned wheelDown = 5;
constexpr unsigned wheelLeft = 6;
constexpr unsigned wheelRight = 7;

// The handle is 12 pixels wide and runs from 63 to 239; its sixth pixel counts
// as its middle.
constexpr double handlePosition(double value) {
    return 68 + 164 * value;
}

struct Place {
    VstInt32 parameter;
    double x;
    double y;
};
constexpr Place sliders[] = {{0, 0, 62}, {1, 0, 94}, {2, 0, 158}, {3, 0, 190}, {4, 0, 222}};
constexpr Place switches[] = {{5, 93, 257}, {7, 137, 257}, {8, 171, 257}, {6, 215, 257}};

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
    for (const Place& slider : sliders) {
        editor.drag(handlePosition(0.5), slider.y, handlePosition(0.75), slider.y);
        EXPECT_NEAR(editor.parameter(slider.parameter), 0.75F, 0.004F) << slider.parameter;
        EXPECT_EQ(editor.touches(slider.parameter), "baae") << slider.parameter;
        const auto told = editor.host.calls(audioMasterAutomate);
        EXPECT_EQ(told.back().opt, editor.parameter(slider.parameter));
    }
}

TEST_P(ParameterControls, TheLowEndOfASliderIsAtItsLeft) {
    for (const Place& slider : sliders) {
        editor.drag(handlePosition(0.5), slider.y, 64, slider.y);
        EXPECT_EQ(editor.parameter(slider.parameter), 0.0F);
        editor.drag(handlePosition(0), slider.y, 238, slider.y);
        EXPECT_EQ(editor.parameter(slider.parameter), 1.0F);
    }
}

TEST_P(ParameterControls, BothWheelsMoveASlider) {
    for (const Place& slider : sliders) {
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

TEST_P(ParameterControls, ShiftMakesTheWheelTenTimesFiner) {
    editor.wheel(150, 62, wheelUp);
    const float coarse = editor.parameter(0) - 0.5F;
    editor.effect->setParameter(0, 0.5F);
    editor.hold(XK_Shift_L);
    editor.wheel(150, 62, wheelUp);
    editor.letGo(XK_Shift_L);
    EXPECT_NEAR(editor.parameter(0) - 0.5F, coarse / 10, 1e-6F);
}

TEST_P(ParameterControls, ControlAndClickPutASliderBackToItsMiddle) {
    for (const Place& slider : sliders) {
        editor.effect->setParameter(slider.parameter, 0.9F);
        editor.hold(XK_Control_L);
        editor.click(100, slider.y);
        editor.letGo(XK_Control_L);
        EXPECT_EQ(editor.parameter(slider.parameter), 0.5F);
        EXPECT_EQ(editor.touches(slider.parameter), "bae");
    }
}

TEST_P(ParameterControls, ASwitchTogglesWhenTheButtonIsReleasedOverIt) {
    for (const Place& place : switches) {
        const float before = editor.parameter(place.parameter);
        editor.moveTo(place.x, place.y);
        editor.press();
        EXPECT_EQ(editor.parameter(place.parameter), before);
        editor.release();
        EXPECT_EQ(editor.parameter(place.parameter), 1.0F - before);
        EXPECT_EQ(editor.touches(place.parameter), "bae");
        editor.click(place.x, place.y);
        EXPECT_EQ(editor.parameter(place.parameter), before);
    }
}

TEST_P(ParameterControls, ControlAndClickIsAnOrdinaryClickOnASwitch) {
    editor.hold(XK_Control_L);
    editor.click(93, 257);
    editor.letGo(XK_Control_L);
    EXPECT_EQ(editor.parameter(5), 0.0F);
}

TEST_P(ParameterControls, AMoveOfOneControlTouchesNoOtherParameter) {
    editor.drag(handlePosition(0.5), 62, handlePosition(0.2), 62);
    for (VstInt32 other = 1; other < 9; ++other)
        EXPECT_EQ(editor.touches(other), "");
}

TEST_P(ParameterControls, TheRightButtonMovesNothing) {
    for (const Place& slider : sliders)
        editor.click(100, slider.y, 3);
    for (const Place& place : switches)
        editor.click(place.x, place.y, 3);
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
    editor.click(150, 290, 3);
    EXPECT_EQ(editor.pixels(), closed);
    editor.click(150, 290);
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
