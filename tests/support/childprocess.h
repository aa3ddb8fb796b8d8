// Part of a test in a process of its own.
#pragma once

#include <csignal>
#include <functional>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirelon::test {

// Runs `work` in a fork of this process, which then ends at once with the
// result as its exit code.
class ChildProcess {
  public:
    explicit ChildProcess(const std::function<int()>& work)
        : child(fork()) {
        if (child == 0)
            _exit(work());
    }
    ~ChildProcess() {
        if (child > 0) {
            kill(SIGKILL);
            wait();
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void kill(int signal) const { ::kill(child, signal); }
    // The exit code, or minus the signal that ended it.
    int wait() {
        int status = 0;
        waitpid(child, &status, 0);
        child = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t child;
};

// Lets one process wait for another: made before the fork, used once.
class Signal {
  public:
    Signal() {
        if (pipe(ends) != 0)
            ends[0] = ends[1] = -1;
    }
    ~Signal() {
        close(ends[0]);
        close(ends[1]);
    }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    bool signal() const { return write(ends[1], "x", 1) == 1; }
    bool wait() const {
        char byte = 0;
        return read(ends[0], &byte, 1) == 1;
    }

  private:
    int ends[2]{};
};

inline int inChild(const std::function<int()>& work) {
    return ChildProcess(work).wait();
}

// Root is bound by no permission bits: from here on this process is nobody.
inline void becomeOrdinaryUser() {
    constexpr unsigned nobody = 65534;
    if (geteuid() == 0 &&
        (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
        _exit(99);
}

} // namespace mirelon::test
