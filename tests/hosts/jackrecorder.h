// What a program plays over JACK, and something for it to record.
#pragma once

#include "tests/hosts/jackserver.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

using jack_client_t = struct _jack_client;
using jack_port_t = struct _jack_port;

namespace mirelon::test {

// A client with two inputs, of which it keeps a minute, and an output that always
// gives the same.
class JackRecorder {
  public:
    // Throws std::runtime_error when the server does not take it. Changes this
    // process's environment.
    explicit JackRecorder(const JackServer& server);
    ~JackRecorder();
    JackRecorder(const JackRecorder&) = delete;
    JackRecorder& operator=(const JackRecorder&) = delete;

    // Whether the client has two ports that play, and they are now recorded from.
    bool recordFrom(const std::string& client);
    // The constant comes in at its first two inputs. False when there are none.
    bool playTo(const std::string& client);
    void playConstantly(float sample) { constant = sample; }

    // So far, on the left and on the right.
    std::span<const float> heard(std::size_t side) const {
        return {recorded[side].data(), frames.load()};
    }

  private:
    static int process(unsigned count, void* self);
    bool connect(const std::string& client, unsigned long direction);

    jack_client_t* client = nullptr;
    std::array<jack_port_t*, 2> inputs{};
    jack_port_t* output = nullptr;
    std::array<std::vector<float>, 2> recorded;
    std::atomic<std::size_t> frames{0};
    std::atomic<float> constant{0.0F};
};

} // namespace mirelon::test
