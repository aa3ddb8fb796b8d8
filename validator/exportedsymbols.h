// The names that a shared library offers to the rest of its process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::validator {

// Those that it defines with global reach, without what every linker adds.
// Throws Failed when the file is no 64-bit ELF library.
std::vector<std::string> exportedSymbols(const std::filesystem::path& file);

} // namespace mirelon::validator
