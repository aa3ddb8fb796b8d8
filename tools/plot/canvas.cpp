#include "tools/plot/canvas.h"

#include "tools/commanderror.h"
#include "tools/replacedfile.h"

#include <exception>
#include <new>
#include <numbers>

namespace mirelon::tools {

namespace {

// The length of the well-formed UTF-8 sequence at the start, 0 for none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead >= 0x20 && lead < 0x7F)
        return 1;
    const std::size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U)
            return 0;
    }
    // Overlong forms, surrogates and what lies beyond Unicode.
    const unsigned char second = byte(1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90))
        return 0;
    return length;
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        result += length == 0 ? std::string_view("?") : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

struct PngStream {
    ReplacedFile& file;
    std::exception_ptr failure;
};

cairo_status_t writeToFile(void* closure, const unsigned char* bytes, unsigned length) {
    auto& stream = *static_cast<PngStream*>(closure);
    try {
        stream.file.write(bytes, length);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        stream.failure = std::current_exception();
        return CAIRO_STATUS_WRITE_ERROR;
    }
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

void Canvas::writePng(const std::filesystem::path& target) const {
    ReplacedFile file(target);
    PngStream stream{file, nullptr};
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(surface.get(), writeToFile, &stream);
    if (stream.failure)
        std::rethrow_exception(stream.failure);
    if (status != CAIRO_STATUS_SUCCESS)
        throw CommandError(target.string() + ": cannot be written (" +
                           cairo_status_to_string(status) + ")");
    file.commit();
}

} // namespace mirelon::tools
