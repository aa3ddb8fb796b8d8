// The built plug-in, as a host loads it.
#pragma once

#include "hosting/hosting.h"

#include <vector>

namespace mirelon::test {

// Loaded once per test program.
inline const hosting::Module& pluginModule() {
    static const hosting::Module module(MIRELON_PLUGIN_FILE);
    return module;
}

// An opened instance with a host of its own.
struct PluginInstance {
    hosting::RecordingHost host;
    hosting::Effect effect{pluginModule(), host};
};

// Two channels of samples, and the pointers that a process call takes.
template <typename Sample>
struct StereoBuffer {
    explicit StereoBuffer(std::size_t frames)
        : left(frames)
        , right(frames) {}
    StereoBuffer(std::vector<Sample> left, std::vector<Sample> right)
        : left(std::move(left))
        , right(std::move(right)) {}

    Sample** pointers() {
        channels[0] = left.data();
        channels[1] = right.data();
        return channels;
    }
    VstInt32 frames() const { return static_cast<VstInt32>(left.size()); }

    std::vector<Sample> left;
    std::vector<Sample> right;

  private:
    Sample* channels[2] = {};
};

// One block through a running instance.
template <typename Sample>
StereoBuffer<Sample> processed(hosting::Effect& effect, StereoBuffer<Sample> input) {
    StereoBuffer<Sample> output(input.left.size());
    effect.process(input.pointers(), output.pointers(), input.frames());
    return output;
}

} // namespace mirelon::test
