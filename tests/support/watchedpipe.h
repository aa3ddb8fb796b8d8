// A pipe to read from when a test says so.
#pragma once

#include "hosting/pipe.h"

#include <array>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace mirelon::test {

class WatchedPipe : public hosting::Pipe {
  public:
    WatchedPipe() {
        for (const int end : {reader(), writer()})
            fcntl(end, F_SETFL, O_NONBLOCK);
    }

    void write() {
        if (::write(writer(), "x", 1) != 1)
            throw std::runtime_error("the pipe is full");
    }
    // Takes out what has been written; answers how much that was.
    int drain() {
        std::array<char, 256> buffer{};
        const auto size = read(reader(), buffer.data(), buffer.size());
        return size > 0 ? static_cast<int>(size) : 0;
    }
};

} // namespace mirelon::test
