// Texts in pictures.
#include "tools/plot/canvas.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace mirelon::tools {
namespace {

constexpr int width = 120;
constexpr int height = 40;
constexpr Colour black{0.0, 0.0, 0.0};
constexpr TextStyle white{20.0, {1.0, 1.0, 1.0}};

std::vector<unsigned char> pointsOf(const Canvas& canvas) {
    cairo_surface_t* const surface = cairo_get_target(canvas.context());
    cairo_surface_flush(surface);
    const unsigned char* const data = cairo_image_surface_get_data(surface);
    return {data, data + cairo_image_surface_get_stride(surface) * height};
}

std::vector<unsigned char> drawn(const std::string& text, const TextStyle& style = white,
                                 double x = 4.0) {
    const Canvas canvas(width, height, black);
    canvas.text(x, 30.0, text, style);
    return pointsOf(canvas);
}

TEST(Canvas, IsNotMadeWhereThereIsNoRoomForIt) {
    EXPECT_THROW(Canvas(1 << 30, 1 << 30, black), std::bad_alloc);
}

TEST(Canvas, DrawsEveryScriptNotOnlyThatOfItsFont) {
    EXPECT_NE(drawn("\xE6\x97\xA5\xE6\x9C\xAC"), drawn("\xE6\x9C\xAC\xE6\x97\xA5")); // Japan
    EXPECT_NE(drawn("\xE6\x97\xA5"), drawn(""));
}

TEST(Canvas, DrawsBytesThatAreNoTextAsQuestionMarks) {
    EXPECT_EQ(drawn("a\xE9"
                    "b\x01"),
              drawn("a?b?"));
}

TEST(Canvas, DrawsOnTheBaseLineFromTheChosenSide) {
    const auto rows = [](const std::vector<unsigned char>& points) {
        std::vector<bool> touched(height);
        const std::size_t stride = points.size() / height;
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (i % 4 != 3 && points[i] != 0)
                touched[i / stride] = true;
        }
        return touched;
    };
    const std::vector<bool> touched = rows(drawn("HHH"));
    EXPECT_TRUE(touched[29]);
    EXPECT_FALSE(touched[31]) << "below the base line";
    TextStyle right = white;
    right.align = Align::right;
    EXPECT_EQ(drawn("HHH", right, 0.0), drawn("")) << "all of it is outside";
}

} // namespace
} // namespace mirelon::tools
