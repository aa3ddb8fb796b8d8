// Which picture of its strip each button class shows.
#include "editor/cpskickbutton.h"
#include "editor/cpsonoffbutton.h"
#include "editor/cpsrockerswitch.h"
#include "editor/csaveloadbutton.h"
#include "platform/toolkitconnection.h"
#include "tests/editor/offscreendrawing.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

using namespace VSTGUI;
using mirelon::test::drawn;

namespace {

constexpr int width = 8;
constexpr int height = 6;
const CRect area(0, 0, width, height);

// Up to five pictures below one another, each with one colour, below `above`
// rows and right of `before` columns that are no picture's.
constexpr std::array<CColor, 5> colours{CColor(255, 0, 0), CColor(0, 255, 0), CColor(0, 0, 255),
                                        CColor(255, 255, 0), CColor(0, 255, 255)};
SharedPointer<CBitmap> strip(int pictures, int before = 0, int above = 0) {
    mirelon::setUpToolkit();
    auto bitmap = makeOwned<CBitmap>(width + before, pictures * height + above);
    const auto pixels = owned(CBitmapPixelAccess::create(bitmap));
    for (int y = 0; y < pictures * height + above; ++y)
        for (int x = 0; x < width + before; ++x) {
            pixels->setPosition(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
            const bool outside = x < before || y < above;
            pixels->setColor(outside ? CColor(9, 9, 9)
                                     : colours[static_cast<std::size_t>((y - above) / height)]);
        }
    return bitmap;
}

// The picture that a control shows all over its area.
std::optional<std::size_t> shown(CControl& control) {
    control.setDirty(true);
    const std::vector<CColor> all = drawn(control);
    EXPECT_FALSE(control.isDirty());
    const auto picture = std::ranges::find(colours, all.front());
    const bool alike = std::ranges::count(all, all.front()) == width * height;
    if (picture == colours.end() || !alike)
        return std::nullopt;
    return static_cast<std::size_t>(picture - colours.begin());
}

// What the control shows while the listener is told.
struct Watcher : IControlListener {
    void valueChanged(CControl* control) override { seen = shown(*control); }
    std::optional<std::size_t> seen;
};

void enter(CControl& control, CPoint where = CPoint(1, 1)) {
    control.onMouseEntered(where, 0);
}
void leave(CControl& control, CPoint where = CPoint(1, 1)) {
    control.onMouseExited(where, 0);
}
void press(CControl& control, CPoint where = CPoint(1, 1)) {
    control.onMouseDown(where, kLButton);
}
void release(CControl& control, CPoint where = CPoint(1, 1)) {
    control.onMouseUp(where, kLButton);
}

TEST(ButtonPictures, AKickButtonShowsRestHoverAndPress) {
    const auto pictures = strip(3);
    const auto button =
        makeOwned<CPSKickButton>(area, nullptr, 7, height, pictures, CPoint(0, 0), false);
    EXPECT_EQ(shown(*button), 0U);
    enter(*button);
    EXPECT_EQ(shown(*button), 1U);
    press(*button);
    EXPECT_EQ(shown(*button), 2U);
    leave(*button);
    EXPECT_EQ(shown(*button), 2U);
    release(*button);
    EXPECT_EQ(shown(*button), 0U);
}

TEST(ButtonPictures, AnOnOffButtonShowsHoverWhileItIsOffOnly) {
    const auto pictures = strip(3);
    const auto button = makeOwned<CPSOnOffButton>(area, nullptr, 7, pictures);
    EXPECT_EQ(shown(*button), 0U);
    enter(*button);
    EXPECT_EQ(shown(*button), 1U);
    press(*button);
    EXPECT_EQ(shown(*button), 2U);
    leave(*button);
    EXPECT_EQ(shown(*button), 2U);
    press(*button);
    EXPECT_EQ(shown(*button), 0U);
}

TEST(ButtonPictures, AnOnOffButtonInBetweenShowsRestEvenHovered) {
    const auto pictures = strip(3);
    const auto button = makeOwned<CPSOnOffButton>(area, nullptr, 7, pictures);
    button->setValue(0.5F);
    EXPECT_EQ(shown(*button), 0U);
    enter(*button);
    EXPECT_EQ(shown(*button), 0U);
}

TEST(ButtonPictures, ARockerShowsTheSideOfItsHoverAndOfItsPress) {
    const auto pictures = strip(5);
    const auto rocker = makeOwned<CPSRockerSwitch>(area, nullptr, 7, height, pictures, CPoint(0, 0),
                                                   CRockerSwitch::kHorizontal);
    constexpr int middle = width / 2;
    EXPECT_EQ(shown(*rocker), 0U);
    enter(*rocker, CPoint(middle - 1, 1));
    EXPECT_EQ(shown(*rocker), 1U);
    enter(*rocker, CPoint(middle, 1));
    EXPECT_EQ(shown(*rocker), 2U);
    press(*rocker, CPoint(middle - 1, 1));
    EXPECT_EQ(shown(*rocker), 3U);
    press(*rocker, CPoint(middle, 1));
    EXPECT_EQ(shown(*rocker), 4U);
    release(*rocker);
    EXPECT_EQ(shown(*rocker), 2U);
    leave(*rocker);
    EXPECT_EQ(shown(*rocker), 0U);
}

TEST(ButtonPictures, ASaveLoadButtonShowsItsPressWhileItIsReported) {
    const auto pictures = strip(3);
    Watcher watcher;
    const auto button =
        makeOwned<CSaveLoadButton>(area, &watcher, 7, height, pictures, CPoint(0, 0));
    EXPECT_EQ(shown(*button), 0U);
    enter(*button);
    EXPECT_EQ(shown(*button), 1U);
    press(*button);
    EXPECT_EQ(watcher.seen, 2U);
    EXPECT_EQ(shown(*button), 1U);
    leave(*button);
    EXPECT_EQ(shown(*button), 0U);
}

TEST(ButtonPictures, MayStandAnywhereInAPictureOfManyThings) {
    const auto pictures = strip(3, 5, 4);
    const CPoint offset(5, 4);
    const auto kick = makeOwned<CPSKickButton>(area, nullptr, 7, height, pictures, offset, false);
    const auto saveLoad = makeOwned<CSaveLoadButton>(area, nullptr, 7, height, pictures, offset);
    for (CControl* button : std::array<CControl*, 2>{kick, saveLoad}) {
        EXPECT_EQ(shown(*button), 0U);
        enter(*button);
        EXPECT_EQ(shown(*button), 1U);
    }
}

TEST(ButtonPictures, WithoutOneNothingIsDrawn) {
    mirelon::setUpToolkit();
    const auto kick =
        makeOwned<CPSKickButton>(area, nullptr, 7, height, nullptr, CPoint(0, 0), false);
    const auto onOff = makeOwned<CPSOnOffButton>(area, nullptr, 7, nullptr);
    const auto rocker = makeOwned<CPSRockerSwitch>(area, nullptr, 7, height, nullptr, CPoint(0, 0),
                                                   CRockerSwitch::kHorizontal);
    const auto saveLoad =
        makeOwned<CSaveLoadButton>(area, nullptr, 7, height, nullptr, CPoint(0, 0));
    for (CControl* button : std::array<CControl*, 4>{kick, onOff, rocker, saveLoad}) {
        for (const CColor& colour : drawn(*button))
            EXPECT_EQ(colour.alpha, 0);
    }
}

} // namespace
