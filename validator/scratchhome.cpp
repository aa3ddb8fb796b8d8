#include "validator/scratchhome.h"

#include "hosting/pipe.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace mirelon::validator {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// Until the last writer of the pipe is gone. A terminal's signals do not reach it.
[[noreturn]] void keep(const hosting::Pipe& pipe, const fs::path& folder) {
    setsid();
    pid_t group = 0;
    for (pid_t named = 0;;) {
        const ssize_t count = read(pipe.reader(), &named, sizeof named);
        if (count == sizeof named)
            group = named;
        else if (count >= 0 || errno != EINTR)
            break;
    }
    if (group > 0)
        kill(-group, SIGKILL);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    _exit(0);
}

} // namespace

ScratchHome::ScratchHome() {
    std::string pattern = (fs::temp_directory_path() / "mirelon-check-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        fail("no temporary folder");
    path = pattern;
    hosting::Pipe pipe;
    keeper = fork();
    if (keeper < 0)
        fail("fork");
    if (keeper == 0) {
        pipe.closeWriter();
        keep(pipe, path);
    }
    toKeeper = fcntl(pipe.writer(), F_DUPFD_CLOEXEC, 0);
    fs::create_directory(folder());
}

ScratchHome::~ScratchHome() {
    close(toKeeper);
    while (waitpid(keeper, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void ScratchHome::guard(pid_t group) const {
    // Whole or not at all: it is shorter than what a pipe writes at once.
    static_cast<void>(!write(toKeeper, &group, sizeof group));
}

} // namespace mirelon::validator
