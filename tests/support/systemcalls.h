// System calls that go otherwise than usual. Linking mirelon_test_systemcalls leads
// those of the program's own code here, not those of its shared libraries.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace mirelon::test {

enum class SystemCall { read, write, fsync, rename };

// Counts for the thread that has made it, while it lives; one at a time there.
class SystemCalls {
  public:
    SystemCalls();
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    // The next call does nothing but answer this error.
    void failNext(SystemCall call, int error) { errors[place(call)] = error; }
    // No call of write() takes more than this.
    void writeAtMost(std::size_t bytes) { longestWrite = bytes; }

    // Those that did what they should, in order.
    const std::vector<SystemCall>& made() const { return done; }

    // For the calls themselves: the error that this one has to answer, or 0.
    int takeError(SystemCall call);
    std::size_t shortened(std::size_t bytes) const;
    void note(SystemCall call) { done.push_back(call); }
    static SystemCalls* current();

  private:
    static std::size_t place(SystemCall call) { return static_cast<std::size_t>(call); }

    std::array<int, 4> errors{};
    std::size_t longestWrite = 0; // 0: as long as it is
    std::vector<SystemCall> done;
};

} // namespace mirelon::test
