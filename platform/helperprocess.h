// Runs a helper program apart from the host's surroundings.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace mirelon {

// Starts `program` (a path) with `arguments`, waits until it ends and answers
// what it wrote to its standard output; nothing when it could not be started,
// failed, or wrote more than a list of paths can be.
//
// The program gets the environment without the dynamic linker's variables
// (hosts that bring their own libraries set them for themselves), none of the
// host's open files, and signals as in a fresh process.
std::optional<std::string> runHelper(const std::string& program,
                                     std::span<const std::string> arguments);

} // namespace mirelon
