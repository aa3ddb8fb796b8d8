// Automation: every parameter moves in every block.
#include "validator/audioblock.h"
#include "validator/instance.h"

#include <array>

namespace mirelon::validator {

namespace {

std::string everyBlock(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    const VstInt32 count = visitedParameters(effect);
    if (count == 0)
        throw Skipped("has no parameters");
    Noise noise(subject.seed);
    start(effect, 48000, 256);
    Buffers<float> buffers(effect, 256);
    for (int block = 0; block < 500; ++block) {
        doing("setting every parameter in block ", block);
        for (VstInt32 i = 0; i < count; ++i)
            effect.setParameter(i, noise.fraction());
        buffers.in.fill(noise);
        buffers.process(effect, "in automated block ", block);
    }
    for (VstInt32 i = 0; i < count; ++i) {
        const float value = effect.parameter(i);
        require(value >= 0.0F && value <= 1.0F, "parameter ", i, " reads ", value,
                " after automation");
    }
    return {};
}

// The last value that a host sends is the one that holds.
std::string lastValueHolds(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    start(effect, 48000, 64);
    Buffers<float> buffers(effect, 64);
    Noise noise(subject.seed);
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i) {
        for (const float value : {0.0F, 1.0F}) {
            doing("setting parameter ", i, " to ", value, " while audio runs");
            effect.setParameter(i, value);
            const float atOnce = effect.parameter(i);
            buffers.in.fill(noise);
            buffers.process(effect, "after setting parameter ", i);
            const float later = effect.parameter(i);
            require(later == atOnce, "parameter ", i, " drifts from ", atOnce, " to ", later,
                    " while audio runs");
        }
    }
    return {};
}

constexpr std::array automationTable{
    Check{"automation-every-block", 5, Formats::all, everyBlock, 120},
    Check{"automation-holds", 5, Formats::all, lastValueHolds, 60},
};

} // namespace

std::span<const Check> automationChecks() {
    return automationTable;
}

} // namespace mirelon::validator
