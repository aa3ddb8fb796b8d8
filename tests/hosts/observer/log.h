// The record that an observing plug-in writes.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace mirelon::test {

// One write for each line: they may come from any thread.
class Log {
  public:
    Log() {
        if (const char* file = std::getenv("MIRELON_OBSERVATIONS"))
            descriptor = open(file, O_WRONLY | O_CREAT | O_APPEND, 0644);
    }
    ~Log() = default; // hosts may call until the process is gone

    [[gnu::format(printf, 2, 3)]] void line(const char* format, ...) const {
        char text[512];
        const pid_t thread = gettid();
        int length = thread == getpid() ? std::snprintf(text, sizeof text, "main ")
                                        : std::snprintf(text, sizeof text, "%d ", thread);
        std::va_list arguments;
        va_start(arguments, format);
        length += std::vsnprintf(text + length, sizeof text - static_cast<std::size_t>(length),
                                 format, arguments);
        va_end(arguments);
        const auto end = std::min(static_cast<std::size_t>(length), sizeof text - 2);
        text[end] = '\n';
        [[maybe_unused]] const ssize_t written = write(descriptor, text, end + 1);
    }

  private:
    int descriptor = -1;
};

inline const Log& log() {
    static const Log instance;
    return instance;
}

} // namespace mirelon::test
