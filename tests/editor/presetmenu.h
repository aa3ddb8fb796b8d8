// The preset menu under a real pointer.
#pragma once

#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

namespace mirelon::test {

// What the open menu covers of the editor, and nothing else changes: the title line says
// what the pointer rests on, and the buttons beside the menu look different under it.
inline Pixels menuColumn(const Pixels& editor) {
    return editor.part(100, titleBottom, 200, editor.height);
}

// A line of the menu, by the editor without and with it.
inline Position menuLine(int preset, const Pixels& closed, const Pixels& open) {
    constexpr int lines = 11;
    const auto [top, bottom] = changedRows(menuColumn(closed), menuColumn(open));
    return {150, titleBottom + top + (bottom - top) * (2 * preset + 1) / (2 * lines)};
}

// Opens the menu and clicks the line of `preset`; false when no menu opens.
inline bool chooseFromMenu(EditorHost& editor, int preset) {
    editor.moveTo(menuButton.x, menuButton.y);
    const Pixels closed = editor.pixels();
    editor.press();
    editor.release();
    if (!editor.runUntilStill(closed))
        return false;
    const Pixels open = editor.window->pixels();
    const Position line = menuLine(preset, closed, open);
    editor.click(line.x, line.y);
    return editor.runUntilStill(open);
}

} // namespace mirelon::test
