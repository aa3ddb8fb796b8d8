// What the effect says about itself: there, terminated, and the same each time.
#include "validator/instance.h"

#include <array>
#include <climits>
#include <cmath>
#include <cstring>

namespace mirelon::validator {

namespace {

constexpr std::size_t hostBuffer = 256;
constexpr char canary = '\x5a';

// The text that the effect writes, asked for twice; fails when it is not
// terminated within `most` bytes or differs between the calls.
std::string stableText(const hosting::Effect& effect, VstInt32 opcode, VstInt32 index,
                       std::size_t most, const std::string& what) {
    std::string text;
    for (int call = 0; call < 2; ++call) {
        std::array<char, hostBuffer> buffer{};
        buffer.fill(canary);
        buffer[0] = '\0';
        effect.dispatch(opcode, index, 0, buffer.data());
        const std::size_t length = strnlen(buffer.data(), buffer.size());
        require(length <= most, what, " is not terminated within ", most, " bytes");
        const std::string now(buffer.data(), length);
        require(call == 0 || now == text, what, " reads \"", text, "\" first and \"", now,
                "\" then");
        text = now;
    }
    return text;
}

constexpr std::size_t generousLength = 128; // what the smallest real host's buffers hold

std::string identity(const Subject& subject) {
    const Instance one(subject);
    const Instance other(subject);
    for (const auto& [opcode, what] : {std::pair{effGetEffectName, "the effect name"},
                                       std::pair{effGetVendorString, "the vendor"},
                                       std::pair{effGetProductString, "the product"}}) {
        const std::string text = stableText(one.effect, opcode, 0, generousLength, what);
        require(text == stableText(other.effect, opcode, 0, generousLength, what), what,
                " differs between two instances");
        require(opcode != effGetEffectName || !text.empty() || !one.effect.product().empty(),
                "has neither an effect name nor a product name");
    }
    for (const VstInt32 opcode : {effGetVendorVersion, effGetPlugCategory, effGetVstVersion})
        require(one.effect.dispatch(opcode) == other.effect.dispatch(opcode), "answers opcode ",
                opcode, " differently in two instances");
    require(one.effect.record().uniqueID != 0, "has no unique ID");
    return one.effect.name();
}

// What a program is made of, whatever number the effect gives it.
struct Content {
    std::vector<float> values;
    std::vector<std::byte> state;

    explicit Content(const hosting::Effect& effect)
        : values(parameterValues(effect)) {
        if (effect.hasFlag(effFlagsProgramChunks))
            state = effect.chunk();
    }
    bool operator==(const Content&) const = default;
};

std::string programs(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    const VstInt32 all = effect.record().numPrograms;
    const VstInt32 count = std::min<VstInt32>(all, 256);
    std::string misnumbered;
    for (VstInt32 i = 0; i < count; ++i) {
        doing("setting program ", i);
        const Content before(effect);
        effect.setProgram(i);
        if (const VstIntPtr now = effect.program(); now != i) {
            const std::string elsewhere = joined("is on program ", now, " after being set to ", i);
            require(before != Content(effect), elsewhere);
            if (misnumbered.empty())
                misnumbered = elsewhere + ", which it took";
            continue;
        }
        const std::string name =
            stableText(effect, effGetProgramName, 0, generousLength, "a program's name");
        if (const auto indexed = effect.programNameAt(i))
            require(*indexed == name, "calls program ", i, " \"", *indexed, "\" and \"", name, '"');
    }
    for (const VstInt32 outside : {count, INT_MAX, -1}) {
        const VstIntPtr before = effect.program();
        if (outside == count && count < all)
            continue;
        doing("setting program ", outside, ", which it does not have");
        effect.setProgram(outside);
        const VstIntPtr now = effect.program();
        require(now == before || (now >= 0 && now < std::max(1, effect.record().numPrograms)),
                "is on program ", now, " after being set to ", outside);
    }
    expect(misnumbered.empty(), misnumbered);
    return count < all ? joined(count, " of ", all, " programs") : joined(count, " programs");
}

std::string parameterTexts(const Subject& subject) {
    const Instance instance(subject);
    const hosting::Effect& effect = instance.effect;
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i) {
        doing("asking for the texts of parameter ", i);
        const std::string which = " of parameter " + std::to_string(i);
        const std::string name =
            stableText(effect, effGetParamName, i, generousLength, "the name" + which);
        require(!name.empty(), "the name", which, " is empty");
        stableText(effect, effGetParamLabel, i, generousLength, "the label" + which);
        stableText(effect, effGetParamDisplay, i, generousLength, "the display" + which);
    }
    return std::to_string(effect.record().numParams) + " parameters";
}

std::string parameterValueRange(const Subject& subject) {
    const Instance instance(subject);
    for (VstInt32 i = 0; i < visitedParameters(instance.effect); ++i) {
        doing("asking for the value of parameter ", i);
        const float value = instance.effect.parameter(i);
        require(value >= 0.0F && value <= 1.0F, "parameter ", i, " reads ", value);
        require(value == instance.effect.parameter(i), "parameter ", i,
                " changes without being set");
    }
    return {};
}

std::string parameterProperties(const Subject& subject) {
    const Instance instance(subject);
    int described = 0;
    for (VstInt32 i = 0; i < visitedParameters(instance.effect); ++i) {
        doing("asking for the properties of parameter ", i);
        const auto first = instance.effect.parameterProperties(i);
        const auto second = instance.effect.parameterProperties(i);
        require(first.has_value() == second.has_value(), "describes parameter ", i,
                " only sometimes");
        if (!first)
            continue;
        ++described;
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bytes are meant
        require(std::memcmp(&*first, &*second, sizeof *first) == 0, "describes parameter ", i,
                " differently each time");
        require(strnlen(first->label, sizeof first->label) < sizeof first->label,
                "the label in the properties of parameter ", i, " is not terminated");
        require((first->flags & kVstParameterUsesIntegerMinMax) == 0 ||
                    first->minInteger <= first->maxInteger,
                "parameter ", i, " has an integer range from ", first->minInteger, " to ",
                first->maxInteger);
    }
    return std::to_string(described) + " described";
}

constexpr std::array identityTable{
    Check{"identity-stable", 2, Formats::all, identity, 30},
    Check{"programs-stable", 2, Formats::all, programs, 60},
    Check{"parameter-texts-stable", 2, Formats::all, parameterTexts, 60},
    Check{"parameter-values-in-range", 2, Formats::all, parameterValueRange, 30},
    Check{"parameter-properties-stable", 2, Formats::vst2, parameterProperties, 30},
};

} // namespace

std::span<const Check> identityChecks() {
    return identityTable;
}

} // namespace mirelon::validator
