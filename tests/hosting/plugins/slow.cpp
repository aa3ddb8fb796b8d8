// Takes its time over each block.
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>
#include <chrono>
#include <thread>

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.processReplacing = [](AEffect*, float** inputs, float** outputs, VstInt32 frames) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        for (const int channel : {0, 1})
            std::copy_n(inputs[channel], frames, outputs[channel]);
    };
    return &effect;
}
