// Where this program is.
#pragma once

#include <filesystem>

namespace mirelon::hosting {

// The file that this process runs, also where there is no /proc (a chroot): then
// as the kernel was told to start it. Empty where neither is known.
std::filesystem::path ownProgram();

} // namespace mirelon::hosting
