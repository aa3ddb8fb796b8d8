// An X server without a screen.
#pragma once

#include "hosting/childprocess.h"
#include "hosting/pipe.h"

#include <string>

namespace mirelon::test {

// Runs on a display number that it chooses itself, at most as long as the
// thread that has started it.
class XServer {
  public:
    // What it does when its last client has left.
    enum class Left { staysAsItIs, ends };

    // `screen` is WIDTHxHEIGHTxDEPTH. Waits until the server takes clients or
    // gives up.
    explicit XServer(const std::string& screen, Left left = Left::staysAsItIs);
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    // As clients name it; empty when the server gave up.
    const std::string& display() const { return name; }
    // Whether it ends of itself; waits for that.
    bool ends();
    // Ends it as a crash would.
    void kill();

  private:
    hosting::Pipe numbers;
    hosting::ChildProcess server;
    std::string name;
};

} // namespace mirelon::test
