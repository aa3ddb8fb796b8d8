// An advisory lock on a folder between processes and threads: held while the
// object lives, and given up when its process ends, however it ends.
#pragma once

#include <chrono>
#include <string>

namespace mirelon {

class FolderLock {
  public:
    enum class Kind {
        shared,   // beside other shared ones
        exclusive // alone
    };

    // Waits at most `wait` for those who hold it. Leaves no trace.
    FolderLock(const std::string& folder, Kind kind, std::chrono::milliseconds wait);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool held() const { return state == State::held; }
    // Others held it all the time. Neither held nor refused: the folder cannot
    // be opened or its file system has no locks.
    bool refused() const { return state == State::refused; }

  private:
    enum class State { unavailable, refused, held };

    int descriptor;
    State state = State::unavailable;
};

} // namespace mirelon
