// The window's pictures as bitmaps of the toolkit, without a display.
#include "presetsystem/bitmaps.h"

#include "platform/toolkitconnection.h"
#include "resources/resources.h"

#include <cmath>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

TEST(NearestPictureScale, IsTheLargerOfTwoThatAreEquallyNear) {
    EXPECT_EQ(nearestPictureScale(1.12), 1.0);
    EXPECT_EQ(nearestPictureScale(1.125), 1.25);
    EXPECT_EQ(nearestPictureScale(2.24), 2.0);
    EXPECT_EQ(nearestPictureScale(2.75), 3.0);
    EXPECT_EQ(nearestPictureScale(100.0), 3.0);
    EXPECT_EQ(nearestPictureScale(0.01), 1.0);
}

TEST(NearestPictureScale, IsOneForWhatIsNoPositiveNumber) {
    EXPECT_EQ(nearestPictureScale(0.0), 1.0);
    EXPECT_EQ(nearestPictureScale(-3.0), 1.0);
    EXPECT_EQ(nearestPictureScale(std::nan("")), 1.0);
}

TEST(Picture, HasItsSizeAtScaleOne) {
    setUpToolkit();
    const auto background = loadBitmap(kPictureBackground);
    const PictureSize size = pictureSize(kPictureBackground);
    EXPECT_EQ(background->getWidth(), size.width);
    EXPECT_EQ(background->getHeight(), size.height);
}

TEST(Picture, OfAnUnknownNumberHasNoSizeAndDrawsNothing) {
    setUpToolkit();
    for (const int number : {-1, 0, 1, 127, 100000}) {
        const auto unknown = loadBitmap(number);
        EXPECT_EQ(unknown->getWidth(), 0) << number;
        EXPECT_EQ(unknown->getHeight(), 0) << number;
        const auto context = VSTGUI::COffscreenContext::create({2, 2});
        context->beginDraw();
        unknown->draw(context, {0, 0, 2, 2}, {0, 0}, 1.0F);
        context->endDraw();
        const auto pixels = owned(VSTGUI::CBitmapPixelAccess::create(context->getBitmap()));
        VSTGUI::CColor colour;
        pixels->getColor(colour);
        EXPECT_EQ(colour.alpha, 0) << number;
    }
}

} // namespace
} // namespace mirelon::test
