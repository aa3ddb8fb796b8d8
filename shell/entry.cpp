// The two names by which hosts find the plug-in.
#include "shell/audioeffect.h"

namespace {

// The record of a new, independent instance; null when the callback is missing
// or does not answer its version, or when the instance cannot be built.
AEffect* newInstance(audioMasterCallback audioMaster) noexcept {
    try {
        if (audioMaster == nullptr ||
            audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F) == 0)
            return nullptr;
        AudioEffect* effect = createEffectInstance(audioMaster);
        return effect != nullptr ? effect->getAeffect() : nullptr;
    } catch (...) {
        return nullptr;
    }
}

} // namespace

#define MIRELON_EXPORT extern "C" __attribute__((visibility("default")))

MIRELON_EXPORT AEffect* VSTPluginMain(audioMasterCallback audioMaster) {
    return newInstance(audioMaster);
}

MIRELON_EXPORT AEffect* main_macho(audioMasterCallback audioMaster) {
    return newInstance(audioMaster);
}
