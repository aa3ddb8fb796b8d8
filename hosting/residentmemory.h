// How much memory this process has.
#pragma once

#include <cstddef>
#include <fstream>
#include <unistd.h>

namespace mirelon::hosting {

// Bytes of it that are in the machine's memory; 0 where the kernel does not say.
inline std::size_t residentMemory() {
    std::ifstream statistics("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statistics >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace mirelon::hosting
