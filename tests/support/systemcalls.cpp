#include "tests/support/systemcalls.h"

#include <algorithm>
#include <cerrno>
#include <sys/types.h>
#include <utility>

namespace mirelon::test {

namespace {

thread_local SystemCalls* inForce = nullptr;

} // namespace

SystemCalls::SystemCalls() {
    inForce = this;
}

SystemCalls::~SystemCalls() {
    inForce = nullptr;
}

SystemCalls* SystemCalls::current() {
    return inForce;
}

int SystemCalls::takeError(SystemCall call) {
    return std::exchange(errors[place(call)], 0);
}

std::size_t SystemCalls::shortened(std::size_t bytes) const {
    return longestWrite == 0 ? bytes : std::min(bytes, longestWrite);
}

namespace {

// What `work` answers, unless an error stands in its place.
template <typename Work>
auto called(SystemCall call, Work work) -> decltype(work()) {
    SystemCalls* const calls = SystemCalls::current();
    if (calls == nullptr)
        return work();
    if (const int error = calls->takeError(call)) {
        errno = error;
        return -1;
    }
    const auto answer = work();
    if (answer >= 0)
        calls->note(call);
    return answer;
}

} // namespace

} // namespace mirelon::test

using mirelon::test::called;
using mirelon::test::SystemCall;
using mirelon::test::SystemCalls;

// The names that the linker gives with -Wl,--wrap.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
ssize_t __real_read(int file, void* bytes, std::size_t count);
ssize_t __real_write(int file, const void* bytes, std::size_t count);
int __real_fsync(int file);
int __real_rename(const char* from, const char* to);

ssize_t __wrap_read(int file, void* bytes, std::size_t count) {
    return called(SystemCall::read, [&] { return __real_read(file, bytes, count); });
}
ssize_t __wrap_write(int file, const void* bytes, std::size_t count) {
    const SystemCalls* const calls = SystemCalls::current();
    const std::size_t taken = calls != nullptr ? calls->shortened(count) : count;
    return called(SystemCall::write, [&] { return __real_write(file, bytes, taken); });
}
int __wrap_fsync(int file) {
    return called(SystemCall::fsync, [&] { return __real_fsync(file); });
}
int __wrap_rename(const char* from, const char* to) {
    return called(SystemCall::rename, [&] { return __real_rename(from, to); });
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
