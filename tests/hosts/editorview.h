// The editor in a host's window: what its sliders show, and a hand on them.
#pragma once

#include "tests/editor/positions.h"
#include "tests/hosts/screen.h"

#include <optional>
#include <string>

namespace mirelon::test {

// The editor's size at so many percent of the usual one, as Screen::inside takes it.
std::string editorSize(int percent = 100);

// The horizontal middle of a slider's white handle, as in a window of the usual
// size; nothing when none is shown. The picture's height says what its size is.
std::optional<int> handleAt(const Pixels& editor, const SliderPlace& slider);

// By how much the middle of what is white may differ from the handle's middle.
constexpr int handleTolerance = 3;

// Takes the handle at one value and leaves it near another.
void dragSlider(Screen& screen, Screen::WindowId editor, const SliderPlace& slider, double from,
                double to);

} // namespace mirelon::test
