#include "bench/benchpicture.h"

#include "tools/plot/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace mirelon::bench {
namespace {

using tools::Colour;
using tools::TextStyle;

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

struct Kind {
    const char* name;
    Colour colour;
};

constexpr std::array kinds{Kind{"bound: part of the work alone", bounds}, Kind{"Mirelon", ours},
                           Kind{"another plug-in", others}};

// What the colours mean, one under the other from (x, y) on.
void drawLegend(const tools::Canvas& canvas, double x, double y) {
    constexpr double side = 12;
    constexpr double step = 20;
    for (const Kind& kind : kinds) {
        canvas.fill({x, y, side, side}, kind.colour);
        canvas.text(x + side + 8, y + side - 1, kind.name, {14, ink});
        y += step;
    }
}

} // namespace

void drawPicture(const Results& results, const std::filesystem::path& file) {
    const std::vector<Bar> bars = barsOf(results);
    if (bars.empty())
        throw std::runtime_error("nothing to draw");

    constexpr int width = 1100;
    constexpr int rowHeight = 34;
    constexpr int top = 110;
    constexpr double left = 280;
    constexpr double right = width - 190;
    const int height = top + static_cast<int>(bars.size()) * rowHeight + 30;
    const tools::Canvas canvas(width, height, paper);

    // A logarithmic axis of whole decades.
    const auto [least, most] = std::minmax_element(
        bars.begin(), bars.end(), [](const Bar& a, const Bar& b) { return a.ratio < b.ratio; });
    const double from = std::floor(std::log10(least->ratio));
    const double to = std::max(from + 1.0, std::ceil(std::log10(most->ratio)));
    const auto place = [&](double ratio) {
        return left + (right - left) * (std::log10(ratio) - from) / (to - from);
    };

    canvas.text(20, 34, "Time of one stereo frame, noise, blocks of 512", {20, ink});
    const TextStyle axis{14, ink};
    canvas.text(20, 58, "as a ratio to the plain follower chain; logarithmic", axis);
    drawLegend(canvas, 800, 14);
    for (int decade = static_cast<int>(from); decade <= static_cast<int>(to); ++decade) {
        const double ratio = std::pow(10.0, decade);
        const double x = place(ratio);
        canvas.fill({x, top - 8.0, 1, height - top - 10.0}, faint);
        char label[32];
        std::snprintf(label, sizeof label, "%g", ratio);
        canvas.text(x - 8, top - 12, label, axis);
    }

    const TextStyle caption{15, ink};
    double y = top;
    for (const Bar& bar : bars) {
        const double end = place(bar.ratio);
        canvas.fill({left, y + 5, end - left, rowHeight - 12}, bar.colour);
        canvas.text(20, y + 22, bar.label, caption);
        char text[64];
        std::snprintf(text, sizeof text, "%.2f  (%.2f ns)", bar.ratio, bar.time);
        canvas.text(end + 8, y + 22, text, caption);
        y += rowHeight;
    }
    canvas.writePng(file);
}

} // namespace mirelon::bench
