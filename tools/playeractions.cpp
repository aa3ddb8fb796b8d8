#include "tools/playeractions.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <utility>

namespace mirelon::tools {

namespace {

using Letters = std::array<std::pair<char, PlayerAction>, 5>;
constexpr Letters letters{{{' ', PlayerAction::playOrStop},
                           {'l', PlayerAction::loop},
                           {'b', PlayerAction::bypass},
                           {'e', PlayerAction::equalLoudness},
                           {'q', PlayerAction::quit}}};

constexpr std::array<std::pair<unsigned long, PlayerAction>, 3> otherKeys{
    {{XK_Left, PlayerAction::back},
     {XK_Right, PlayerAction::forward},
     {XK_Home, PlayerAction::toBegin}}};

// Without the escape that is before each; of terminals' two kinds.
constexpr std::array<std::pair<std::string_view, PlayerAction>, 7> sequences{
    {{"[D", PlayerAction::back},
     {"OD", PlayerAction::back},
     {"[C", PlayerAction::forward},
     {"OC", PlayerAction::forward},
     {"[H", PlayerAction::toBegin},
     {"OH", PlayerAction::toBegin},
     {"[1~", PlayerAction::toBegin}}};

template <typename Table, typename Key>
std::optional<PlayerAction> found(const Table& table, const Key& key) {
    const auto entry = std::ranges::find(table, key, &Table::value_type::first);
    return entry != table.end() ? std::optional(entry->second) : std::nullopt;
}

// The sequence of an escape at the text's begin: "[" and all up to a letter or tilde,
// "O" and one more, else nothing.
std::string_view sequenceAt(std::string_view text) {
    if (text.starts_with('O'))
        return text.substr(0, 2);
    if (!text.starts_with('['))
        return {};
    const auto end =
        std::find_if(text.begin() + 1, text.end(), [](char c) { return c >= '@' && c <= '~'; });
    return text.substr(0,
                       static_cast<std::size_t>(end - text.begin()) + (end != text.end() ? 1 : 0));
}

} // namespace

std::optional<PlayerAction> actionOfKeysym(unsigned long keysym) {
    if (keysym >= ' ' && keysym <= '~') // these are characters
        return found(letters, static_cast<char>(keysym));
    return found(otherKeys, keysym);
}

std::vector<PlayerAction> actionsOfText(std::string_view text) {
    constexpr char escape = '\x1b';
    std::vector<PlayerAction> actions;
    while (!text.empty()) {
        const char first = text.front();
        text.remove_prefix(1);
        const std::string_view sequence = first == escape ? sequenceAt(text) : std::string_view();
        text.remove_prefix(sequence.size());
        if (const auto action =
                first == escape ? found(sequences, sequence) : found(letters, first))
            actions.push_back(*action);
    }
    return actions;
}

std::string_view playerKeysHelp() {
    return "space: play or stop; left, right: 5 s; home: to the begin; l: loop; b: bypass; "
           "e: equal loudness; q: quit";
}

} // namespace mirelon::tools
