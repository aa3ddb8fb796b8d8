// What the user's display says: whether there is one, and how large things
// are to be on it.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace mirelon {

// Whether the X server that the environment names can be reached.
bool displayAvailable();

// The sizes in which the window can be drawn.
inline constexpr std::array<double, 4> windowScales{1.0, 1.5, 2.0, 3.0};

// The window scale nearest to `wanted`, the larger of two that are equally
// near; 1 for anything that is no positive number.
double nearestWindowScale(double wanted) noexcept;

// The environment variable MIRELON_SCALE if it holds a number, else the
// display's Xft.dpi over 96, else 1; as one of the window scales. Opens a
// connection of its own for the moment.
double desktopScale();

// The value of Xft.dpi in an X resource text; nothing if it is absent or no
// positive number.
std::optional<double> xftDpi(std::string_view resources);

} // namespace mirelon
