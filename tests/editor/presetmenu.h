// The preset menu under a real pointer.
#pragma once

#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

namespace mirelon::test {

// Opens the menu and clicks the line of `preset`; false when no menu opens.
inline bool chooseFromMenu(EditorHost& editor, int preset) {
    editor.moveTo(menuButton.x, menuButton.y);
    const Pixels closed = editor.pixels();
    editor.press();
    editor.release();
    if (!editor.runUntilStill(closed))
        return false;
    const Pixels open = editor.window->pixels();
    const auto [top, bottom] = changedRows(closed, open);
    const Position line = menuLine(preset, top, bottom);
    editor.click(line.x, line.y);
    return editor.runUntilStill(open);
}

} // namespace mirelon::test
