// A record with nothing behind it.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect{};
    effect.magic = kEffectMagic;
    return &effect;
}
