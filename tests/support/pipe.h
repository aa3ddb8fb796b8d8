// A pipe to read from when a test says so.
#pragma once

#include <array>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace mirelon::test {

class Pipe {
  public:
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe() {
        closeReader();
        closeWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int reader() const { return ends[0]; }
    void write() {
        if (::write(ends[1], "x", 1) != 1)
            throw std::runtime_error("the pipe is full");
    }
    // Takes out what has been written; answers how much that was.
    int drain() {
        std::array<char, 256> buffer{};
        const auto size = read(ends[0], buffer.data(), buffer.size());
        return size > 0 ? static_cast<int>(size) : 0;
    }
    void closeReader() { close(ends[0]); }
    void closeWriter() { close(ends[1]); }

  private:
    static void close(int& end) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
    std::array<int, 2> ends{-1, -1};
};

} // namespace mirelon::test
