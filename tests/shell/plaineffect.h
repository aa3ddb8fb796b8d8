// An effect that replaces nothing: it answers what the base classes answer.
#pragma once

#include "shell/audioeffectx.h"

class PlainEffect : public AudioEffectX {
  public:
    explicit PlainEffect(audioMasterCallback audioMaster = nullptr)
        : AudioEffectX(audioMaster, 1, 9) {}
    void processReplacing(float**, float**, VstInt32) override {}
};

inline VstIntPtr ask(AudioEffectX& effect, VstInt32 opcode, void* ptr = nullptr) {
    return effect.dispatcher(opcode, 0, 0, ptr, 0.0F);
}
