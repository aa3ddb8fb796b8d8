// Values that are typed into the sliders' read-outs.
#include "processor/core/parametertext.h"
#include "tests/editor/hostkeys.h"
#include "tests/editor/positions.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

namespace hosting = mirelon::hosting;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr Position beside{20, 280}; // nothing is there
constexpr int readOutX = 268;

class TypedValue : public testing::TestWithParam<Drive> {
  protected:
    TypedValue()
        : editor(GetParam())
        , host((editor.open(), editor)) {
        editor.moveTo(beside.x, beside.y);
        editor.host.forgetCalls();
    }
    void openField(VstInt32 parameter) { editor.doubleClick(readOutX, sliderPlaces[parameter].y); }
    void typeInto(VstInt32 parameter, std::string_view text) {
        openField(parameter);
        editor.type(text);
    }
    float valueOf(VstInt32 parameter, const char* text) const {
        return mirelon::parameterValueOf(parameter, text).value();
    }
    // What the field of a parameter shows, and around it.
    Pixels readOut(VstInt32 parameter) {
        const int y = sliderPlaces[parameter].y;
        editor.moveTo(beside.x, beside.y);
        return editor.pixels().part(250, y - 10, editorWidth, y + 12);
    }

    EditorHost editor;
    HostKeys host;
};
INSTANTIATE_TEST_SUITE_P(BothDrives, TypedValue, testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

TEST_P(TypedValue, IsSetByReturnAsOneGesture) {
    const std::pair<VstInt32, const char*> typed[] = {
        {0, "150"}, {1, "-6 db"}, {2, "l25"}, {3, "30r"}, {4, "10"}};
    for (const auto& [parameter, text] : typed) {
        typeInto(parameter, text);
        EXPECT_EQ(editor.touches(parameter), "") << text;
        editor.key(XK_Return);
        EXPECT_EQ(editor.parameter(parameter), valueOf(parameter, text)) << text;
        EXPECT_EQ(editor.touches(parameter), "bae") << text;
    }
}

TEST_P(TypedValue, ShowsAtTheSliderAndItsReadOut) {
    const Pixels before = editor.pixels();
    typeInto(1, "6");
    editor.key(XK_Return);
    editor.moveTo(beside.x, beside.y);
    const Pixels typed = editor.pixels();
    EXPECT_NE(typed, before);
    editor.close();
    editor.open();
    EXPECT_EQ(editor.pixels(), typed);
}

TEST_P(TypedValue, IsSetByTheEnterKeyOfTheNumberBlock) {
    openField(1);
    editor.key(XK_KP_Subtract);
    editor.type("6");
    editor.key(XK_KP_Enter);
    EXPECT_EQ(editor.parameter(1), 0.25F);
}

TEST_P(TypedValue, IsSetByAClickElsewhereAndByTheTabKey) {
    typeInto(2, "l10");
    editor.click(beside.x, beside.y);
    EXPECT_EQ(editor.parameter(2), valueOf(2, "l10"));
    EXPECT_EQ(editor.touches(2), "bae");
    typeInto(3, "r10");
    editor.key(XK_Tab);
    EXPECT_EQ(editor.parameter(3), valueOf(3, "r10"));
    EXPECT_EQ(editor.touches(3), "bae");
}

TEST_P(TypedValue, IsDroppedByEscape) {
    const Pixels before = readOut(0);
    typeInto(0, "150");
    EXPECT_NE(readOut(0), before);
    editor.key(XK_Escape);
    EXPECT_EQ(editor.parameter(0), 0.5F);
    EXPECT_EQ(readOut(0), before);
    EXPECT_EQ(editor.touches(0), "");
}

TEST_P(TypedValue, LeavesTheOldOneWhenItIsNonsense) {
    const Pixels before = readOut(0);
    for (const char* nonsense : {"abc", "", "5 5", "l20"}) {
        openField(0);
        editor.key(XK_BackSpace);
        editor.type(nonsense);
        editor.key(XK_Return);
        EXPECT_EQ(editor.parameter(0), 0.5F) << nonsense;
    }
    EXPECT_EQ(readOut(0), before);
    EXPECT_EQ(editor.touches(0), "");
}

TEST_P(TypedValue, ThatNobodyTypedIsNotSet) {
    editor.effect->setParameter(0, 0.4999F);
    openField(0);
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(0), 0.4999F);
    EXPECT_EQ(editor.touches(0), "");
}

TEST_P(TypedValue, IsNotSetAgainWhenNobodyTypesTheNextTime) {
    typeInto(0, "150");
    editor.key(XK_Return);
    editor.effect->setParameter(0, 0.4999F);
    openField(0);
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(0), 0.4999F);
    EXPECT_EQ(editor.touches(0), "bae");
}

TEST_P(TypedValue, BeyondTheRangeIsItsEnd) {
    typeInto(0, "1000");
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(0), 1.0F);
}

TEST_P(TypedValue, TakesTheUnitAsItStands) {
    openField(0);
    editor.key(XK_Home);
    editor.type("2"); // before "100%"
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(0), valueOf(0, "400%"));
}

TEST_P(TypedValue, NeedsADoubleClick) {
    const Pixels before = readOut(0);
    editor.click(readOutX, sliderPlaces[0].y);
    EXPECT_EQ(readOut(0), before);
    editor.key('1');
    EXPECT_EQ(host.heard(), "+1 -1");
}

TEST_P(TypedValue, HasTheKeysUntilItIsSetOrDropped) {
    for (const int end : {XK_Return, XK_Escape}) {
        typeInto(0, "75");
        editor.key(XK_space);
        EXPECT_FALSE(host.hasFocus());
        editor.key(static_cast<unsigned long>(end));
        EXPECT_EQ(host.heard(), "");
        EXPECT_TRUE(host.hasFocus());
        editor.key(XK_space);
        EXPECT_EQ(host.heard(), "+space -space");
    }
}

TEST_P(TypedValue, LeavesNoRingBehind) {
    const Pixels before = editor.pixels();
    typeInto(0, "75");
    editor.key(XK_Escape);
    editor.moveTo(beside.x, beside.y);
    EXPECT_EQ(editor.pixels(), before);
}

TEST_P(TypedValue, IsNotDisturbedByAutomation) {
    typeInto(0, "15");
    editor.effect->setParameter(0, 0.25F);
    editor.run();
    editor.type("0");
    editor.key(XK_Return);
    EXPECT_EQ(editor.parameter(0), valueOf(0, "150"));
    EXPECT_EQ(editor.touches(0), "bae");
}

TEST_P(TypedValue, LeavesAutomationAloneWhenDropped) {
    typeInto(0, "150");
    editor.effect->setParameter(0, 0.25F);
    editor.run();
    editor.key(XK_Escape);
    EXPECT_EQ(editor.parameter(0), 0.25F);
    const Pixels automated = readOut(0);
    editor.close();
    editor.open();
    EXPECT_EQ(readOut(0), automated);
}

TEST_P(TypedValue, IsDroppedWhenAnotherWindowTakesTheKeys) {
    typeInto(0, "150");
    const Pixels typed = editor.window->pixels();
    host.takeFocus();
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() != typed; }));
    EXPECT_EQ(editor.parameter(0), 0.5F);
    EXPECT_TRUE(editor.host.calls().empty());
    editor.key(XK_space);
    EXPECT_EQ(host.heard(), "+space -space");
}

TEST_P(TypedValue, IsDroppedWhenTheEditorCloses) {
    typeInto(0, "150");
    editor.close();
    EXPECT_TRUE(editor.window->becomesEmpty());
    EXPECT_EQ(editor.parameter(0), 0.5F);
    EXPECT_TRUE(editor.host.calls().empty());
    EXPECT_EQ(editor.open(), 1);
}

TEST_P(TypedValue, MayCloseTheEditorThroughItsHost) {
    editor.host.answer(audioMasterAutomate, [&](const hosting::HostCall&) -> VstIntPtr {
        editor.close();
        return 0;
    });
    typeInto(0, "150");
    editor.key(XK_Return);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->children().empty(); }));
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 1U);
    editor.host.answer(audioMasterAutomate, 0);
    EXPECT_EQ(editor.open(), 1);
}

TEST(TypedValueScales, IsSetAtEveryScale) {
    VirtualDisplay::start();
    for (const char* scale : {"1", "1.25", "1.5", "2", "3"}) {
        setenv("MIRELON_SCALE", scale, 1);
        EditorHost editor;
        editor.open();
        unsetenv("MIRELON_SCALE");
        editor.doubleClick(readOutX, sliderPlaces[4].y);
        editor.type("l20");
        editor.key(XK_Return);
        EXPECT_EQ(editor.parameter(4), mirelon::parameterValueOf(4, "l20")) << scale;
    }
}

} // namespace
