// The size that the user has chosen for the window, among the preferences: one for
// all instances of all hosts.
#pragma once

#include <optional>

namespace mirelon {

// In percent of the usual size; nothing while the window is as large as the desktop
// or the host says. What is stored but no whole number from 1 to 1000 counts as
// nothing. One thread at a time, as Preferences.
std::optional<int> chosenPercent();
// On disk on return; false when it could not be stored.
bool choosePercent(std::optional<int> percent);

} // namespace mirelon
