// What comes and goes in the window leaves no trace of itself, at any scale: where a
// scale puts edges between pixels, what is drawn anew may be smaller than what was drawn.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using namespace mirelon::test;

namespace {

class Traces : public testing::TestWithParam<const char*> {
  protected:
    Traces() {
        VirtualDisplay::start();
        setenv("MIRELON_SCALE", GetParam(), 1);
        editor = std::make_unique<EditorHost>();
        editor->open();
        unsetenv("MIRELON_SCALE");
        editor->moveTo(nowhere.x, nowhere.y);
        before = editor->pixels();
    }
    bool comesToShow(const Pixels& picture) const {
        return editor->runUntil([&] { return editor->window->pixels() == picture; });
    }
    bool somethingComes() const {
        return editor->runUntil([&] { return editor->window->pixels() != before; });
    }

    std::unique_ptr<EditorHost> editor;
    Pixels before;
};
INSTANTIATE_TEST_SUITE_P(Scale, Traces,
                         testing::Values("1", "1.25", "1.5", "1.75", "2", "2.5", "3"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             std::ranges::replace(name, '.', '_');
                             return name;
                         });

TEST_P(Traces, OfThePointerAreNone) {
    std::vector<Position> places{aboutStrip, savePreset,  defaultBank, loadBank, menuButton,
                                 rockerLeft, rockerRight, storeA,      recallB};
    for (const SliderPlace& slider : sliderPlaces)
        places.push_back({handlePosition(0.5), slider.y});
    for (const SwitchPlace& onOff : switchPlaces)
        places.push_back(onOff.at);
    for (const Position& place : places) {
        editor->moveTo(place.x, place.y);
        EXPECT_TRUE(somethingComes()) << place.x << ' ' << place.y;
        editor->moveTo(nowhere.x, nowhere.y);
        EXPECT_TRUE(comesToShow(before)) << place.x << ' ' << place.y;
    }
}

TEST_P(Traces, OfTheRingAreNone) {
    constexpr int controls = 12;
    for (int i = 0; i < controls; ++i)
        editor->key(XK_Tab);
    EXPECT_TRUE(somethingComes());
    editor->key(XK_Escape);
    EXPECT_TRUE(comesToShow(before));
}

TEST_P(Traces, OfAValueThatIsTypedAreNone) {
    for (const SliderPlace& slider : sliderPlaces) {
        editor->doubleClick(270, slider.y);
        editor->moveTo(nowhere.x, nowhere.y);
        EXPECT_TRUE(somethingComes()) << slider.parameter;
        editor->key(XK_Escape);
        EXPECT_TRUE(comesToShow(before)) << slider.parameter;
    }
}

TEST_P(Traces, OfANameThatIsTypedAreNone) {
    editor->click(nameField.x, nameField.y);
    editor->moveTo(nowhere.x, nowhere.y);
    EXPECT_TRUE(somethingComes());
    editor->key(XK_Escape);
    EXPECT_TRUE(comesToShow(before));
}

TEST_P(Traces, OfTheMenuOfSizesAreNone) {
    editor->click(title.x, title.y, 3);
    EXPECT_TRUE(editor->runUntilStill(before));
    editor->key(XK_Escape);
    editor->moveTo(nowhere.x, nowhere.y);
    EXPECT_TRUE(comesToShow(before));
}

// With process off the other controls are dimmed.
TEST_P(Traces, OfBypassAreNone) {
    editor->effect->setParameter(5, 0.0F);
    EXPECT_TRUE(somethingComes());
    editor->effect->setParameter(5, 1.0F);
    EXPECT_TRUE(comesToShow(before));
}

TEST_P(Traces, OfOtherValuesAreNone) {
    for (const float value : {0.0F, 1.0F, 0.37F}) {
        for (const SliderPlace& slider : sliderPlaces)
            editor->effect->setParameter(slider.parameter, value);
        EXPECT_TRUE(somethingComes()) << value;
        for (const SliderPlace& slider : sliderPlaces)
            editor->effect->setParameter(slider.parameter, 0.5F);
        EXPECT_TRUE(comesToShow(before)) << value;
    }
}

} // namespace
