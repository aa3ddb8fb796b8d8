// The size of the editor in a host's window, chosen in the menu of its top line.
#pragma once

#include "tests/hosts/screen.h"

#include <functional>
#include <optional>

namespace mirelon::test {

// The editor on show at so many percent of its usual size, in the host under test.
using EditorAt = std::function<std::optional<Screen::WindowId>(int percent)>;

// Chooses another size in the menu, one of those that it has, and waits until the
// editor is on show in that size. Fails the running test when it never is.
void chooseSize(Screen& screen, const EditorAt& editor, int from, int to);

// Whether the editor comes to be seen as in a bare window of this size: whole, to
// the last row and column. What is to the right of it does not matter.
bool comesToLookAsAt(int percent, Screen& screen, Screen::WindowId editor);

} // namespace mirelon::test
