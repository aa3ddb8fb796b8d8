// State: what is saved comes back, here, in a new instance, and whether or not
// the editor is open.
#include "validator/audioblock.h"
#include "validator/checkededitor.h"
#include "validator/instance.h"

#include <array>
#include <optional>

namespace mirelon::validator {

namespace {

using namespace std::chrono_literals;

std::vector<std::byte> stateOf(const hosting::Effect& effect) {
    if (!effect.hasFlag(effFlagsProgramChunks))
        throw Skipped("keeps no state of its own");
    std::vector<std::byte> state = effect.chunk();
    require(!state.empty(), "answers with an empty state");
    return state;
}

void scramble(hosting::Effect& effect, std::uint64_t seed) {
    Noise noise(seed);
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i)
        effect.setParameter(i, noise.fraction());
}

void requireSame(const std::vector<float>& now, const std::vector<float>& saved) {
    for (std::size_t i = 0; i < saved.size(); ++i)
        require(now.at(i) == saved[i], "brings parameter ", i, " back as ", now[i],
                " where it was ", saved[i]);
}

std::string roundTrip(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    scramble(effect, subject.seed);
    const auto state = stateOf(effect);
    const auto values = parameterValues(effect);
    require(effect.chunk() == state, "writes another state when it is asked again");
    scramble(effect, subject.seed + 1);
    effect.setChunk(state);
    requireSame(parameterValues(effect), values);
    require(effect.chunk() == state, "writes another state than it was given");
    return std::to_string(state.size()) + " bytes";
}

std::string freshInstance(const Subject& subject) {
    std::vector<std::byte> state;
    std::vector<float> values;
    {
        Instance instance(subject);
        scramble(instance.effect, subject.seed);
        state = stateOf(instance.effect);
        values = parameterValues(instance.effect);
    }
    Instance fresh(subject);
    fresh.effect.setChunk(state);
    requireSame(parameterValues(fresh.effect), values);
    require(fresh.effect.chunk() == state, "writes another state than it was given");
    return {};
}

std::string withEditor(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    CheckedEditor editor(effect);
    scramble(effect, subject.seed);
    const auto state = stateOf(effect);
    const auto values = parameterValues(effect);
    scramble(effect, subject.seed + 1);

    editor.open();
    effect.setChunk(state);
    editor.idle(100ms);
    requireSame(parameterValues(effect), values);
    require(effect.chunk() == state, "writes another state with its editor open");
    editor.close();
    requireSame(parameterValues(effect), values);
    require(effect.chunk() == state, "writes another state once its editor is closed");
    return {};
}

constexpr std::array table{
    Check{"state-round-trip", 4, Formats::all, roundTrip, 30},
    Check{"state-fresh-instance", 4, Formats::all, freshInstance, 30},
    Check{"state-with-editor", 4, Formats::all, withEditor, 60},
};

} // namespace

std::span<const Check> stateChecks() {
    return table;
}

} // namespace mirelon::validator
