// A host's callback that neither locks nor allocates, so that what a checked
// call does in between is the effect's own doing.
#pragma once

#include "shell/vst24.h"

namespace mirelon::validator {

// Any thread.
VstIntPtr quietHost(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                    float opt) noexcept;

// What the host answers from now on when it is asked for its rate and block
// size. Any thread.
void announce(int sampleRate, int blockSize) noexcept;

} // namespace mirelon::validator
