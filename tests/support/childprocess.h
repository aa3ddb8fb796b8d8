// Part of a test in a process of its own.
#pragma once

#include "hosting/childprocess.h"
#include "hosting/pipe.h"

#include <functional>
#include <grp.h>
#include <unistd.h>

namespace mirelon::test {

using hosting::ChildProcess;

// Lets one process wait for another: made before the fork, used once.
class Signal {
  public:
    bool signal() const { return write(pipe.writer(), "x", 1) == 1; }
    bool wait() const {
        char byte = 0;
        return read(pipe.reader(), &byte, 1) == 1;
    }

  private:
    hosting::Pipe pipe;
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
