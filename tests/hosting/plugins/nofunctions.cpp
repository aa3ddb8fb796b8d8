// A record with nothing behind it, or one that lacks only the function that the
// environment names.
#include "tests/hosting/plugins/effectrecord.h"

#include <cstdlib>
#include <string_view>

TEST_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback) {
    static AEffect effect{};
    effect = {};
    effect.magic = kEffectMagic;
    const char* const chosen = std::getenv("MIRELON_LACKS");
    if (chosen == nullptr)
        return &effect;
    effect = mirelon::test::idleRecord();
    const std::string_view lacking(chosen);
    if (lacking == "dispatcher")
        effect.dispatcher = nullptr;
    if (lacking == "setParameter")
        effect.setParameter = nullptr;
    if (lacking == "getParameter")
        effect.getParameter = nullptr;
    if (lacking == "processReplacing")
        effect.processReplacing = nullptr;
    return &effect;
}
