// A record that is none.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect = mirelon::test::idleRecord();
    effect.magic = fourCharacters("PtsV");
    return &effect;
}
