// The preset menu under a real pointer.
#pragma once

#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

namespace mirelon::test {

// Opens the menu and clicks the line of `preset`; false when no menu opens.
inline bool chooseFromMenu(EditorHost& editor, int preset) {
    constexpr auto opening = std::chrono::milliseconds(500);
    const Pixels closed = editor.pixels();
    editor.click(menuButton.x, menuButton.y);
    editor.run(opening);
    const auto [top, bottom] = changedRows(closed, editor.pixels());
    if (top == bottom)
        return false;
    const Position line = menuLine(preset, top, bottom);
    editor.click(line.x, line.y);
    editor.run(opening);
    return true;
}

} // namespace mirelon::test
