// What the bar meter shows of its two pictures.
#include "editor/cvumeter1.h"
#include "platform/toolkitconnection.h"
#include "tests/editor/offscreendrawing.h"

#include <gtest/gtest.h>
#include <string>

using namespace VSTGUI;

namespace {

constexpr int length = 8;
constexpr CColor litColour(0, 255, 0);
constexpr CColor unlitColour(255, 0, 0);

// A picture of one colour whose first and last pixel along its length are
// darker, so that it shows when it is drawn from the wrong place.
SharedPointer<CBitmap> bar(CColor colour, int width, int height) {
    auto bitmap = makeOwned<CBitmap>(width, height);
    const auto pixels = owned(CBitmapPixelAccess::create(bitmap));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            pixels->setPosition(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
            const bool end = x + y == 0 || x + y == length - 1;
            pixels->setColor(end ? CColor(colour.red / 2, colour.green / 2, 0) : colour);
        }
    return bitmap;
}

// One pixel broad, eight pixels and four segments long.
class Meter {
  public:
    explicit Meter(int32_t style, bool withUnlit = true) {
        mirelon::setUpToolkit();
        const bool horizontal = style == CVuMeter::kHorizontal;
        const int width = horizontal ? length : 1;
        const int height = horizontal ? 1 : length;
        const auto unlit = withUnlit ? bar(unlitColour, width, height) : SharedPointer<CBitmap>();
        view = makeOwned<CVuMeter1>(CRect(0, 0, width, height), bar(litColour, width, height),
                                    unlit, 4, style);
        view->setDecreaseStepValue(1.0F);
    }
    CVuMeter1* operator->() const { return view; }

    // What it draws at a value, along its length: G and R for the lit and the
    // unlit picture, g and r for their ends, a blank for nothing.
    std::string at(float value) const {
        view->setValue(value);
        std::string letters;
        for (const CColor& colour : mirelon::test::drawn(*view))
            letters += letter(colour);
        return letters;
    }

  private:
    static char letter(const CColor& colour) {
        if (colour.alpha == 0)
            return ' ';
        if (colour.green > 0)
            return colour.green > 200 ? 'G' : 'g';
        return colour.red > 200 ? 'R' : 'r';
    }
    SharedPointer<CVuMeter1> view;
};

TEST(MeterPicture, IsLitUpToTheNearestSegment) {
    const Meter meter(CVuMeter::kHorizontal);
    EXPECT_EQ(meter.at(0.0F), "rRRRRRRr");
    EXPECT_EQ(meter.at(0.124F), "rRRRRRRr");
    EXPECT_EQ(meter.at(0.126F), "gGRRRRRr");
    EXPECT_EQ(meter.at(0.5F), "gGGGRRRr");
    EXPECT_EQ(meter.at(1.0F), "gGGGGGGg");
    EXPECT_FALSE(meter->isDirty());
}

TEST(MeterPicture, OfAVerticalMeterIsLitFromBelow) {
    const Meter meter(CVuMeter::kVertical);
    EXPECT_EQ(meter.at(0.0F), "rRRRRRRr");
    EXPECT_EQ(meter.at(0.25F), "rRRRRRGg");
    EXPECT_EQ(meter.at(1.0F), "gGGGGGGg");
}

TEST(MeterPicture, ShowsItsLimitBeyondIt) {
    for (const int32_t style : {CVuMeter::kHorizontal, CVuMeter::kVertical}) {
        const Meter meter(style);
        EXPECT_EQ(meter.at(1.5F), meter.at(1.0F));
        EXPECT_EQ(meter.at(-0.5F), meter.at(0.0F));
        meter.at(1.5F);
        EXPECT_EQ(meter->getValue(), 1.0F);
    }
}

TEST(MeterPicture, FallsByTheDecreaseStepADrawing) {
    const Meter meter(CVuMeter::kHorizontal);
    meter->setDecreaseStepValue(0.25F);
    EXPECT_EQ(meter.at(1.0F), "gGGGGGGg");
    EXPECT_EQ(meter.at(0.25F), "gGGGGGRr");
    EXPECT_EQ(meter.at(0.25F), "gGGGRRRr");
    EXPECT_EQ(meter.at(0.25F), "gGRRRRRr");
    EXPECT_EQ(meter.at(0.25F), "gGRRRRRr");
}

TEST(MeterPicture, WithoutAnUnlitPictureLeavesTheRestFree) {
    EXPECT_EQ(Meter(CVuMeter::kHorizontal, false).at(0.5F), "gGGG    ");
}

TEST(MeterPicture, WithoutALitPictureDrawsNothing) {
    const Meter meter(CVuMeter::kHorizontal);
    meter->setOnBitmap(nullptr);
    EXPECT_EQ(meter.at(0.5F), "        ");
}

} // namespace
