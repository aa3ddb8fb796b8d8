// Memory that something leaves behind each time that it is done.
#pragma once

#include <cstddef>
#include <functional>
#include <malloc.h>

namespace mirelon::test {

// Bytes that are allocated in this process; 0 where the allocator does not count, as
// under a sanitizer.
inline std::size_t bytesInUse() {
    return mallinfo2().uordblks;
}

// Whether the bytes in use grow by `leak` or more in each of a dozen rounds, behind a first
// one. Caches fill once, and again when their time has come; what is left behind is
// left in every round.
inline bool growsInEveryRound(std::size_t leak, const std::function<void()>& round) {
    constexpr int rounds = 12;
    round();
    std::size_t before = bytesInUse();
    for (int i = 0; i < rounds; ++i) {
        round();
        const std::size_t after = bytesInUse();
        if (after < before + leak)
            return false;
        before = after;
    }
    return true;
}

} // namespace mirelon::test
