#include "platform/folderlock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace mirelon {

FolderLock::FolderLock(const std::string& folder, Kind kind, std::chrono::milliseconds wait)
    : descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    const auto deadline = std::chrono::steady_clock::now() + wait;
    const int operation = (kind == Kind::shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    while (descriptor >= 0) {
        if (flock(descriptor, operation) == 0) {
            state = State::held;
            return;
        }
        if (errno != EWOULDBLOCK && errno != EINTR)
            return;
        state = State::refused;
        if (std::chrono::steady_clock::now() >= deadline)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

FolderLock::~FolderLock() {
    if (descriptor >= 0)
        close(descriptor); // gives the lock up
}

} // namespace mirelon
