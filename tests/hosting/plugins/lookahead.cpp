// Adds to what came three frames ago what comes now: three frames of latency, and what
// follows the end of a sound is heard before it.
#include "tests/hosting/plugins/effectrecord.h"

#include <array>
#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t latency = 3;

std::array<std::array<float, latency>, 2> held{};
std::size_t at = 0;

} // namespace

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback /*host*/) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.initialDelay = latency;
    effect.processReplacing = [](AEffect*, float** inputs, float** outputs, VstInt32 frames) {
        for (VstInt32 i = 0; i < frames; ++i) {
            for (const std::size_t channel : {0U, 1U})
                outputs[channel][i] =
                    inputs[channel][i] + std::exchange(held[channel][at], inputs[channel][i]);
            at = (at + 1) % latency;
        }
    };
    return &effect;
}
