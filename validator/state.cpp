// State: what is saved comes back, here, in a new instance, and whether or not
// the editor is open.
#include "validator/audioblock.h"
#include "validator/checkededitor.h"
#include "validator/instance.h"

#include <array>
#include <cmath>

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

void giveBack(hosting::Effect& effect, const std::vector<std::byte>& state) {
    doing("given back its own state of ", state.size(), " bytes");
    effect.setChunk(state);
}

void scramble(hosting::Effect& effect, std::uint64_t seed) {
    Noise noise(seed);
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i)
        effect.setParameter(i, noise.fraction());
}

// Whether the parameter has more than one text. One that says the same of all values
// says nothing about the value that came back.
bool showsMore(hosting::Effect& effect, std::size_t number) {
    const auto index = static_cast<VstInt32>(number);
    const float before = effect.parameter(index);
    effect.setParameter(index, 0.0F);
    const std::string lowest = effect.parameterDisplay(index);
    effect.setParameter(index, 1.0F);
    const bool more = effect.parameterDisplay(index) != lowest;
    effect.setParameter(index, before);
    return more;
}

// Whether the state has one step for both values, and others besides: a switch, whose
// positions the display does not tell.
bool isOneStep(hosting::Effect& effect, std::size_t number, float one, float other) {
    const auto index = static_cast<VstInt32>(number);
    const float before = effect.parameter(index);
    const auto stateAt = [&](float value) {
        effect.setParameter(index, value);
        return effect.chunk();
    };
    const auto step = stateAt(one);
    const bool same = step == stateAt(other) && (step != stateAt(0.0F) || step != stateAt(1.0F));
    effect.setParameter(index, before);
    return same;
}

// Each parameter with what it shows: a switch at 0.55 may come back as 1, so long as
// it shows the same.
struct ShownValue {
    float value;
    std::string shown;
};

std::vector<ShownValue> shownValues(const hosting::Effect& effect) {
    std::vector<ShownValue> values;
    values.reserve(static_cast<std::size_t>(visitedParameters(effect)));
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i)
        values.push_back({effect.parameter(i), effect.parameterDisplay(i)});
    return values;
}

void requireSame(hosting::Effect& effect, const std::vector<ShownValue>& saved) {
    constexpr float rounding = 1e-3F; // as of a state that is a text
    const std::vector<ShownValue> now = shownValues(effect);
    std::string slight;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        const float difference = std::fabs(now[i].value - saved[i].value);
        if (difference == 0.0F || (now[i].shown == saved[i].shown && showsMore(effect, i)))
            continue;
        const std::string change =
            joined("brings parameter ", i, " back as ", now[i].value, " (\"", now[i].shown,
                   "\") where it was ", saved[i].value, " (\"", saved[i].shown, "\")");
        require(difference <= rounding || isOneStep(effect, i, saved[i].value, now[i].value),
                change);
        if (slight.empty())
            slight = change;
    }
    expect(slight.empty(), slight);
}

void expectSame(const std::vector<std::byte>& now, const std::vector<std::byte>& then,
                const char* when) {
    expect(now == then, "writes another state ", when, " (", now.size(), " bytes, before ",
           then.size(), ')');
}

std::string roundTrip(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    scramble(effect, subject.seed);
    const auto values = shownValues(effect);
    const auto state = stateOf(effect);
    const auto again = effect.chunk();
    scramble(effect, subject.seed + 1);
    giveBack(effect, state);
    requireSame(effect, values);
    expectSame(again, state, "when it is asked again");
    expectSame(effect.chunk(), state, "than it was given");
    return std::to_string(state.size()) + " bytes";
}

std::string freshInstance(const Subject& subject) {
    std::vector<std::byte> state;
    std::vector<ShownValue> values;
    {
        Instance instance(subject);
        scramble(instance.effect, subject.seed);
        values = shownValues(instance.effect);
        state = stateOf(instance.effect);
    }
    Instance fresh(subject);
    giveBack(fresh.effect, state);
    requireSame(fresh.effect, values);
    expectSame(fresh.effect.chunk(), state, "than it was given");
    return {};
}

std::string stateWithEditor(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    CheckedEditor editor(effect);
    scramble(effect, subject.seed);
    const auto values = shownValues(effect);
    const auto state = stateOf(effect);
    scramble(effect, subject.seed + 1);

    editor.open();
    giveBack(effect, state);
    editor.idle(100ms);
    requireSame(effect, values);
    editor.close();
    requireSame(effect, values);
    expectSame(effect.chunk(), state, "once its editor is closed");
    return {};
}

constexpr std::array stateTable{
    Check{"state-round-trip", 4, Formats::all, roundTrip, 30},
    Check{"state-fresh-instance", 4, Formats::all, freshInstance, 30},
    Check{"state-with-editor", 4, Formats::all, stateWithEditor, 60},
};

} // namespace

std::span<const Check> stateChecks() {
    return stateTable;
}

} // namespace mirelon::validator
