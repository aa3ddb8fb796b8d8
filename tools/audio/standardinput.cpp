#include "tools/audio/standardinput.h"

#include "tools/commanderror.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace mirelon::tools {

namespace {

[[noreturn]] void fail(const char* what) {
    throw CommandError(std::string("standard input: ") + what + " (" + std::strerror(errno) + ")");
}

constexpr std::size_t startBytes = 12;

// The first bytes of the pipe, which stay in it; fewer when the other end is slow.
std::string startOfPipe() {
    std::array<int, 2> copy{};
    if (pipe2(copy.data(), O_CLOEXEC) != 0)
        return {};
    // The first call waits for something to come.
    constexpr int attempts = 200;
    ssize_t there = 0;
    for (int i = 0; i < attempts && there < static_cast<ssize_t>(startBytes); ++i) {
        if (i > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            std::string discarded(startBytes, '\0');
            if (read(copy[0], discarded.data(), static_cast<std::size_t>(there)) < 0)
                break;
        }
        there = tee(STDIN_FILENO, copy[1], startBytes, 0);
        if (there <= 0)
            break;
    }
    std::string start(startBytes, '\0');
    const ssize_t got = there > 0 ? read(copy[0], start.data(), startBytes) : 0;
    close(copy[0]);
    close(copy[1]);
    start.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return start;
}

// libsndfile reads these from front to back.
bool streams(std::string_view start) {
    const auto begins = [&](std::string_view kind) { return start.substr(0, 4) == kind; };
    return begins("RIFF") || begins("RIFX") || begins("FORM") || begins(".snd") || begins("dns.") ||
           begins("OggS");
}

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

int copyOfInput() {
    const std::unique_ptr<std::FILE, CloseFile> copy(std::tmpfile());
    if (!copy)
        fail("no file to keep it in");
    std::array<char, 65536> block{};
    while (true) {
        const ssize_t got = read(STDIN_FILENO, block.data(), block.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            fail("cannot be read");
        if (got == 0)
            break;
        if (std::fwrite(block.data(), 1, static_cast<std::size_t>(got), copy.get()) !=
            static_cast<std::size_t>(got))
            fail("no room to keep it");
    }
    if (std::fflush(copy.get()) != 0)
        fail("no room to keep it");
    const int descriptor = fcntl(fileno(copy.get()), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0 || lseek(descriptor, 0, SEEK_SET) != 0)
        fail("cannot be read");
    return descriptor;
}

} // namespace

InputDescriptor openStandardInput() {
    struct stat status {};
    if (fstat(STDIN_FILENO, &status) != 0)
        fail("cannot be read");
    const bool stream = S_ISFIFO(status.st_mode) && streams(startOfPipe());
    if (!stream && !S_ISREG(status.st_mode))
        return {copyOfInput(), false};
    const int descriptor = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        fail("cannot be read");
    return {descriptor, stream};
}

} // namespace mirelon::tools
