// What a check is doing to the effect, known also when the effect ends the process.
#pragma once

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

namespace mirelon::validator {

// Texts and numbers in one line; numbers with all digits that a float has.
template <typename... Parts>
std::string joined(const Parts&... parts) {
    std::ostringstream text;
    text.precision(9);
    (text << ... << parts);
    return text.str();
}

// Keeps the activity in this file from now on, for another process to read.
// Without a call it is known in this process alone.
void keepActivityIn(const std::filesystem::path& file);

// At most 250 bytes are kept. One thread: the check's own.
void setActivity(std::string_view text) noexcept;
std::string activity();

// Whether it is something that no known host does: what goes wrong in it is unusual,
// the end of the process included. Kept beside the activity.
void setUnusual(bool unusual) noexcept;
bool isUnusual() noexcept;

// What a process that may be gone has left in the file; empty and false when nothing.
std::string activityIn(const std::filesystem::path& file);
bool isUnusualIn(const std::filesystem::path& file);

// Completes "while": doing("given a state of ", size, " bytes").
template <typename... Parts>
void doing(const Parts&... parts) {
    setActivity(joined(parts...));
}

} // namespace mirelon::validator
