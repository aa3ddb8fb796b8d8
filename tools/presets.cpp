#include "tools/presets.h"

#include "hosting/effectbank.h"
#include "tools/commanderror.h"
#include "tools/nearestname.h"

#include <charconv>

namespace mirelon::tools {

Presets::Presets(hosting::Effect& effect_)
    : effect(effect_) {
    const auto bank = hosting::bankOf(effect);
    inChunk = bank.has_value();
    const auto count =
        inChunk ? bank->presets.size() : static_cast<std::size_t>(effect.record().numPrograms);
    for (std::size_t i = 0; i < count; ++i) {
        std::string name = effect.programNameAt(static_cast<VstInt32>(i)).value_or("");
        if (name.empty() && inChunk)
            name = bank->presets[i].name().data();
        else if (name.empty() && i == static_cast<std::size_t>(effect.program()))
            name = effect.programName();
        list.push_back(std::move(name));
    }
}

std::size_t Presets::current() const {
    const auto bank = inChunk ? hosting::bankOf(effect) : std::nullopt;
    return bank ? bank->current.value_or(bank->presets.size())
                : static_cast<std::size_t>(effect.program());
}

void Presets::select(std::size_t number) {
    if (auto bank = inChunk ? hosting::bankOf(effect) : std::nullopt) {
        bank->current = number;
        hosting::giveBank(effect, *bank);
    } else {
        effect.setProgram(static_cast<VstIntPtr>(number));
    }
    if (current() != number)
        throw CommandError("the plug-in does not take preset " + std::to_string(number));
}

std::size_t Presets::find(const std::string& numberOrName) const {
    if (trimmed(numberOrName).empty())
        throw CommandError("a preset goes by its number or its name, not by \"\"");
    std::size_t number = 0;
    const char* const end = numberOrName.data() + numberOrName.size();
    const auto [rest, failure] = std::from_chars(numberOrName.data(), end, number);
    if (failure == std::errc{} && rest == end) {
        if (list.empty())
            throw CommandError("the plug-in has no presets");
        if (number >= list.size())
            throw CommandError("no preset " + numberOrName + ", they are numbered 0 to " +
                               std::to_string(list.size() - 1));
        return number;
    }
    const auto found = findName(numberOrName, list);
    if (!found)
        throw CommandError(unknownName("preset", numberOrName, list));
    return *found;
}

} // namespace mirelon::tools
