// What can be seen of processes from outside.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <sys/types.h>
#include <unistd.h>

namespace mirelon::test {

// Whether there is a process of this number; one that has ended counts until
// its parent has collected it.
inline bool processExists(pid_t process) {
    return kill(process, 0) == 0 || errno != ESRCH;
}

// The same without one that has ended and that nobody has collected.
inline bool isRunning(pid_t process) {
    std::ifstream command("/proc/" + std::to_string(process) + "/cmdline");
    return command.peek() != std::ifstream::traits_type::eof();
}

// The process number that a program has written to a file; nothing while the file
// is not there or its line is not whole.
inline std::optional<pid_t> numberIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    pid_t number = 0;
    if (!(stream >> number) || stream.get() != '\n')
        return std::nullopt;
    return number;
}

// The end of a shell's script: what it becomes leaves the process group that it led for
// that of a child, and stays a minute. (There need not be another group: in a name space
// of processes of their own, the one around may have no number.)
inline constexpr const char* leaveOwnGroup = R"(exec python3 -c '
import os, time
child = os.fork()
if child == 0:
    os.setpgid(0, 0)
    os._exit(0)
os.waitid(os.P_PID, child, os.WEXITED | os.WNOWAIT)
os.setpgid(0, child)
time.sleep(60)')";

inline bool leadsAGroup(pid_t process) {
    return getpgid(process) == process;
}

// Whether a process has been sent a signal that it has not taken yet, as one that is stopped.
inline bool hasPending(pid_t process, int signal) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    const std::string line = "ShdPnd:";
    for (std::string word; status >> word;)
        if (std::uint64_t pending = 0; word == line && status >> std::hex >> pending)
            return (pending >> static_cast<unsigned>(signal - 1) & 1U) != 0;
    return false;
}

// The files that this process has open.
inline std::ptrdiff_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

} // namespace mirelon::test
