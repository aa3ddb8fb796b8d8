// A record that promises double precision and does not have it.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.flags |= effFlagsCanDoubleReplacing;
    return &effect;
}
