#include "platform/filelock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace mirelon {

FileLock::FileLock(const std::string& path, std::chrono::milliseconds wait)
    : descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    const auto deadline = std::chrono::steady_clock::now() + wait;
    while (descriptor >= 0 && !locked) {
        locked = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
        if (locked || std::chrono::steady_clock::now() >= deadline)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

FileLock::~FileLock() {
    if (descriptor >= 0)
        close(descriptor); // gives the lock up
}

} // namespace mirelon
