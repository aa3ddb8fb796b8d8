// An X server without a screen, for the tests of one executable.
#pragma once

#include <string>
#include <sys/types.h>

namespace mirelon::test {

// Starts a server on a display number that it chooses itself and makes it the
// process's display; it ends with the process. Throws std::runtime_error when
// there is no such server to start.
class VirtualDisplay {
  public:
    static VirtualDisplay& start(); // the one of this process
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    const std::string& name() const { return display; }

  private:
    VirtualDisplay();
    void launch(); // leaves `display` empty when the server gives up

    pid_t server = -1;
    std::string display;
};

} // namespace mirelon::test
