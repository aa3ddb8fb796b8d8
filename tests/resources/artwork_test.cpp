#include "resources/resources.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

namespace mirelon {
namespace {

/// A decoded picture; pixels are asked for in whole pixels of the rendering.
class Pixels {
  public:
    Pixels(int number, std::size_t scaleIndex)
        : unread(embeddedPicture(number, scaleIndex))
        , surface(cairo_image_surface_create_from_png_stream(read, &unread),
                  cairo_surface_destroy) {}

    [[nodiscard]] bool valid() const {
        return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
    }
    [[nodiscard]] int width() const { return cairo_image_surface_get_width(surface.get()); }
    [[nodiscard]] int height() const { return cairo_image_surface_get_height(surface.get()); }

    /// Red, green and blue as 0xRRGGBB.
    [[nodiscard]] unsigned colour(int x, int y) const {
        const auto* row = cairo_image_surface_get_data(surface.get()) +
                          y * cairo_image_surface_get_stride(surface.get());
        unsigned pixel = 0;
        std::memcpy(&pixel, row + x * 4, sizeof pixel);
        return pixel & 0xFFFFFFU;
    }

    /// Mean brightness of the rows from top to bottom, 0 to 1, without colour.
    [[nodiscard]] double brightness(int top, int bottom) const {
        double sum = 0.0;
        for (int y = top; y < bottom; ++y) {
            for (int x = 0; x < width(); ++x) {
                const auto pixel = colour(x, y);
                sum += 0.299 * (pixel >> 16U & 0xFFU) + 0.587 * (pixel >> 8U & 0xFFU) +
                       0.114 * (pixel & 0xFFU);
            }
        }
        return sum / (255.0 * width() * (bottom - top));
    }

  private:
    static cairo_status_t read(void* closure, unsigned char* out, unsigned length) {
        auto& left = *static_cast<PictureData*>(closure);
        if (length > left.size)
            return CAIRO_STATUS_READ_ERROR;
        std::copy_n(left.data, length, out);
        left.data += length;
        left.size -= length;
        return CAIRO_STATUS_SUCCESS;
    }

    PictureData unread;
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface;
};

class AtEveryScale : public testing::TestWithParam<std::size_t> {
  protected:
    [[nodiscard]] static int scaled(int pixels) {
        return static_cast<int>(
            std::lround(static_cast<float>(pixels) * pictureScales[GetParam()]));
    }
};

// Captions and read-outs fetch their backing from rows up to 7 below the ones
// they cover: any drawing in their columns would show there a second time.
TEST_P(AtEveryScale, TheBackgroundIsAlikeInEveryRowBehindCaptionsAndReadOuts) {
    const Pixels background{kPictureBackground, GetParam()};
    ASSERT_TRUE(background.valid());
    struct Columns {
        int left;
        int right;
    };
    for (const auto [left, right] : {Columns{2, 42}, Columns{258, 322}}) {
        for (int x = scaled(left); x < scaled(right); ++x) {
            for (int y = scaled(25); y < scaled(236); ++y)
                ASSERT_EQ(background.colour(x, y), background.colour(x, scaled(25)))
                    << "at " << x << ", " << y;
        }
    }
}

TEST_P(AtEveryScale, ASwitchIsDarkerWhenPressed) {
    for (const int number : {kPictureProcess, kPicturePhase, kPictureInvertL, kPictureInvertR}) {
        const Pixels picture{number, GetParam()};
        ASSERT_TRUE(picture.valid());
        const int half = picture.height() / 2;
        EXPECT_GT(picture.brightness(0, half) - picture.brightness(half, 2 * half), 0.3)
            << "switch " << number;
    }
}

TEST_P(AtEveryScale, APanelButtonIsDarkerWhenPressed) {
    for (const int number : {kPictureSquareButton, kPictureDefaultBank, kPictureDefaultPreset}) {
        const Pixels picture{number, GetParam()};
        ASSERT_TRUE(picture.valid());
        const int third = picture.height() / 3;
        EXPECT_GT(picture.brightness(0, third) - picture.brightness(2 * third, 3 * third), 0.3)
            << "button " << number;
    }
}

TEST_P(AtEveryScale, TheMeterIsBrighterWhereItIsLit) {
    const Pixels lit{kPictureMeterLit, GetParam()};
    const Pixels unlit{kPictureMeterUnlit, GetParam()};
    ASSERT_TRUE(lit.valid() && unlit.valid());
    EXPECT_GT(lit.brightness(0, lit.height()) - unlit.brightness(0, unlit.height()), 0.25);
}

TEST_P(AtEveryScale, TheMeterIsMarkedInTheMiddle) {
    for (const int number : {kPictureMeterLit, kPictureMeterUnlit}) {
        const Pixels meter{number, GetParam()};
        ASSERT_TRUE(meter.valid());
        const int middle = meter.width() / 2;
        const auto mark = meter.colour(middle, 0);
        EXPECT_EQ(meter.colour(middle - 1, 0), mark);
        EXPECT_NE(meter.colour(scaled(80), 0), mark);
        EXPECT_NE(meter.colour(scaled(102), 0), mark);
    }
}

INSTANTIATE_TEST_SUITE_P(Artwork, AtEveryScale,
                         testing::Range(std::size_t{0}, pictureScales.size()),
                         [](const auto& info) { return "Scale" + std::to_string(info.param); });

} // namespace
} // namespace mirelon
