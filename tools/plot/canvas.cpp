#include "tools/plot/canvas.h"

#include "tools/pngfile.h"

#include <glib.h>
#include <new>
#include <numbers>
#include <pango/pangocairo.h>

namespace mirelon::tools {

namespace {

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const gunichar character =
            g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
        const bool shown = character >= 0x20 && character != 0x7F && character <= 0x10FFFF;
        const auto length =
            static_cast<std::size_t>(shown ? g_utf8_next_char(text.data()) - text.data() : 1);
        result += shown ? text.substr(0, length) : "?";
        text.remove_prefix(length);
    }
    return result;
}

// A line of text as it will be drawn: in any script, from right to left where the
// script runs so, in another font where the first one lacks a character.
class Line {
  public:
    Line(cairo_t* drawing_, std::string_view text, const TextStyle& style)
        : drawing(drawing_)
        , layout(pango_cairo_create_layout(drawing)) {
        PangoFontDescription* const font = pango_font_description_new();
        pango_font_description_set_family_static(font, "sans-serif");
        pango_font_description_set_absolute_size(font, style.size * PANGO_SCALE);
        if (style.bold)
            pango_font_description_set_weight(font, PANGO_WEIGHT_BOLD);
        pango_layout_set_font_description(layout.get(), font);
        pango_font_description_free(font);
        const std::string shown = printable(text);
        pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        pango_layout_set_text(layout.get(), shown.data(), static_cast<int>(shown.size()));
    }

    double width() const {
        PangoRectangle extent{};
        pango_layout_get_extents(layout.get(), nullptr, &extent);
        return pango_units_to_double(extent.width);
    }

    // `y` is the base line.
    void show(double x, double y) const {
        const double above = pango_units_to_double(pango_layout_get_baseline(layout.get()));
        cairo_move_to(drawing, x, y - above);
        pango_cairo_show_layout(drawing, layout.get());
    }

  private:
    struct Unreference {
        void operator()(PangoLayout* object) const noexcept { g_object_unref(object); }
    };

    cairo_t* drawing;
    std::unique_ptr<PangoLayout, Unreference> layout;
};

} // namespace

Canvas::Canvas(int width, int height, Colour background)
    : surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height))
    , drawing(cairo_create(surface.get())) {
    if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS)
        throw std::bad_alloc();
    use(background);
    cairo_paint(drawing.get());
}

void Canvas::use(Colour colour) const {
    cairo_set_source_rgba(drawing.get(), colour.red, colour.green, colour.blue, colour.alpha);
}

void Canvas::fill(const Box& box, Colour colour, double cornerRadius) const {
    constexpr double quarter = std::numbers::pi / 2.0;
    cairo_t* const c = drawing.get();
    const double r = cornerRadius;
    use(colour);
    cairo_new_sub_path(c);
    cairo_arc(c, box.right() - r, box.y + r, r, -quarter, 0.0);
    cairo_arc(c, box.right() - r, box.bottom() - r, r, 0.0, quarter);
    cairo_arc(c, box.x + r, box.bottom() - r, r, quarter, 2.0 * quarter);
    cairo_arc(c, box.x + r, box.y + r, r, 2.0 * quarter, 3.0 * quarter);
    cairo_close_path(c);
    cairo_fill(c);
}

void Canvas::line(double x1, double y1, double x2, double y2, Colour colour, double width) const {
    use(colour);
    cairo_set_line_width(drawing.get(), width);
    cairo_move_to(drawing.get(), x1, y1);
    cairo_line_to(drawing.get(), x2, y2);
    cairo_stroke(drawing.get());
}

double Canvas::widthOf(const std::string& text, const TextStyle& style) const {
    return Line(drawing.get(), text, style).width();
}

void Canvas::text(double x, double y, std::string_view text, const TextStyle& style) const {
    const Line line(drawing.get(), text, style);
    const double shift = style.align == Align::left     ? 0.0
                         : style.align == Align::centre ? line.width() / 2.0
                                                        : line.width();
    use(style.colour);
    line.show(x - shift, y);
}

void Canvas::fittedText(double x, double y, const std::string& text, double most,
                        const TextStyle& style) const {
    std::string shown = text;
    for (std::size_t kept = text.size() / 2; widthOf(shown, style) > most && kept > 0; --kept)
        shown = text.substr(0, kept) + "\xE2\x80\xA6" + text.substr(text.size() - kept);
    this->text(x, y, shown, style);
}

void Canvas::writePng(const std::filesystem::path& file) const {
    tools::writePng(surface.get(), file);
}

} // namespace mirelon::tools
