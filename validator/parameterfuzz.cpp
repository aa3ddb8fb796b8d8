// Values and indices that no parameter has.
#include "validator/audioblock.h"
#include "validator/instance.h"

#include <array>
#include <climits>
#include <limits>

namespace mirelon::validator {

namespace {

using Limits = std::numeric_limits<float>;

constexpr std::array strangeValues{Limits::quiet_NaN(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   -1.0F,
                                   2.0F,
                                   Limits::denorm_min(),
                                   -Limits::denorm_min(),
                                   Limits::min() / 2,
                                   Limits::max(),
                                   Limits::lowest(),
                                   -0.0F,
                                   1.0F + Limits::epsilon()};

// Everything a host asks for when a parameter has moved. The audio may be
// anything, so long as it stays within its buffers.
void look(hosting::Effect& effect, Buffers<float>& buffers, VstInt32 index) {
    effect.parameter(index);
    effect.parameterDisplay(index);
    effect.process(buffers.in.data(), buffers.out.data(), buffers.in.frames());
    require(buffers.in.guardsIntact() && buffers.out.guardsIntact(),
            "wrote outside its buffers after a strange value of parameter ", index);
}

// Ordinary values again, and a fresh start: the damage must be gone.
void requireRecovery(hosting::Effect& effect, const std::vector<float>& values,
                     std::uint64_t seed) {
    doing("setting ordinary values again");
    for (std::size_t i = 0; i < values.size(); ++i)
        effect.setParameter(static_cast<VstInt32>(i), values[i]);
    start(effect, 48000, 128);
    Buffers<float> buffers(effect, 128);
    Noise noise(seed);
    for (int i = 0; i < 4; ++i) {
        buffers.in.fill(noise);
        buffers.process(effect, "with ordinary values after strange ones");
    }
}

std::string strange(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    const auto ordinary = parameterValues(effect);
    Noise noise(subject.seed);
    start(effect, 48000, 128);
    Buffers<float> buffers(effect, 128);
    buffers.in.fill(noise);
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i) {
        for (const float value : strangeValues) {
            doing("setting parameter ", i, " to ", value);
            effect.setParameter(i, value);
            look(effect, buffers, i);
        }
        effect.setParameter(i, ordinary[static_cast<std::size_t>(i)]);
    }
    requireRecovery(effect, ordinary, subject.seed);
    return {};
}

std::string indices(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    const VstInt32 count = effect.record().numParams;
    const auto ordinary = parameterValues(effect);
    start(effect, 48000, 128);
    Buffers<float> buffers(effect, 128);
    for (const VstInt32 index : {-1, count, count + 1, 1000000, INT_MAX, INT_MIN}) {
        doing("setting parameter ", index, ", which it does not have");
        effect.setParameter(index, 0.123F); // hardly what a parameter has already
        look(effect, buffers, index);
        effect.parameterName(index);
        effect.parameterLabel(index);
        effect.parameterProperties(index);
        effect.canBeAutomated(index);
    }
    const auto now = parameterValues(effect);
    for (std::size_t i = 0; i < ordinary.size(); ++i)
        require(now[i] == ordinary[i], "parameter ", i,
                " is moved by an index that no parameter has");
    return {};
}

std::string random(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    const VstInt32 count = visitedParameters(effect);
    if (count == 0)
        throw Skipped("has no parameters");
    const auto ordinary = parameterValues(effect);
    Noise noise(subject.seed);
    start(effect, 48000, 128);
    Buffers<float> buffers(effect, 128);
    buffers.in.fill(noise);
    for (int i = 0; i < 3000; ++i) {
        const auto index = static_cast<VstInt32>(noise.below(static_cast<std::uint32_t>(count)));
        const std::uint32_t bits = noise.bits();
        float value = 0.0F;
        std::memcpy(&value, &bits, sizeof value);
        doing("setting parameter ", index, " to ", value);
        effect.setParameter(index, value);
        look(effect, buffers, index);
    }
    requireRecovery(effect, ordinary, subject.seed);
    return {};
}

constexpr std::array parameterfuzzTable{
    Check{"parameter-strange-values", 8, Formats::all, strange, 120, Guard::none,
          Severity::unusual},
    Check{"parameter-strange-indices", 8, Formats::vst2, indices, 30, Guard::none,
          Severity::unusual},
    Check{"parameter-random-bits", 8, Formats::all, random, 120, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> parameterFuzzChecks() {
    return parameterfuzzTable;
}

} // namespace mirelon::validator
