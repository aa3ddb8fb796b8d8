// What the window tells the user of something that they have done, in words.
#pragma once

#include "presetsystem/presetimages.h"

#include <string>
#include <string_view>

namespace mirelon {

struct Message {
    std::string text;
    bool failed = false;
};

// `error` is that of the operating system, 0 for none; `name` the file's.
Message savedMessage(std::string_view name, int error);
// `kind` is what was to be loaded: "preset" or "bank".
Message loadedMessage(std::string_view kind, std::string_view name, int error,
                      ImageVerdict verdict);
// `place` is where a preset or bank is kept.
Message storedMessage(std::string_view place, bool stored);
Message forgottenMessage(std::string_view place, bool forgotten);
Message recalledMessage(std::string_view place, ImageVerdict verdict);
// There is no program that could ask for a file.
Message noDialogMessage();

} // namespace mirelon
