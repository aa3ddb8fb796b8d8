// An advisory lock between processes (and threads): held while the object lives.
#pragma once

#include <chrono>
#include <string>

namespace mirelon {

class FileLock {
  public:
    // Creates the lock file where it is missing, and waits at most `wait`. The
    // file stays: removing it would let two users lock two files of one name.
    FileLock(const std::string& path, std::chrono::milliseconds wait);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool held() const { return locked; }

  private:
    int descriptor;
    bool locked = false;
};

} // namespace mirelon
