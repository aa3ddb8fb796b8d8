// An entry point that makes no instance.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    return nullptr;
}
