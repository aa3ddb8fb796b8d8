// What a host hears of a user's hand on one control.
#pragma once

#include "tests/hosts/observations.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace mirelon::test {

// What the plug-in told its host of one parameter from the call numbered `from`
// on: begin of an edit, automation, end.
Observations gestureOn(VstInt32 parameter, const Observations& all, std::size_t from);

// The same from a record that is still being written, when the hand has let go;
// what there is after some seconds when it has not.
Observations finishedGestureOn(VstInt32 parameter, const std::filesystem::path& record,
                               std::size_t from);

// Fails the running test unless this is one edit, begun and ended once, in which
// the value never falls, all on one thread. Answers the last value.
float lastOfRisingGesture(const Observations& gesture, const std::string& thread);

} // namespace mirelon::test
