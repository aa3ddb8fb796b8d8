// A record for effects that exist to be hosted in tests.
#pragma once

#include "shell/vst24.h"

#define TEST_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

namespace mirelon::test {

// A call of a dispatcher; what its pointer points to is not kept.
struct Dispatched {
    VstInt32 opcode;
    VstInt32 index = 0;
    VstIntPtr value = 0;
    float opt = 0.0F;
    bool operator==(const Dispatched&) const = default;
};

inline VstIntPtr answerNothing(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float) {
    return 0;
}
inline void processNothing(AEffect*, float**, float**, VstInt32) {}
inline void setNothing(AEffect*, VstInt32, float) {}
inline float getNothing(AEffect*, VstInt32) {
    return 0.0F;
}

// Two channels in and out, no parameters; every function is there and idle.
inline AEffect idleRecord() {
    AEffect effect{};
    effect.magic = kEffectMagic;
    effect.dispatcher = answerNothing;
    effect.process = processNothing;
    effect.setParameter = setNothing;
    effect.getParameter = getNothing;
    effect.processReplacing = processNothing;
    effect.numInputs = 2;
    effect.numOutputs = 2;
    effect.flags = effFlagsCanReplacing;
    effect.uniqueID = fourCharacters("TEST");
    return effect;
}

} // namespace mirelon::test
