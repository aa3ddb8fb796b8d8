// What a file selector is asked.
#pragma once

#include <string>

namespace mirelon {

struct FileType {
    const char* description;
    const char* extension; // without the dot
};

inline constexpr FileType presetFileType{"Dravik Preset", "dvp"};
inline constexpr FileType bankFileType{"Dravik Bank", "dvb"};

struct FileQuestion {
    FileType type;
    bool save = false; // else an existing file is to be opened
    std::string title;
    std::string directory; // where to start; ends with a slash, or empty
    std::string name;      // proposed for saving
};

} // namespace mirelon
