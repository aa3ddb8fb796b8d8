// A pipe between two processes.
#pragma once

#include <chrono>
#include <string>

namespace mirelon::hosting {

// Made before the other process is. Both ends are closed on exec and with the
// object.
class Pipe {
  public:
    Pipe(); // throws std::system_error
    ~Pipe();
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int reader() const noexcept { return readEnd; }
    int writer() const noexcept { return writeEnd; }
    void closeReader() noexcept;
    void closeWriter() noexcept;

    // Appends what arrives until the last writer is gone; false when the time
    // was up before.
    bool readUntil(std::chrono::steady_clock::time_point end, std::string& text) const;

  private:
    int readEnd = -1;
    int writeEnd = -1;
};

} // namespace mirelon::hosting
