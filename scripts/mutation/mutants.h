// The switch in front of every change of a program that scripts/mutation has changed;
// included before all else in such sources. MUTANT chooses a change by its number. While
// none is chosen, MUTANTS_REACHED names a file that has a byte for each: those that are
// reached become 1. All processes and libraries share the file, so that none has to end
// in good order for its part to be there.
#pragma once

// A change may do what nobody would write.
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wfloat-conversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wnarrowing"
#pragma GCC diagnostic ignored "-Wparentheses"
#pragma GCC diagnostic ignored "-Wunused-value"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wtype-limits"
#pragma GCC diagnostic ignored "-Wextra"
#pragma GCC diagnostic ignored "-Wdangling-else"
#pragma GCC diagnostic ignored "-Wbool-operation"
#pragma GCC diagnostic ignored "-Wbool-compare"
#pragma GCC diagnostic ignored "-Wint-in-bool-context"
#pragma GCC diagnostic ignored "-Wdiv-by-zero"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wstringop-overflow"
#pragma GCC diagnostic ignored "-Wstringop-overread"
#pragma GCC diagnostic ignored "-Warray-bounds"
#pragma GCC diagnostic ignored "-Wrestrict"
#pragma GCC diagnostic ignored "-Wnonnull"
#pragma GCC diagnostic ignored "-Wimplicit-fallthrough"
#pragma GCC diagnostic ignored "-Waddress"

#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace mutation {

struct Choice {
    bool read = false;
    unsigned chosen = 0;
    unsigned char* reached = nullptr;
    unsigned long size = 0;
};
inline Choice choice;

// Calls the system directly: tests replace the library's functions.
inline void readChoice() noexcept {
    if (choice.read)
        return;
    choice.read = true;
    if (const char* number = getenv("MUTANT"))
        choice.chosen = static_cast<unsigned>(atoi(number));
    const char* file = getenv("MUTANTS_REACHED");
    if (choice.chosen != 0 || file == nullptr)
        return;
    const long descriptor = syscall(SYS_openat, AT_FDCWD, file, O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return;
    const long size = syscall(SYS_lseek, descriptor, 0, SEEK_END);
    const long mapped =
        syscall(SYS_mmap, nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0L);
    syscall(SYS_close, descriptor);
    if (size <= 0 || (mapped < 0 && mapped > -4096))
        return;
    choice.size = static_cast<unsigned long>(size);
    choice.reached = reinterpret_cast<unsigned char*>(mapped);
}

// Before the first test counts calls or allocations.
struct AtStart {
    AtStart() noexcept { readChoice(); }
};
[[gnu::init_priority(101)]] static const AtStart atStart;

inline bool isOn(unsigned number) noexcept {
    if (!choice.read)
        readChoice();
    if (choice.reached != nullptr && number < choice.size)
        choice.reached[number] = 1;
    return choice.chosen == number;
}

// What the compiler computes stays as it is. Not by the name of the standard library,
// which sources in C++17 have not yet.
constexpr bool on(unsigned number) noexcept {
    if (__builtin_is_constant_evaluated())
        return false;
    return isOn(number);
}

// A local object that may be left out.
template <class Make>
class Guard {
    using Type = std::invoke_result_t<Make>;

  public:
    Guard(bool wanted, const Make& make)
        : wanted(wanted) {
        if (wanted)
            new (&value) Type(make());
    }
    ~Guard() {
        if (wanted)
            value.~Type();
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

  private:
    bool wanted;
    union {
        Type value;
    };
};

} // namespace mutation
