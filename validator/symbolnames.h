// Names of functions for people.
#pragma once

#include <string>

namespace mirelon::validator {

// Demangled where it is a mangled name, with its middle left out where it is long.
std::string readableName(const std::string& symbol);

// "function in file.so" for an address in a loaded library, also where the function
// is not exported but the file has a symbol table; else "file.so+0x1234". Empty for
// an address in no library.
std::string placeOf(const void* address);

} // namespace mirelon::validator
