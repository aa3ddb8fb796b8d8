// What a user can have a player do, and by which keys.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace mirelon::tools {

enum class PlayerAction {
    playOrStop,
    back,    // by some seconds
    forward, // likewise
    toBegin,
    loop,
    bypass,
    equalLoudness,
    quit
};

// Of a key of a window, by its X keysym; nothing for a key without a meaning.
std::optional<PlayerAction> actionOfKeysym(unsigned long keysym);

// Of what a terminal sends for the same keys. Whatever else is in the text, whole
// sequences of other keys included, means nothing.
std::vector<PlayerAction> actionsOfText(std::string_view text);

// For people: the keys and their meanings in a line.
std::string_view playerKeysHelp();

} // namespace mirelon::tools
