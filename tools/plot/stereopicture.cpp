#include "tools/plot/stereopicture.h"

#include "tools/plot/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>

namespace mirelon::tools {

namespace {

constexpr int pictureWidth = 1600;
constexpr int pictureHeight = 1290;
constexpr double margin = 48.0;
constexpr double axisSpace = 92.0; // left of the curves over time

constexpr Colour background{0.075, 0.086, 0.106};
constexpr Colour panel{0.106, 0.122, 0.149};
constexpr Colour grid{1.0, 1.0, 1.0, 0.10};
constexpr Colour strongGrid{1.0, 1.0, 1.0, 0.24};
constexpr Colour bright{0.93, 0.94, 0.96};
constexpr Colour dim{0.62, 0.66, 0.72};
constexpr Colour beforeColour{0.44, 0.68, 0.92};
constexpr Colour afterColour{1.0, 0.66, 0.22};

// Below this a slice has no image to speak of.
constexpr double quietest = -70.0;
constexpr double lowestLevel = -60.0;

std::string number(const char* format, double value) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, value);
    return buffer.data();
}

std::string decibelText(double amplitude) {
    return amplitude > 0.0 ? number("%.1f", decibels(amplitude)) : "silent";
}

// The square on the tip of which full scale of both channels lies.
void drawGoniometer(const Canvas& canvas, const Box& box, const Goniometer& data, Colour colour,
                    const char* title) {
    canvas.fill(box, panel, 10.0);
    canvas.text(box.x + 22.0, box.y + 36.0, title, {20.0, colour, true});

    const double side = static_cast<double>(data.size());
    const Box field{box.x + (box.width - side) / 2.0, box.y + 52.0, side, side};
    const double middleX = field.x + side / 2.0;
    const double middleY = field.y + side / 2.0;
    canvas.line(middleX, field.y, middleX, field.bottom(), grid);
    canvas.line(field.x, middleY, field.right(), middleY, grid);
    const double half = side / 4.0;
    canvas.line(middleX - half, middleY - half, middleX + half, middleY + half, grid);
    canvas.line(middleX - half, middleY + half, middleX + half, middleY - half, grid);
    const std::array corners{std::pair{middleX, field.y}, std::pair{field.right(), middleY},
                             std::pair{middleX, field.bottom()}, std::pair{field.x, middleY}};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto [x1, y1] = corners[i];
        const auto [x2, y2] = corners[(i + 1) % corners.size()];
        canvas.line(x1, y1, x2, y2, strongGrid);
    }

    for (std::size_t row = 0; row < data.size(); ++row) {
        for (std::size_t column = 0; column < data.size(); ++column) {
            const double density = data.density(column, row);
            if (density <= 0.0)
                continue;
            // Glows towards white where the signal is most of the time.
            const double white = 0.75 * density * density;
            const Colour glow{colour.red + (1.0 - colour.red) * white,
                              colour.green + (1.0 - colour.green) * white,
                              colour.blue + (1.0 - colour.blue) * white, 0.5 + 0.5 * density};
            // A little wider than a point, so that short files draw lines too.
            const double x = field.x + static_cast<double>(column);
            const double y = field.y + static_cast<double>(row);
            canvas.fill({x - 0.2, y - 0.2, 1.4, 1.4}, glow);
        }
    }

    const TextStyle small{14.0, dim, false, Align::centre};
    canvas.text(middleX, field.y - 8.0, "mono", small);
    canvas.text(middleX - half - 16.0, middleY - half - 6.0, "L",
                {17.0, bright, true, Align::centre});
    canvas.text(middleX + half + 16.0, middleY - half - 6.0, "R",
                {17.0, bright, true, Align::centre});
    canvas.text(field.x + 4.0, middleY + 48.0, "anti-", {14.0, dim});
    canvas.text(field.x + 4.0, middleY + 65.0, "phase", {14.0, dim});
}

void drawFigures(const Canvas& canvas, const Box& box, const StereoSignal& before,
                 const StereoSignal& after) {
    canvas.fill(box, panel, 10.0);
    const double label = box.x + 26.0;
    const double first = box.x + box.width * 0.68;
    const double second = box.right() - 26.0;
    double y = box.y + 36.0;
    canvas.text(first, y, "before", {20.0, beforeColour, true, Align::right});
    canvas.text(second, y, "after", {20.0, afterColour, true, Align::right});
    const auto row = [&](const char* name, const std::string& was, const std::string& is) {
        y += 40.0;
        canvas.line(label, y - 27.0, second, y - 27.0, grid);
        canvas.text(label, y, name, {18.0, dim});
        canvas.text(first, y, was, {18.0, bright, false, Align::right});
        canvas.text(second, y, is, {18.0, bright, false, Align::right});
    };
    const StereoStatistics& was = before.whole;
    const StereoStatistics& is = after.whole;
    row("Left peak, dBFS", decibelText(was.peak(0)), decibelText(is.peak(0)));
    row("Right peak, dBFS", decibelText(was.peak(1)), decibelText(is.peak(1)));
    row("Left RMS, dBFS", decibelText(was.rms(0)), decibelText(is.rms(0)));
    row("Right RMS, dBFS", decibelText(was.rms(1)), decibelText(is.rms(1)));
    row("Width", number("%+.3f", was.width()), number("%+.3f", is.width()));
    row("Balance", number("%+.3f", was.balance()), number("%+.3f", is.balance()));

    y += 44.0;
    for (const char* const note : {"Width: \xE2\x88\x92"
                                   "0.5 is anti-phase, +0.5 mono.",
                                   "Balance: \xE2\x88\x92"
                                   "0.5 is left, +0.5 right.",
                                   "log16 of the ratio of RMS values, L+R to L\xE2\x88\x92R",
                                   "and R to L, over the whole file and per slice."}) {
        canvas.text(label, y, note, {14.0, dim});
        y += 21.0;
    }
}

// A chart over time: where it lies, and what its values mean in pixels.
struct Chart {
    Box box;
    double top;    // value at the upper edge
    double bottom; // value at the lower edge

    double yOf(double value) const {
        return box.y + (top - std::clamp(value, std::min(top, bottom), std::max(top, bottom))) /
                           (top - bottom) * box.height;
    }
    double xOf(std::size_t slice, std::size_t slices) const {
        return box.x + (static_cast<double>(slice) + 0.5) / static_cast<double>(slices) * box.width;
    }
};

void drawFrame(const Canvas& canvas, const Box& box, const char* title) {
    canvas.fill({margin, box.y - 38.0, pictureWidth - 2.0 * margin, box.height + 54.0}, panel,
                10.0);
    canvas.text(margin + 22.0, box.y - 13.0, title, {17.0, bright, true});
}

void drawTick(const Canvas& canvas, const Chart& chart, double value, const char* name,
              Colour colour) {
    const double y = std::round(chart.yOf(value)) + 0.5;
    canvas.line(chart.box.x, y, chart.box.right(), y, colour);
    canvas.text(chart.box.x - 10.0, y + 5.0, name, {13.0, dim, false, Align::right});
}

using Reading = std::function<std::optional<double>(const StereoStatistics&)>;

// A curve that breaks where there is no reading.
void drawCurve(const Canvas& canvas, const Chart& chart, std::span<const StereoStatistics> slices,
               const Reading& reading, Colour colour) {
    cairo_t* const c = canvas.context();
    bool drawing = false;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const auto value = reading(slices[i]);
        const double x = chart.xOf(i, slices.size());
        if (value && !drawing) // a dot for a reading on its own
            cairo_move_to(c, x - 0.5, chart.yOf(*value));
        if (value)
            cairo_line_to(c, x, chart.yOf(*value));
        drawing = value.has_value();
    }
    cairo_set_source_rgba(c, colour.red, colour.green, colour.blue, colour.alpha);
    cairo_set_line_width(c, 2.2);
    cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
    cairo_stroke(c);
}

void drawImageChart(const Canvas& canvas, const Chart& chart, const StereoSignal& before,
                    const StereoSignal& after, double (StereoStatistics::*value)() const noexcept) {
    const Reading reading = [value](const StereoStatistics& slice) -> std::optional<double> {
        if (decibels(std::max(slice.rms(0), slice.rms(1))) < quietest)
            return std::nullopt;
        return (slice.*value)();
    };
    drawCurve(canvas, chart, before.image.slices(), reading, beforeColour);
    drawCurve(canvas, chart, after.image.slices(), reading, afterColour);
}

// Peaks in decibels: a filled shape before, a line after; left above, right
// below.
void drawLevels(const Canvas& canvas, const Box& box, const StereoSignal& before,
                const StereoSignal& after) {
    const double half = box.height / 2.0;
    const Chart upper{{box.x, box.y, box.width, half}, 0.0, lowestLevel};
    const Chart lower{{box.x, box.y + half, box.width, half}, lowestLevel, 0.0};
    for (const Chart& chart : {upper, lower}) {
        drawTick(canvas, chart, 0.0, "0 dBFS", strongGrid);
        drawTick(canvas, chart, -20.0,
                 "\xE2\x88\x92"
                 "20",
                 grid);
        drawTick(canvas, chart, -40.0,
                 "\xE2\x88\x92"
                 "40",
                 grid);
    }
    cairo_t* const c = canvas.context();
    for (std::size_t channel = 0; channel < 2; ++channel) {
        const Chart& chart = channel == 0 ? upper : lower;
        const auto slices = before.levels.slices();
        cairo_move_to(c, box.x, box.y + half);
        for (std::size_t i = 0; i < slices.size(); ++i)
            cairo_line_to(c, chart.xOf(i, slices.size()),
                          chart.yOf(decibels(slices[i].peak(channel))));
        cairo_line_to(c, box.right(), box.y + half);
        cairo_close_path(c);
        const Colour shade = beforeColour.faded(0.55);
        cairo_set_source_rgba(c, shade.red, shade.green, shade.blue, shade.alpha);
        cairo_fill(c);
        drawCurve(
            canvas, chart, after.levels.slices(),
            [channel](const StereoStatistics& slice) -> std::optional<double> {
                const double level = decibels(slice.peak(channel));
                return level < lowestLevel ? std::nullopt : std::optional(level);
            },
            afterColour);
    }
    canvas.line(box.x, box.y + half, box.right(), box.y + half, strongGrid);
    canvas.text(margin + 22.0, box.y + half * 0.5 + 6.0, "L", {17.0, bright, true});
    canvas.text(margin + 22.0, box.y + half * 1.5 + 6.0, "R", {17.0, bright, true});
}

// In minutes and seconds when the whole takes that long.
std::string timeText(double seconds, double whole) {
    if (whole < 60.0)
        return number("%g s", seconds);
    std::array<char, 64> buffer{};
    const long rounded = std::lround(seconds);
    std::snprintf(buffer.data(), buffer.size(), "%ld:%02ld", rounded / 60, rounded % 60);
    return buffer.data();
}

// Vertical lines at round times through all charts, named below.
void drawTimeAxis(const Canvas& canvas, double seconds, double left, double width,
                  std::span<const Box> charts, double y) {
    constexpr std::array steps{0.001, 0.002,  0.005,  0.01,   0.02,   0.05,    0.1,    0.2,   0.5,
                               1.0,   2.0,    5.0,    10.0,   20.0,   30.0,    60.0,   120.0, 300.0,
                               600.0, 1200.0, 1800.0, 3600.0, 7200.0, 18000.0, 36000.0};
    constexpr double mostTicks = 12.0;
    if (!(seconds > 0.0))
        return;
    const auto* const found = std::find_if(
        steps.begin(), steps.end(), [&](double step) { return seconds / step <= mostTicks; });
    const double step = found != steps.end() ? *found : seconds / mostTicks;
    for (int i = 0; i * step <= seconds * (1.0 + 1e-9); ++i) {
        const double x = std::round(left + i * step / seconds * width) + 0.5;
        for (const Box& box : charts)
            canvas.line(x, box.y, x, box.bottom(), grid);
        canvas.text(x, y, timeText(i * step, seconds), {13.0, dim, false, Align::centre});
    }
}

} // namespace

void drawStereoPicture(const std::filesystem::path& file, const PictureText& text,
                       const StereoSignal& before, const StereoSignal& after, double seconds) {
    const Canvas canvas(pictureWidth, pictureHeight, background);
    const double inner = pictureWidth - 2.0 * margin;
    canvas.fittedText(margin, 62.0, text.title, inner, {30.0, bright, true});
    canvas.fittedText(margin, 94.0, text.subtitle, inner, {17.0, dim});

    constexpr double gap = 20.0;
    const double third = (inner - 2.0 * gap) / 3.0;
    const double fieldHeight = static_cast<double>(goniometerSize) + 72.0;
    const Box first{margin, 120.0, third, fieldHeight};
    Box place = first;
    drawGoniometer(canvas, place, before.goniometer, beforeColour, "Before");
    place.x += third + gap;
    drawGoniometer(canvas, place, after.goniometer, afterColour, "After");
    place.x += third + gap;
    drawFigures(canvas, place, before, after);

    const double left = margin + axisSpace;
    const double width = inner - axisSpace - 24.0;
    const Box levels{left, first.bottom() + 58.0, width, 200.0};
    const Box widths{left, levels.bottom() + 74.0, width, 120.0};
    const Box balances{left, widths.bottom() + 74.0, width, 120.0};
    drawFrame(canvas, levels, "Peak level");
    drawFrame(canvas, widths, "Stereo width");
    drawFrame(canvas, balances, "Balance");
    drawTimeAxis(canvas, seconds, left, width, std::array{levels, widths, balances},
                 balances.bottom() + 38.0);
    drawLevels(canvas, levels, before, after);

    const Chart widthChart{widths, 0.5, -0.5};
    drawTick(canvas, widthChart, 0.5, "mono", strongGrid);
    drawTick(canvas, widthChart, 0.0, "even", grid);
    drawTick(canvas, widthChart, -0.5, "anti-phase", strongGrid);
    drawImageChart(canvas, widthChart, before, after, &StereoStatistics::width);

    const Chart balanceChart{balances, -0.5, 0.5};
    drawTick(canvas, balanceChart, -0.5, "left", strongGrid);
    drawTick(canvas, balanceChart, 0.0, "centre", grid);
    drawTick(canvas, balanceChart, 0.5, "right", strongGrid);
    drawImageChart(canvas, balanceChart, before, after, &StereoStatistics::balance);

    canvas.writePng(file);
}

} // namespace mirelon::tools
