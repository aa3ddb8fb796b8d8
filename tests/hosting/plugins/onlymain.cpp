// The entry point under its old name only; one channel.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* oldEntryPoint(audioMasterCallback) __asm__("main");

AEffect* oldEntryPoint(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.numInputs = 1;
    effect.numOutputs = 1;
    return &effect;
}
