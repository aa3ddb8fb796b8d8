// The effect under check, loaded and opened.
#pragma once

#include "hosting/effect.h"
#include "hosting/pluginfile.h"
#include "validator/check.h"
#include "validator/quiethost.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace mirelon::validator {

struct Instance {
    explicit Instance(const Subject& subject)
        : module(announced(subject))
        , effect(*module, quietHost) {
        doing("open and nothing else yet");
    }

    std::unique_ptr<const hosting::PluginModule> module;
    hosting::Effect effect;

  private:
    static std::unique_ptr<const hosting::PluginModule> announced(const Subject& subject) {
        doing("loading it");
        return hosting::openPlugin(subject.plugin);
    }
};

// Suspended, rate and block size told and announced, resumed.
inline void start(hosting::Effect& effect, int rate, int block) {
    effect.suspend();
    announce(rate, block);
    effect.setSampleRate(static_cast<float>(rate));
    effect.setBlockSize(block);
    effect.resume();
}

// An effect may have thousands; those that a check visits.
inline VstInt32 visitedParameters(const hosting::Effect& effect) {
    return std::min<VstInt32>(effect.record().numParams, 512);
}

inline std::vector<float> parameterValues(const hosting::Effect& effect) {
    std::vector<float> values;
    values.reserve(static_cast<std::size_t>(effect.record().numParams));
    for (VstInt32 i = 0; i < effect.record().numParams; ++i)
        values.push_back(effect.parameter(i));
    return values;
}

} // namespace mirelon::validator
