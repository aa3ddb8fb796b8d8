// A record with fewer than no parameters.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.numParams = -1;
    return &effect;
}
