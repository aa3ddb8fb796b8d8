#include "tools/plot/canvas.h"

#include "tools/pngfile.h"

#include <glib.h>
#include <new>
#include <numbers>

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

void Canvas::use(const TextStyle& style) const {
    cairo_select_font_face(drawing.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(drawing.get(), style.size);
    use(style.colour);
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
    use(style);
    cairo_text_extents_t extents{};
    cairo_text_extents(drawing.get(), printable(text).c_str(), &extents);
    return extents.x_advance;
}

void Canvas::text(double x, double y, std::string_view text, const TextStyle& style) const {
    const std::string shown = printable(text);
    const double width = widthOf(shown, style);
    const double shift = style.align == Align::left     ? 0.0
                         : style.align == Align::centre ? width / 2.0
                                                        : width;
    cairo_move_to(drawing.get(), x - shift, y);
    cairo_show_text(drawing.get(), shown.c_str());
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
