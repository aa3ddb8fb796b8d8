#include "hosting/pipe.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace mirelon::hosting {

namespace {

constexpr std::chrono::milliseconds longestWait{60'000}; // an int takes it

} // namespace

Pipe::Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    readEnd = ends[0];
    writeEnd = ends[1];
}

Pipe::~Pipe() {
    closeReader();
    closeWriter();
}

void Pipe::closeReader() noexcept {
    if (readEnd >= 0)
        close(readEnd);
    readEnd = -1;
}

void Pipe::closeWriter() noexcept {
    if (writeEnd >= 0)
        close(writeEnd);
    writeEnd = -1;
}

bool Pipe::readUntil(std::chrono::steady_clock::time_point end, std::string& text) const {
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        pollfd ready{readEnd, POLLIN, 0};
        if (poll(&ready, 1, static_cast<int>(std::min(left, longestWait).count())) <= 0)
            continue;
        std::array<char, 4096> buffer{};
        const ssize_t count = read(readEnd, buffer.data(), buffer.size());
        if (count == 0)
            return true;
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace mirelon::hosting
