// One channel in and two out; its editor has a rectangle only while it is open, and
// is nothing but the host's window.
#include "tests/hosting/plugins/effectrecord.h"

#include <algorithm>

namespace {

bool opened = false;

VstIntPtr dispatch(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/,
                   void* ptr, float /*opt*/) {
    static ERect size{0, 0, 120, 200};
    switch (opcode) {
    case effEditGetRect:
        *static_cast<ERect**>(ptr) = opened ? &size : nullptr;
        return opened ? 1 : 0;
    case effEditOpen:
        opened = true;
        return 1;
    case effEditClose:
        opened = false;
        return 0;
    default:
        return 0;
    }
}

} // namespace

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback /*host*/) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.dispatcher = dispatch;
    effect.numInputs = 1;
    effect.flags |= effFlagsHasEditor;
    effect.processReplacing = [](AEffect*, float** inputs, float** outputs, VstInt32 frames) {
        for (const int channel : {0, 1})
            std::copy_n(inputs[0], frames, outputs[channel]);
    };
    return &effect;
}
