#include "tests/hosts/jackrecorder.h"

#include <algorithm>
#include <cstdlib>
#include <jack/jack.h>
#include <stdexcept>

namespace mirelon::test {

JackRecorder::JackRecorder(const JackServer& server) {
    for (const auto& [name, value] : server.variables())
        setenv(name.c_str(), value.c_str(), 1);
    client = jack_client_open("recorder", JackNoStartServer, nullptr);
    if (client == nullptr)
        throw std::runtime_error("the JACK server takes no recorder");
    const char* const names[] = {"left", "right"};
    for (std::size_t side = 0; side < 2; ++side) {
        inputs[side] =
            jack_port_register(client, names[side], JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        recorded[side].resize(std::size_t{60} * JackServer::rate);
    }
    output = jack_port_register(client, "constant", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
    jack_set_process_callback(client, &JackRecorder::process, this);
    if (jack_activate(client) != 0)
        throw std::runtime_error("the JACK server does not run the recorder");
}

JackRecorder::~JackRecorder() {
    jack_client_close(client);
}

bool JackRecorder::recordFrom(const std::string& name) {
    return connect(name, JackPortIsOutput);
}

bool JackRecorder::playTo(const std::string& name) {
    return connect(name, JackPortIsInput);
}

bool JackRecorder::connect(const std::string& name, unsigned long direction) {
    const std::unique_ptr<const char*, decltype(&jack_free)> ports(
        jack_get_ports(client, ("^" + name + ":").c_str(), JACK_DEFAULT_AUDIO_TYPE, direction),
        [](void* list) { jack_free(list); });
    if (!ports || ports.get()[0] == nullptr || ports.get()[1] == nullptr)
        return false;
    for (std::size_t side = 0; side < 2; ++side) {
        const char* const port = ports.get()[side];
        const int failure = direction == JackPortIsOutput
                                ? jack_connect(client, port, jack_port_name(inputs[side]))
                                : jack_connect(client, jack_port_name(output), port);
        if (failure != 0)
            return false;
    }
    return true;
}

int JackRecorder::process(unsigned count, void* self) {
    auto& recorder = *static_cast<JackRecorder*>(self);
    auto* const out = static_cast<float*>(jack_port_get_buffer(recorder.output, count));
    std::fill_n(out, count, recorder.constant.load());
    const std::size_t before = recorder.frames;
    const std::size_t part = std::min<std::size_t>(count, recorder.recorded[0].size() - before);
    for (std::size_t side = 0; side < 2; ++side)
        std::copy_n(static_cast<const float*>(jack_port_get_buffer(recorder.inputs[side], count)),
                    part, recorder.recorded[side].begin() + static_cast<std::ptrdiff_t>(before));
    recorder.frames = before + part;
    return 0;
}

} // namespace mirelon::test
