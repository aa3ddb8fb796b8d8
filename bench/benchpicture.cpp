#include "bench/benchpicture.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

namespace mirelon::bench {
namespace {

struct Colour {
    double red, green, blue;
};
constexpr Colour paper{1.0, 1.0, 1.0};
constexpr Colour ink{0.15, 0.15, 0.2};
constexpr Colour faint{0.85, 0.85, 0.88};
constexpr Colour bounds{0.62, 0.64, 0.70};
constexpr Colour ours{0.16, 0.44, 0.75};
constexpr Colour others{0.80, 0.52, 0.25};

struct Bar {
    std::string label;
    double time;
    double ratio;
    Colour colour;
};

std::vector<Bar> barsOf(const Results& results) {
    std::vector<Bar> bars;
    const auto add = [&](const std::string& label, const std::string& name, Colour colour) {
        const auto time = results.time(name);
        const auto ratio = results.ratio(name);
        if (time && ratio)
            bars.push_back({label, *time, *ratio, colour});
    };
    add("copy of two channels", "reference/copy/512", bounds);
    add("two-step follower chain", "reference/two-step chain/512", bounds);
    add("plain follower chain", "reference/plain chain/512", bounds);
    add("Mirelon in a host, float", "plugin/float/512", ours);
    add("Mirelon in a host, double", "plugin/double/512", ours);
    for (const char* const kernel : {"avx512", "avx2", "sse2", "portable"})
        add(std::string("its core, ") + kernel,
            std::string("core/") + kernel + "/float/processing/noise/512", ours);
    for (const auto& [name, time] : results.startingWith("peer/"))
        add(name.substr(5), name, others);
    return bars;
}

void setColour(cairo_t* cairo, Colour colour) {
    cairo_set_source_rgb(cairo, colour.red, colour.green, colour.blue);
}

void write(cairo_t* cairo, double x, double y, const std::string& text) {
    cairo_move_to(cairo, x, y);
    cairo_show_text(cairo, text.c_str());
}

} // namespace

void drawPicture(const Results& results, const std::filesystem::path& file) {
    const std::vector<Bar> bars = barsOf(results);
    if (bars.empty())
        throw std::runtime_error("nothing to draw");

    constexpr int width = 1100;
    constexpr int rowHeight = 34;
    constexpr int top = 90;
    constexpr double left = 280;
    constexpr double right = width - 190;
    const int height = top + static_cast<int>(bars.size()) * rowHeight + 30;
    const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height), cairo_surface_destroy);
    const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(cairo_create(surface.get()),
                                                               cairo_destroy);
    cairo_t* const cairo = context.get();
    setColour(cairo, paper);
    cairo_paint(cairo);
    cairo_select_font_face(cairo, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);

    // A logarithmic axis of whole decades.
    const auto [least, most] = std::minmax_element(
        bars.begin(), bars.end(), [](const Bar& a, const Bar& b) { return a.ratio < b.ratio; });
    const double from = std::floor(std::log10(least->ratio));
    const double to = std::max(from + 1.0, std::ceil(std::log10(most->ratio)));
    const auto place = [&](double ratio) {
        return left + (right - left) * (std::log10(ratio) - from) / (to - from);
    };

    setColour(cairo, ink);
    cairo_set_font_size(cairo, 20);
    write(cairo, 20, 34, "Time of one stereo frame, noise, blocks of 512");
    cairo_set_font_size(cairo, 14);
    write(cairo, 20, 58, "as a ratio to the plain follower chain; logarithmic");
    for (int decade = static_cast<int>(from); decade <= static_cast<int>(to); ++decade) {
        const double x = place(std::pow(10.0, decade));
        setColour(cairo, faint);
        cairo_rectangle(cairo, x, top - 8, 1, height - top - 10);
        cairo_fill(cairo);
        setColour(cairo, ink);
        char label[32];
        std::snprintf(label, sizeof label, "%g", std::pow(10.0, decade));
        write(cairo, x - 8, top - 12, label);
    }

    cairo_set_font_size(cairo, 15);
    double y = top;
    for (const Bar& bar : bars) {
        setColour(cairo, bar.colour);
        cairo_rectangle(cairo, left, y + 5, place(bar.ratio) - left, rowHeight - 12);
        cairo_fill(cairo);
        setColour(cairo, ink);
        write(cairo, 20, y + 22, bar.label);
        char text[64];
        std::snprintf(text, sizeof text, "%.2f  (%.2f ns)", bar.ratio, bar.time);
        write(cairo, place(bar.ratio) + 8, y + 22, text);
        y += rowHeight;
    }

    cairo_surface_flush(surface.get());
    if (cairo_surface_write_to_png(surface.get(), file.c_str()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(file.string() + ": cannot be written");
}

} // namespace mirelon::bench
