// A place for the effect's files while it is being checked.
#pragma once

#include <filesystem>
#include <sys/types.h>

namespace mirelon::validator {

// Keeps the user's files as they are. However this process ends, by a signal or
// killed, the folder goes and with it the process group that was last named: a
// keeper, a process of its own, waits for that. Made while there is one thread.
class ScratchHome {
  public:
    ScratchHome(); // throws std::system_error
    // Returns once the folder is gone.
    ~ScratchHome();
    ScratchHome(const ScratchHome&) = delete;
    ScratchHome& operator=(const ScratchHome&) = delete;

    // The effect's home, and a folder for the reports about it.
    std::filesystem::path folder() const { return path / "home"; }
    std::filesystem::path reports() const { return path; }

    // The group that is not to outlive this process; 0: none any more.
    void guard(pid_t group) const;

  private:
    std::filesystem::path path;
    int toKeeper = -1;
    pid_t keeper = -1;
};

} // namespace mirelon::validator
