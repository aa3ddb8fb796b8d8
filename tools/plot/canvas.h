// Drawing on a picture that becomes a PNG file.
#pragma once

#include <cairo.h>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace mirelon::tools {

struct Colour {
    double red;
    double green;
    double blue;
    double alpha = 1.0;

    constexpr Colour faded(double factor) const { return {red, green, blue, alpha * factor}; }
};

struct Box {
    double x;
    double y;
    double width;
    double height;

    constexpr double right() const { return x + width; }
    constexpr double bottom() const { return y + height; }
    constexpr Box inset(double by) const {
        return {x + by, y + by, width - 2.0 * by, height - 2.0 * by};
    }
};

enum class Align { left, centre, right };

struct TextStyle {
    double size; // pixels
    Colour colour;
    bool bold = false;
    Align align = Align::left;
};

// Coordinates are pixels from the top left corner. Throws std::bad_alloc when
// there is no memory for the picture.
class Canvas {
  public:
    Canvas(int width, int height, Colour background);

    cairo_t* context() const noexcept { return drawing.get(); }

    void fill(const Box& box, Colour colour, double cornerRadius = 0.0) const;
    void line(double x1, double y1, double x2, double y2, Colour colour, double width = 1.0) const;
    // `y` is the base line. Any script shows that the machine has a font for; bytes
    // that are no UTF-8 show as "?".
    void text(double x, double y, std::string_view text, const TextStyle& style) const;
    // With its middle left out when it is wider than `most` pixels.
    void fittedText(double x, double y, const std::string& text, double most,
                    const TextStyle& style) const;

    // An existing file is replaced only by a complete one. Throws CommandError.
    void writePng(const std::filesystem::path& file) const;

  private:
    struct Destroy {
        void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
    };

    double widthOf(const std::string& text, const TextStyle& style) const;
    void use(Colour colour) const;

    std::unique_ptr<cairo_surface_t, Destroy> surface;
    std::unique_ptr<cairo_t, Destroy> drawing;
};

} // namespace mirelon::tools
