// What the user is asked for a file, and the answer.
#pragma once

#include <array>
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

// A part of a path as a terminated text.
using PathBuffer = std::array<char, 257>;

// One file, in the parts that the file layer opens.
struct ChosenFile {
    PathBuffer name{};
    PathBuffer directory{}; // ends with a slash
};

} // namespace mirelon
