// What the window lights up and what it dims.
#include "hosting/effectbank.h"
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/support/windowdamage.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <vector>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

struct Area {
    int left, top, right, bottom;
};
constexpr std::uint32_t hoverColour = 0x1F8796;

class Highlights : public testing::Test {
  protected:
    Highlights() {
        unsetenv("MIRELON_SCALE");
        editor.open();
        editor.moveTo(nowhere.x, nowhere.y);
    }
    Pixels shown(const Area& area) {
        return editor.pixels().part(area.left, area.top, area.right, area.bottom);
    }
    bool comesToShow(const Area& area, const Pixels& wanted) {
        return editor.runUntil([&] { return shown(area) == wanted; });
    }
    bool changes(const Area& area, const Pixels& from) {
        return editor.runUntil([&] { return shown(area) != from; });
    }
    static int count(const Pixels& picture, std::uint32_t colour) {
        return static_cast<int>(std::ranges::count(picture.rgb, colour));
    }

    EditorHost editor;
};

// --- The letters of the compare memories ---

constexpr Area areaOfA{267, 312, 278, 326};
constexpr Area areaOfB{267, 327, 278, 341};

TEST_F(Highlights, ALetterLightsWhileThePresetIsAsItsMemory) {
    const Pixels darkA = shown(areaOfA);
    const Pixels darkB = shown(areaOfB);
    editor.click(storeA.x, storeA.y);
    EXPECT_TRUE(changes(areaOfA, darkA));
    EXPECT_EQ(shown(areaOfB), darkB);
    const Pixels litA = shown(areaOfA);

    editor.effect->setParameter(1, 0.75F);
    EXPECT_TRUE(comesToShow(areaOfA, darkA));
    editor.click(storeB.x, storeB.y);
    EXPECT_TRUE(changes(areaOfB, darkB));
    EXPECT_EQ(shown(areaOfA), darkA);

    editor.click(recallA.x, recallA.y);
    EXPECT_TRUE(comesToShow(areaOfA, litA));
    EXPECT_TRUE(comesToShow(areaOfB, darkB));
}

TEST_F(Highlights, BothLettersLightWhenBothMemoriesAreTheSame) {
    const Pixels darkA = shown(areaOfA);
    const Pixels darkB = shown(areaOfB);
    editor.click(storeA.x, storeA.y);
    editor.click(storeB.x, storeB.y);
    EXPECT_TRUE(changes(areaOfA, darkA));
    EXPECT_TRUE(changes(areaOfB, darkB));
}

TEST_F(Highlights, ALetterGoesDarkForAnotherNameAndAnotherPreset) {
    const Pixels dark = shown(areaOfA);
    editor.click(storeA.x, storeA.y);
    ASSERT_TRUE(changes(areaOfA, dark));
    const Pixels lit = shown(areaOfA);
    editor.click(rockerRight.x, rockerRight.y);
    EXPECT_TRUE(comesToShow(areaOfA, dark));
    editor.click(rockerLeft.x, rockerLeft.y);
    EXPECT_TRUE(comesToShow(areaOfA, lit));
    std::string name("renamed");
    editor.effect->dispatch(effSetProgramName, 0, 0, name.data());
    EXPECT_TRUE(comesToShow(areaOfA, dark));
}

TEST_F(Highlights, ALetterGoesDarkForABankWithoutACurrentPreset) {
    const Pixels dark = shown(areaOfA);
    editor.click(storeA.x, storeA.y);
    ASSERT_TRUE(changes(areaOfA, dark));
    auto bank = mirelon::hosting::bankOf(*editor.effect);
    ASSERT_TRUE(bank);
    bank->presets[0].setValue(1, 0.75F);
    std::vector<std::byte> chunk = bank->chunk(editor.effect->record().uniqueID);
    chunk[12] = std::byte{11};
    editor.effect->setChunk(chunk);
    EXPECT_TRUE(comesToShow(areaOfA, dark));
}

TEST_F(Highlights, ALetterIsLitWhenTheWindowOpens) {
    const Pixels dark = shown(areaOfA);
    editor.click(storeA.x, storeA.y);
    editor.moveTo(nowhere.x, nowhere.y);
    ASSERT_TRUE(changes(areaOfA, dark));
    const Pixels lit = shown(areaOfA);
    editor.close();
    editor.open();
    EXPECT_TRUE(comesToShow(areaOfA, lit));
}

TEST_F(Highlights, ALetterLightsWhenAnotherInstanceStores) {
    mirelon::hosting::RecordingHost host;
    mirelon::hosting::Effect other(EditorHost::module(), host);
    const Pixels dark = shown(areaOfA);
    XWindow place(editorWidth, editorHeight); // in front of the other
    other.dispatch(effEditOpen, 0, 0, place.asParent());
    const auto letterThere = [&] {
        return place.pixels().part(areaOfA.left, areaOfA.top, areaOfA.right, areaOfA.bottom);
    };
    ASSERT_TRUE(editor.runUntil([&] { return letterThere() == dark; }));
    place.moveTo(storeA.x, storeA.y);
    place.press();
    place.release();
    ASSERT_TRUE(editor.runUntil([&] { return letterThere() != dark; }));
    other.dispatch(effEditClose);
    place.destroy();
    EXPECT_TRUE(changes(areaOfA, dark));
}

TEST_F(Highlights, ALetterIsAllThatIsDrawnWhenItLights) {
    constexpr Area titleText{titleTextLeft, 0, titleTextRight, titleHeight};
    const Pixels silent = shown(titleText);
    editor.click(storeA.x, storeA.y);
    editor.moveTo(nowhere.x, nowhere.y);
    ASSERT_TRUE(changes(titleText, silent));
    ASSERT_TRUE(comesToShow(titleText, silent)); // the message is over
    std::string name("renamed");
    WindowDamage drawn(*editor.window);
    editor.effect->dispatch(effSetProgramName, 0, 0, name.data());
    ASSERT_TRUE(editor.runUntilStill(drawn));
    EXPECT_GE(drawn.top(), areaOfA.top);
    EXPECT_LE(drawn.pixels(), 3 * 110 * 14);
}

// --- Without processing ---

constexpr std::array<Area, 6> idleAreas{{{2, 55, 42, 72},
                                         {145, 84, 157, 103},
                                         {258, 150, 322, 167},
                                         {2, 212, 42, 229},
                                         {122, 247, 152, 267},
                                         {190, 247, 240, 267}}};
constexpr std::array<Area, 4> busyAreas{
    {{2, 25, 42, 42}, {60, 25, 242, 39}, {258, 120, 298, 137}, {91, 320, 201, 334}}};

TEST_F(Highlights, WhatDoesNothingWithoutProcessingIsDimmedMeanwhile) {
    std::vector<Pixels> idle;
    std::vector<Pixels> busy;
    for (const Area& area : idleAreas)
        idle.push_back(shown(area));
    for (const Area& area : busyAreas)
        busy.push_back(shown(area));
    editor.effect->setParameter(5, 0.0F);
    for (std::size_t i = 0; i < idle.size(); ++i)
        EXPECT_TRUE(changes(idleAreas[i], idle[i])) << i;
    for (std::size_t i = 0; i < busy.size(); ++i)
        EXPECT_EQ(shown(busyAreas[i]), busy[i]) << i;
    editor.effect->setParameter(5, 1.0F);
    for (std::size_t i = 0; i < idle.size(); ++i)
        EXPECT_TRUE(comesToShow(idleAreas[i], idle[i])) << i;
}

TEST_F(Highlights, WhatIsDimmedIsSoWhenTheWindowOpensAndAnswersAllTheSame) {
    const Pixels before = editor.pixels();
    editor.effect->setParameter(5, 0.0F);
    ASSERT_TRUE(editor.runUntilStill(before));
    const Pixels dimmed = editor.pixels();
    editor.close();
    editor.open();
    EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() == dimmed; }));
    editor.click(137, 257);
    EXPECT_EQ(editor.parameter(7), 1.0F);
}

// --- Under the pointer ---

struct Hovered {
    Position at;
    Area area;
};
constexpr std::array<Hovered, 5> hoveredControls{{
    {{200, 62}, {63, 51, 239, 74}},
    {{93, 257}, {68, 247, 118, 267}},
    {{215, 257}, {190, 247, 240, 267}},
    {menuButton, {207, 319, 217, 333}},
    {aboutStrip, {70, 282, 225, 302}},
}};

TEST_F(Highlights, ControlsAreFramedWhileThePointerIsOnThem) {
    for (const Hovered& control : hoveredControls) {
        const Pixels before = shown(control.area);
        editor.moveTo(control.at.x, control.at.y);
        EXPECT_TRUE(editor.runUntil([&] {
            return count(shown(control.area), hoverColour) > count(before, hoverColour) + 10;
        })) << control.at.x
            << ", " << control.at.y;
        editor.moveTo(nowhere.x, nowhere.y);
        EXPECT_TRUE(comesToShow(control.area, before)) << control.at.x << ", " << control.at.y;
    }
}

// What is typed into has no frame; the explanation tells when it would have come.
TEST_F(Highlights, TheFieldsAreNotFramedUnderThePointer) {
    constexpr Area titleText{titleTextLeft, 0, titleTextRight, titleHeight};
    constexpr Position readOut{290, 62};
    const Pixels silent = shown(titleText);
    for (const Position& field : {nameField, readOut}) {
        const Area around{field.x - 30, field.y - 12, field.x + 30, field.y + 12};
        const Pixels before = shown(around);
        editor.moveTo(field.x, field.y);
        EXPECT_TRUE(changes(titleText, silent)) << field.x << ", " << field.y;
        EXPECT_EQ(shown(around), before) << field.x << ", " << field.y;
        editor.moveTo(nowhere.x, nowhere.y);
        EXPECT_TRUE(comesToShow(titleText, silent)) << field.x << ", " << field.y;
    }
}

TEST_F(Highlights, AFrameIsDrawnAnewWithItsControlAlone) {
    const Pixels atRest = editor.pixels();
    for (const Hovered& control : hoveredControls) {
        editor.moveTo(nowhere.x, nowhere.y);
        ASSERT_TRUE(editor.runUntil([&] { return editor.pixels() == atRest; }));
        WindowDamage drawn(*editor.window);
        editor.window->moveTo(control.at.x, control.at.y);
        ASSERT_TRUE(editor.runUntilStill(drawn));
        EXPECT_GE(drawn.top(), control.area.top) << control.at.x;
        EXPECT_LE(drawn.bottom(), control.area.bottom) << control.at.x;
    }
}

TEST_F(Highlights, AFrameStaysRoundAHandleThatMoves) {
    editor.moveTo(200, 62);
    ASSERT_TRUE(editor.runUntil([&] {
        return count(shown({140, 52, 165, 73}), hoverColour) > 30;
    }));
    editor.effect->setParameter(0, 0.9F);
    const int left = handlePosition(0.9) - 6;
    EXPECT_TRUE(editor.runUntil([&] {
        return count(shown({left, 52, left + 13, 73}), hoverColour) > 30;
    }));
    EXPECT_LT(count(shown({140, 52, 165, 73}), hoverColour), 5);
}

} // namespace
