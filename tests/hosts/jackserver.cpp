#include "tests/hosts/jackserver.h"

#include <atomic>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace mirelon::test {
namespace {

constexpr auto serverFile = "/usr/bin/jackd";
// Milliseconds before it lets a client go, which answers late on a busy machine.
constexpr auto patience = "20000";

// No other server on the machine has this name.
std::string uniqueName() {
    static std::atomic<int> servers{0};
    return "mirelon-" + std::to_string(getpid()) + '-' + std::to_string(++servers);
}

} // namespace

bool JackServer::isInstalled() {
    return isExecutable(serverFile);
}

JackServer::JackServer(const HostHome& home)
    : name(uniqueName())
    , server(std::make_unique<Program>(
          std::vector<std::string>{serverFile, "-n", name, "--no-realtime", "-t", patience, "-d",
                                   "dummy", "-r", std::to_string(rate), "-p",
                                   std::to_string(blockFrames)},
          home.environment(), home / "jackd.log")) {
    // The socket at which it takes clients.
    const std::string socket = "/dev/shm/jack_" + name + '_' + std::to_string(getuid()) + "_0";
    if (!eventually(std::chrono::seconds(30), [&] { return std::filesystem::exists(socket); }))
        throw std::runtime_error("no JACK server: " + contentsOf(home / "jackd.log"));
}

JackServer::~JackServer() {
    server->end(std::chrono::seconds(10));
}

Environment JackServer::variables() const {
    return {{"JACK_DEFAULT_SERVER", name}, {"JACK_NO_START_SERVER", "1"}};
}

} // namespace mirelon::test
