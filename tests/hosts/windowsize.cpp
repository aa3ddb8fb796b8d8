#include "tests/hosts/windowsize.h"

#include "tests/editor/editorhost.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace mirelon::test {

namespace {

using std::chrono::seconds;

constexpr std::array percents{100, 125, 150, 175, 200, 250, 300};
constexpr int lines = static_cast<int>(percents.size()) + 1; // the last: as the desktop

int scaled(int pixels, int percent) {
    return pixels * percent / 100;
}
Position scaled(Position at, int percent) {
    return {scaled(at.x, percent), scaled(at.y, percent)};
}

// A column of the menu, to the left of the words in the top line.
Pixels menuColumn(const Pixels& editor, int percent) {
    const int left = scaled(title.x + 4, percent);
    return editor.part(left, 0, left + 1, editor.height);
}

Pixels bareEditor(int percent) {
    setenv("MIRELON_SCALE", std::to_string(percent / 100.0).c_str(), 1);
    EditorHost bare;
    const ERect rect = bare.rect();
    bare.window->resize(rect.right - rect.left, rect.bottom - rect.top);
    const Pixels empty = bare.window->pixels();
    bare.open();
    unsetenv("MIRELON_SCALE");
    EXPECT_TRUE(bare.runUntilStill(empty));
    return bare.pixels();
}

// Opens the menu; its first row and the row behind its last.
std::optional<std::pair<int, int>> openMenu(Screen& screen, Screen::WindowId editor, int percent) {
    screen.pointAt(editor, scaled(nowhere, percent));
    const Pixels closed = menuColumn(screen.pixels(editor), percent);
    screen.click(editor, scaled(title, percent), 3);
    const auto open = atRest([&] { return menuColumn(screen.pixels(editor), percent); },
                             [&](const Pixels& column) {
                                 const auto [top, bottom] = changedRows(closed, column);
                                 return bottom - top > scaled(100, percent);
                             });
    return open ? std::optional(changedRows(closed, *open)) : std::nullopt;
}

} // namespace

void chooseSize(Screen& screen, const EditorAt& editor, int from, int to) {
    const auto window = editor(from);
    ASSERT_TRUE(window);
    const auto menu = openMenu(screen, *window, from);
    ASSERT_TRUE(menu) << "no menu came up";
    const auto [top, bottom] = *menu;
    const auto line = static_cast<int>(std::ranges::find(percents, to) - percents.begin());
    screen.click(*window,
                 {scaled(title.x + 20, from), top + (bottom - top) * (2 * line + 1) / (2 * lines)});
    ASSERT_TRUE(eventually(seconds(20), [&] { return editor(to).has_value(); }))
        << "the editor is not " << to << " percent large";
}

bool comesToLookAsAt(int percent, Screen& screen, Screen::WindowId editor) {
    const Pixels expected = bareEditor(percent);
    screen.pointAt(editor, scaled(nowhere, percent));
    return eventually(seconds(10), [&] {
        const Pixels found = screen.pixels(editor);
        if (found.width < expected.width || found.height < expected.height)
            return false;
        // The last rows and columns are the same to the pixel, most of the rest is.
        std::size_t same = 0;
        for (int y = 0; y < expected.height; ++y)
            for (int x = 0; x < expected.width; ++x)
                same += found.at(x, y) == expected.at(x, y) ? 1 : 0;
        const auto edges = [&](const Pixels& picture) {
            return std::pair(picture.part(expected.width - 3, 0, expected.width, expected.height),
                             picture.part(0, expected.height - 3, expected.width, expected.height));
        };
        return same > expected.rgb.size() * 98 / 100 && edges(found) == edges(expected);
    });
}

} // namespace mirelon::test
