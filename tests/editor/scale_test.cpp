// The window on a display whose user wants things larger.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

class Scale : public testing::Test {
  protected:
    Scale() {
        VirtualDisplay::start();
        unsetenv("MIRELON_SCALE");
        setScreenResources("");
    }
    ~Scale() override {
        unsetenv("MIRELON_SCALE");
        setScreenResources("");
    }
    static std::pair<int, int> size(EditorHost& editor) {
        const ERect rect = editor.rect();
        return {rect.right - rect.left, rect.bottom - rect.top};
    }
};

TEST_F(Scale, IsOneWithoutAWish) {
    EditorHost editor;
    EXPECT_EQ(size(editor), (std::pair{324, 348}));
}

TEST_F(Scale, FollowsTheDesktopsResolution) {
    setScreenResources("Xcursor.size:\t48\nXft.dpi:\t192\nXft.antialias:\t1\n");
    EditorHost editor;
    EXPECT_EQ(size(editor), (std::pair{648, 696}));
    setScreenResources("Xft.dpi: 144");
    EXPECT_EQ(size(editor), (std::pair{486, 522}));
}

TEST_F(Scale, TheEnvironmentOverrulesTheDesktop) {
    setScreenResources("Xft.dpi:\t192\n");
    setenv("MIRELON_SCALE", "3", 1);
    EditorHost editor;
    EXPECT_EQ(size(editor), (std::pair{972, 1044}));
}

TEST_F(Scale, StaysBetweenOneAndThreeAndIgnoresNonsense) {
    EditorHost editor;
    setenv("MIRELON_SCALE", "0.2", 1);
    EXPECT_EQ(size(editor).first, 324);
    setenv("MIRELON_SCALE", "17", 1);
    EXPECT_EQ(size(editor).first, 972);
    for (const char* nonsense : {"", "large", "-2", "nan", "inf", "1e999"}) {
        setenv("MIRELON_SCALE", nonsense, 1);
        EXPECT_EQ(size(editor).first, 324) << nonsense;
    }
}

TEST_F(Scale, IsFixedWhileTheWindowIsOpen) {
    EditorHost editor;
    editor.open();
    setenv("MIRELON_SCALE", "2", 1);
    EXPECT_EQ(size(editor).first, 324);
    editor.close();
    EXPECT_EQ(size(editor).first, 648);
    editor.window->resize(648, 696);
    editor.open();
    EXPECT_NE(editor.pixels().at(640, 690), 0x808080U);
    EXPECT_EQ(editor.host.count(audioMasterSizeWindow), 0U);
}

TEST_F(Scale, AnOpeningThatFailedLeavesNothingForTheNext) {
    setenv("MIRELON_SCALE", "2", 1);
    EditorHost editor;
    editor.open();
    editor.moveTo(150, 305);
    const Pixels expected = editor.pixels();
    editor.close();

    setenv("MIRELON_SCALE", "1", 1);
    const auto gone = std::make_unique<XWindow>(324, 348);
    void* const parent = gone->asParent();
    gone->destroy();
    EXPECT_EQ(editor.effect->dispatch(effEditOpen, 0, 0, parent), 0);

    setenv("MIRELON_SCALE", "2", 1);
    EXPECT_EQ(editor.open(), 1);
    EXPECT_EQ(editor.pixels(), expected);
}

class EveryScale : public Scale, public testing::WithParamInterface<const char*> {
  protected:
    EveryScale() {
        setenv("MIRELON_SCALE", GetParam(), 1);
        editor = std::make_unique<EditorHost>();
        editor->open();
    }
    std::unique_ptr<EditorHost> editor;
};
INSTANTIATE_TEST_SUITE_P(Steps, EveryScale,
                         testing::Values("1", "1.25", "1.5", "1.75", "2", "2.5", "3"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

TEST_P(EveryScale, ControlsAreWhereTheyAreSeen) {
    editor->drag(150, 62, 191, 62);
    EXPECT_NEAR(editor->parameter(0), 0.75F, 0.005F);
    editor->click(93, 257);
    EXPECT_EQ(editor->parameter(5), 0.0F);
    editor->click(243, 326);
    EXPECT_EQ(editor->effect->programName(), "extended width");
    editor->moveTo(150, 305);
    editor->click(146, 327);
    editor->type("typed");
    editor->click(14, 290);
    EXPECT_EQ(editor->effect->programName(), "typed");
}

TEST_P(EveryScale, MeterAndBackgroundFillTheSameShareOfTheWindow) {
    const Pixels picture = editor->pixels();
    // A colour of the lit half and one of the unlit half, far from the edges.
    const auto at = [&](double x, double y) {
        return picture.at(static_cast<int>(x * editor->scale), static_cast<int>(y * editor->scale));
    };
    EXPECT_EQ(at(5, 50), at(45, 235));
    EXPECT_NE(at(5, 50), at(5, 320));
    EXPECT_EQ(picture.width, static_cast<int>(324 * editor->scale));
    EXPECT_EQ(picture.height, static_cast<int>(348 * editor->scale));
}

TEST_P(EveryScale, AboutAndMenuOpenAndClose) {
    editor->moveTo(150, 305);
    const Pixels closed = editor->pixels();
    const auto comesToShow = [&](bool asClosed) {
        return editor->runUntil([&] { return (editor->pixels() == closed) == asClosed; });
    };
    editor->click(aboutStrip.x, aboutStrip.y);
    EXPECT_TRUE(comesToShow(false));
    editor->click(150, 150);
    editor->moveTo(150, 305);
    EXPECT_TRUE(comesToShow(true));
    editor->click(212, 326);
    EXPECT_TRUE(editor->runUntilStill(closed)); // then the menu takes clicks
    editor->click(20, 280);
    editor->moveTo(150, 305);
    EXPECT_TRUE(comesToShow(true));
}

} // namespace
