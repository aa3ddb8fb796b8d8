// What the user's display says: whether there is one, and how large things
// are to be on it.
#pragma once

#include <optional>
#include <string_view>

namespace mirelon {

// Whether the X server that the environment names can be reached.
bool displayAvailable();

// The environment variable MIRELON_SCALE, if it holds a positive number.
std::optional<double> environmentScale();

// How many times the usual size the user wants things to be: what the environment
// says, else what the user has chosen in a window, else what the host says if that
// is a positive number other than 1 (many say 1 for "do not know"), else the
// display's Xft.dpi over 96, else 1. Opens a connection of its own for the moment
// when it has to ask the display.
double desktopScale(double hostScale = 1.0, std::optional<double> chosenScale = std::nullopt);

// The value of Xft.dpi in an X resource text; nothing if it is absent or no
// positive number.
std::optional<double> xftDpi(std::string_view resources);

} // namespace mirelon
