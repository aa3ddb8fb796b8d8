// Who gets a key while the pointer is over the editor: its host, but for a
// control with a ring and a text that is being typed.
#include "tests/editor/hostkeys.h"
#include "tests/editor/positions.h"
#include "tests/editor/presetmenu.h"

#include <X11/keysym.h>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr Position beside{20, 280}; // nothing is there
constexpr std::uint32_t ringColor = 0x14616D;

class EditorKeys : public testing::TestWithParam<Drive> {
  protected:
    EditorKeys()
        : editor(GetParam())
        , host((editor.open(), editor)) {
        editor.moveTo(beside.x, beside.y);
        editor.host.forgetCalls();
    }
    void tab(int times = 1) {
        for (int i = 0; i < times; ++i)
            editor.key(XK_Tab);
    }
    void tabBack() {
        editor.hold(XK_Shift_L);
        editor.key(XK_Tab);
        editor.letGo(XK_Shift_L);
    }
    // The part of the window with the first slider and what is around it.
    Pixels firstSlider() { return editor.pixels().part(58, 46, 246, 80); }

    // How many times the tab key goes from no control to this one.
    static constexpr int toFirstSlider = 1;
    static constexpr int toFirstSwitch = 6;
    static constexpr int toNameField = 10;
    static constexpr int toRocker = 12;

    EditorHost editor;
    HostKeys host;
};
INSTANTIATE_TEST_SUITE_P(BothDrives, EditorKeys, testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

TEST_P(EditorKeys, GoToTheHostWithThePointerOverTheWindow) {
    editor.key(XK_space);
    EXPECT_EQ(host.heard(), "+space -space");
}

TEST_P(EditorKeys, GoToTheHostBehindTheAboutPictureButForEscapeWhichClosesIt) {
    const Pixels before = editor.pixels();
    editor.click(aboutStrip.x, aboutStrip.y);
    editor.moveTo(beside.x, beside.y);
    ASSERT_TRUE(editor.runUntil([&] { return editor.pixels() != before; }));
    for (const int key : {XK_space, XK_Left, XK_Return})
        editor.key(static_cast<unsigned long>(key));
    EXPECT_EQ(host.heard(), "+space -space +Left -Left +Return -Return");
    EXPECT_NE(editor.pixels(), before);
    editor.key(XK_Escape);
    EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() == before; }));
    EXPECT_EQ(host.heard(), "");
    editor.key(XK_Escape);
    EXPECT_EQ(host.heard(), "+Escape -Escape");
}

TEST_P(EditorKeys, GoToTheHostAfterAClickOnAnyControl) {
    const Position clicked[] = {{100, sliderPlaces[0].y},
                                switchPlaces[0].at,
                                rockerRight,
                                rockerLeft,
                                storeA,
                                recallA,
                                defaultPreset};
    for (const Position at : clicked) {
        editor.click(at.x, at.y);
        editor.host.forgetCalls();
        host.heard();
        for (const int key : {XK_space, XK_Left, XK_Down, XK_Return, XK_Escape})
            editor.key(static_cast<unsigned long>(key));
        EXPECT_EQ(host.heard(), "+space -space +Left -Left +Down -Down +Return -Return "
                                "+Escape -Escape")
            << at.x << ", " << at.y;
        EXPECT_TRUE(editor.host.calls().empty()) << at.x << ", " << at.y;
        EXPECT_TRUE(host.hasFocus()) << at.x << ", " << at.y;
    }
}

TEST_P(EditorKeys, GoToTheHostAfterAChoiceFromTheMenu) {
    ASSERT_TRUE(chooseFromMenu(editor, 4));
    editor.host.forgetCalls();
    host.heard();
    editor.key(XK_Up);
    EXPECT_EQ(host.heard(), "+Up -Up");
    EXPECT_TRUE(editor.host.calls().empty());
    EXPECT_TRUE(host.hasFocus());
}

TEST_P(EditorKeys, AreTheSlidersWithTheRing) {
    tab(toFirstSlider);
    editor.key(XK_Right);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.51F);
    EXPECT_EQ(editor.touches(0), "bae");
    EXPECT_EQ(host.heard(), "");
    tab();
    editor.key(XK_Left);
    EXPECT_FLOAT_EQ(editor.parameter(1), 0.49F);
    tabBack();
    editor.key(XK_Left);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.5F);
}

TEST_P(EditorKeys, WithShiftMoveASliderFinely) {
    tab(toFirstSlider);
    editor.hold(XK_Shift_L);
    editor.key(XK_Right);
    editor.letGo(XK_Shift_L);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.501F);
}

TEST_P(EditorKeys, TypeAValueAfterReturnOnASliderWithTheRing) {
    tab(toFirstSlider + 1);
    const Pixels ringed = editor.pixels();
    editor.key(XK_Return);
    editor.type("6");
    EXPECT_EQ(editor.touches(1), "");
    editor.key(XK_Return);
    EXPECT_FLOAT_EQ(editor.parameter(1), 0.75F);
    EXPECT_EQ(editor.touches(1), "bae");
    EXPECT_NE(editor.pixels(), ringed);
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, AreTheSlidersAgainAfterItsValueWasTyped) {
    for (const int end : {XK_Return, XK_KP_Enter, XK_Escape}) {
        editor.effect->setParameter(0, 0.5F);
        tab(toFirstSlider);
        const Pixels ringed = firstSlider();
        editor.key(static_cast<unsigned long>(XK_Return));
        EXPECT_NE(firstSlider(), ringed);
        editor.key(static_cast<unsigned long>(end));
        EXPECT_EQ(firstSlider(), ringed);
        editor.key(XK_Right);
        EXPECT_FLOAT_EQ(editor.parameter(0), 0.51F);
        editor.key(XK_Escape);
        EXPECT_TRUE(host.hasFocus());
        EXPECT_EQ(host.heard(), "");
    }
}

TEST_P(EditorKeys, GoOnWithTheNextSliderWhenTabEndsTheTyping) {
    tab(toFirstSlider);
    editor.key(XK_Return);
    editor.type("200");
    tab();
    EXPECT_GT(editor.parameter(0), 0.7F);
    editor.key(XK_Right);
    EXPECT_FLOAT_EQ(editor.parameter(1), 0.51F);
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, AreTheHostsWhenAClickEndsTheTypingFromASlider) {
    tab(toFirstSlider);
    editor.key(XK_Return);
    editor.type("200");
    editor.click(beside.x, beside.y);
    EXPECT_GT(editor.parameter(0), 0.7F);
    EXPECT_TRUE(host.hasFocus());
    editor.key(XK_Return);
    EXPECT_EQ(host.heard(), "+Return -Return");
}

TEST_P(EditorKeys, OfNumbersGoToTheHostWithTheRingOnASlider) {
    tab(toFirstSlider);
    editor.key('1');
    editor.key(XK_minus);
    EXPECT_EQ(host.heard(), "+1 -1 +minus -minus");
}

TEST_P(EditorKeys, MayCloseTheWindowWithTheValueTypedFromASlider) {
    editor.host.answer(audioMasterAutomate, [&](const mirelon::hosting::HostCall&) -> VstIntPtr {
        editor.close();
        return 0;
    });
    tab(toFirstSlider);
    editor.key(XK_Return);
    editor.type("200");
    editor.key(XK_Return);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->children().empty(); }));
    editor.host.answer(audioMasterAutomate, 0);
    EXPECT_EQ(editor.open(), 1);
}

TEST_P(EditorKeys, AreTheSwitchsWithTheRing) {
    tab(toFirstSwitch);
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(switchPlaces[0].parameter), 0.0F);
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, AreTheRockersWithTheRing) {
    tab(toRocker);
    editor.key(XK_Right);
    EXPECT_EQ(editor.effect->programName(), "extended width");
    editor.key(XK_Left);
    EXPECT_EQ(editor.effect->programName(), "init");
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, ThatTheControlWithTheRingHasNoUseForGoToTheHost) {
    tab(toFirstSlider);
    editor.key(XK_space);
    EXPECT_EQ(host.heard(), "+space -space");
}

TEST_P(EditorKeys, BehindTheLastControlGoOnWithTheFirst) {
    tab(toRocker + toFirstSlider);
    editor.key(XK_Right);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.51F);
    tabBack();
    editor.key(XK_Right);
    EXPECT_EQ(editor.effect->programName(), "extended width");
    EXPECT_EQ(host.heard(), "+Shift_L -Shift_L");
}

TEST_P(EditorKeys, StayWithTheControlWhenThePointerLeavesTheWindow) {
    tab(toFirstSlider);
    editor.moveTo(-10, -10);
    editor.key(XK_Right);
    EXPECT_FLOAT_EQ(editor.parameter(0), 0.51F);
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, AreWhereTheRingIsAtEveryScale) {
    for (const char* scale : {"1", "1.5", "3"}) {
        setenv("MIRELON_SCALE", scale, 1);
        EditorHost scaled(GetParam());
        scaled.open();
        unsetenv("MIRELON_SCALE");
        scaled.moveTo(beside.x, beside.y);
        const Pixels without = scaled.pixels();
        scaled.key(XK_Tab);
        const Pixels with = scaled.pixels();
        const auto at = [&](double x, double y) {
            return with.at(static_cast<int>(x * scaled.scale), static_cast<int>(y * scaled.scale));
        };
        for (const auto& [x, y] : {std::pair{62.0, 60.0}, {240.0, 60.0}, {100.0, 54.0}})
            EXPECT_EQ(at(x, y), ringColor) << scale << ' ' << x;
        for (int control = toFirstSlider; control < toRocker; ++control)
            scaled.key(XK_Tab);
        scaled.key(XK_Escape);
        EXPECT_EQ(scaled.pixels(), without) << scale;
    }
}

// A pixel of the screen stays free around them.
TEST_P(EditorKeys, RingASliderWithoutTouchingTheWordsAboveAndBelow) {
    constexpr int baseLines[] = {50, 82, 114, 146, 178, 210, 242};
    constexpr int height = 7;
    constexpr int depth = 2; // of letters that reach below the line
    for (const char* scale : {"1", "1.25", "1.5", "1.75", "2", "2.5", "3"}) {
        setenv("MIRELON_SCALE", scale, 1);
        EditorHost scaled(GetParam());
        scaled.open();
        unsetenv("MIRELON_SCALE");
        scaled.moveTo(beside.x, beside.y);
        const auto words = [&] {
            const Pixels all = scaled.pixels();
            const auto upTo = [&](int length) {
                return static_cast<int>(std::ceil(length * scaled.scale));
            };
            const auto from = [&](int length) { return static_cast<int>(length * scaled.scale); };
            std::vector<Pixels> rows;
            for (const int base : baseLines)
                rows.push_back(
                    all.part(from(52), from(base - height) - 1, upTo(250), upTo(base + depth) + 1));
            return rows;
        };
        const auto without = words();
        for (const SliderPlace& slider : sliderPlaces) {
            scaled.key(XK_Tab);
            EXPECT_TRUE(words() == without) << scale << ' ' << slider.parameter;
        }
    }
}

TEST_P(EditorKeys, RingASliderBehindItsHandle) {
    const Position besideHandle{100, 54};
    const Position onHandle{151, 54};
    const std::uint32_t handle = editor.pixels().at(onHandle.x, onHandle.y);
    tab(toFirstSlider);
    const Pixels ringed = editor.pixels();
    EXPECT_EQ(ringed.at(besideHandle.x, besideHandle.y), ringColor);
    EXPECT_EQ(ringed.at(onHandle.x, onHandle.y), handle);
}

TEST_P(EditorKeys, AreTheHostsAgainAfterEscape) {
    const Pixels before = firstSlider();
    tab(toFirstSlider);
    EXPECT_NE(firstSlider(), before);
    editor.key(XK_Escape);
    EXPECT_EQ(firstSlider(), before);
    EXPECT_EQ(host.heard(), "");
    editor.key(XK_Right);
    EXPECT_EQ(host.heard(), "+Right -Right");
    EXPECT_TRUE(host.hasFocus());
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_P(EditorKeys, AreTheHostsAgainAfterAClick) {
    const Pixels before = firstSlider();
    tab(toFirstSlider);
    ASSERT_NE(firstSlider(), before);
    editor.click(beside.x, beside.y);
    EXPECT_EQ(firstSlider(), before);
    editor.key(XK_Right);
    EXPECT_EQ(host.heard(), "+Right -Right");
    EXPECT_TRUE(host.hasFocus());
}

TEST_P(EditorKeys, AreTheHostsAgainWhenItTakesTheFocus) {
    const Pixels before = firstSlider();
    tab(toFirstSlider);
    ASSERT_NE(firstSlider(), before);
    host.takeFocus();
    EXPECT_EQ(firstSlider(), before);
    editor.key(XK_Right);
    EXPECT_EQ(host.heard(), "+Right -Right");
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_P(EditorKeys, OfATextAreNotTheHosts) {
    editor.click(nameField.x, nameField.y);
    editor.type("my preset");
    editor.key(XK_Left);
    editor.key(XK_F1);
    EXPECT_EQ(host.heard(), "");
    editor.key(XK_Return);
    EXPECT_EQ(host.heard(), "");
    EXPECT_EQ(editor.effect->programName(), "my preset");
}

TEST_P(EditorKeys, AreTheHostsAgainAfterTheText) {
    const auto typeAndEnd = [&](const std::function<void()>& end) {
        editor.click(nameField.x, nameField.y);
        editor.type("a");
        EXPECT_FALSE(host.hasFocus());
        end();
        EXPECT_TRUE(host.hasFocus());
        host.heard();
        editor.key(XK_space);
        EXPECT_EQ(host.heard(), "+space -space");
        editor.moveTo(beside.x, beside.y);
    };
    typeAndEnd([&] { editor.key(XK_Return); });
    typeAndEnd([&] { editor.key(XK_Escape); });
    typeAndEnd([&] { editor.click(beside.x, beside.y); });
    typeAndEnd([&] { editor.click(100, sliderPlaces[0].y); });
}

TEST_P(EditorKeys, TypeIntoTheNameFieldThatTheTabKeyHasReached) {
    tab(toNameField);
    editor.type("abc");
    editor.key(XK_Return);
    EXPECT_EQ(editor.effect->programName(), "abc");
    EXPECT_EQ(host.heard(), "");
    EXPECT_TRUE(host.hasFocus());
}

TEST_P(EditorKeys, ThatTheHostSendsAreNotSentBack) {
    host.send(XK_space);
    EXPECT_EQ(host.heard(), "");
}

TEST_P(EditorKeys, AreTheHostsAgainAfterTheEditorHasClosed) {
    tab(toFirstSlider);
    ASSERT_FALSE(host.hasFocus());
    editor.close();
    EXPECT_TRUE(editor.runUntil([&] { return host.hasFocus(); }));
}

TEST_P(EditorKeys, TurnTheWheelOverTheRockerForNothing) {
    for (const unsigned button : {4U, 5U})
        editor.wheel(rockerRight.x, rockerRight.y, button);
    EXPECT_EQ(editor.effect->programName(), "init");
    EXPECT_TRUE(editor.host.calls().empty());
}

} // namespace
