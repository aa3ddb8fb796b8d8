// The X server without a screen for the tests of one executable.
#pragma once

#include "tests/support/xserver.h"

#include <memory>
#include <string>

namespace mirelon::test {

// Starts a server and makes it the process's display; it ends with the process.
// Throws std::runtime_error when there is no such server to start.
class VirtualDisplay {
  public:
    static VirtualDisplay& start(); // the one of this process

    const std::string& name() const { return server->display(); }

  private:
    VirtualDisplay();

    std::unique_ptr<XServer> server;
};

} // namespace mirelon::test
