// Crashes when it is given a block that begins with a loud sample.
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>
#include <csignal>

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.processReplacing = [](AEffect*, float** inputs, float** outputs, VstInt32 frames) {
        if (inputs[0][0] > 0.9F)
            std::raise(SIGKILL);
        for (const int channel : {0, 1})
            std::copy_n(inputs[channel], frames, outputs[channel]);
    };
    return &effect;
}
