#include "tests/hosts/editorview.h"

#include <algorithm>

namespace mirelon::test {

std::string editorSize(int percent) {
    return std::to_string(editorWidth * percent / 100) + 'x' +
           std::to_string(editorHeight * percent / 100);
}

std::optional<int> handleAt(const Pixels& editor, const SliderPlace& slider) {
    const auto scaled = [&editor](int pixels) { return pixels * editor.height / editorHeight; };
    const int row = scaled(slider.y - 4); // the handle's lower half is darker
    const int right = std::min(scaled(sliderRight), editor.width);
    int sum = 0;
    int count = 0;
    for (int x = scaled(sliderLeft); x < right && row < editor.height; ++x) {
        // The handle is brighter than the background (0xDA), dimmed or not.
        const bool handle = (editor.at(x, row) >> 16) >= 0xE2;
        sum += handle ? x : 0;
        count += handle ? 1 : 0;
    }
    return count == 0 ? std::nullopt : std::optional(sum / count * editorHeight / editor.height);
}

void dragSlider(Screen& screen, Screen::WindowId editor, const SliderPlace& slider, double from,
                double to) {
    const int first = handlePosition(from);
    const int last = handlePosition(to);
    constexpr int steps = 10;
    screen.pointAt(editor, {first, slider.y});
    screen.press();
    for (int step = 1; step <= steps; ++step)
        screen.pointAt(editor, {first + (last - first) * step / steps, slider.y});
    screen.release();
}

} // namespace mirelon::test
