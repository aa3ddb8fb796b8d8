// The defect that the environment chooses, and what defects have in common.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace mirelon::test {

inline bool hasDefect(std::string_view name) {
    static const char* const chosen = std::getenv("MIRELON_DEFECT");
    return chosen != nullptr && name == chosen;
}

// Whether the defect is the one of this family and number: "rate-8000", say.
inline bool hasDefect(const char* family, long number) {
    return hasDefect(family + std::to_string(number));
}

// Whether the defect is this one and this the call of it that is named, over all instances:
// "nan@3", say, in the third of the calls that ask for "nan".
inline bool hasDefectNow(std::string_view name) {
    static const char* const chosen = std::getenv("MIRELON_DEFECT");
    static std::atomic<int> calls{0};
    if (chosen == nullptr)
        return false;
    const std::string_view all = chosen;
    return all.substr(0, all.find('@')) == name && all.size() > name.size() &&
           ++calls == std::atoi(chosen + name.size() + 1);
}

// Writes where the environment says the process's number and that of a child that it starts,
// which stays.
inline bool tellProcesses() {
    if (const char* const file = std::getenv("MIRELON_TEST_PID_FILE")) {
        const pid_t child = fork();
        if (child == 0)
            for (;;)
                pause();
        if (std::FILE* const stream = std::fopen(file, "w")) {
            std::fprintf(stream, "%d %d\n", static_cast<int>(getpid()), static_cast<int>(child));
            std::fclose(stream);
        }
    }
    return true;
}

[[noreturn]] inline void crash() {
    std::abort();
}

// Where an effect would keep its files and where the display's key is, a line each.
inline void printFolders() {
    for (const char* const name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XAUTHORITY"}) {
        const char* const folder = std::getenv(name);
        std::fprintf(stderr, "%s\n", folder != nullptr ? folder : "none");
    }
}

// Has `work` done when the process ends, for which this file stays loaded.
inline void atTheEnd(void (*work)()) {
    Dl_info here{};
    dladdr(reinterpret_cast<void*>(&crash), &here);
    dlopen(here.dli_fname, RTLD_NOW | RTLD_NODELETE);
    std::atexit(work);
}

// What it asks of memory is not the same both ways round.
[[gnu::always_inline]] inline void allocateAligned() {
    constexpr std::size_t alignment = 4096;
    void* memory = nullptr;
    if (posix_memalign(&memory, alignment, 64) != 0 ||
        reinterpret_cast<std::uintptr_t>(memory) % alignment != 0)
        crash();
    std::free(memory);
}

// Through a volatile pointer, or the compiler would see that it is for nothing. In the
// place that wants it, which the validator is to name.
[[gnu::always_inline]] inline void allocate() {
    void* volatile memory = std::malloc(10);
    std::free(memory);
}
[[gnu::always_inline]] inline void allocateIf(const char* defect) {
    if (hasDefect(defect))
        allocate();
}

} // namespace mirelon::test
