// A JACK server of a test's own that needs no sound card.
#pragma once

#include "tests/hosts/hosthome.h"
#include "tests/hosts/program.h"

#include <memory>
#include <string>

namespace mirelon::test {

class JackServer {
  public:
    static constexpr int rate = 48000;
    static constexpr int blockFrames = 1024;

    static bool isInstalled();

    // Waits until the server takes clients; throws std::runtime_error when it
    // does not come to that.
    explicit JackServer(const HostHome& home);
    // Its clients should be gone by then. What the server had in shared memory
    // goes with it.
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    // By which a client finds this server and no other.
    Environment variables() const;

  private:
    std::string name;
    std::unique_ptr<Program> server;
};

} // namespace mirelon::test
