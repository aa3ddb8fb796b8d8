// The symbol tables of a shared library's file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::validator {

// The names that it offers to the rest of its process, without what every linker
// adds. Throws Failed when the file is no 64-bit ELF library.
std::vector<std::string> exportedSymbols(const std::filesystem::path& file);

// The function whose code is at this offset from where the library is loaded, of all
// that its tables name. Empty when there is none, or no such file.
std::string functionAt(const std::filesystem::path& file, std::uint64_t offset);

} // namespace mirelon::validator
