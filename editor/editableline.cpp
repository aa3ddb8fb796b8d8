#include "editor/editableline.h"

#include "presetsystem/displayname.h"

#include <algorithm>
#include <glib.h>
#include <memory>

namespace mirelon {

namespace {

std::u32string decoded(std::string_view utf8) {
    const std::string text = validUtf8(utf8);
    std::u32string characters;
    for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at))
        characters.push_back(g_utf8_get_char(at));
    return characters;
}

bool isLineBreak(char32_t character) {
    return character == U'\n' || character == U'\r' || character == U'\u2028' ||
           character == U'\u2029';
}

// The first line with something in it.
std::u32string_view firstLine(std::u32string_view text) {
    const auto first = std::ranges::find_if_not(text, isLineBreak);
    return {first, std::find_if(first, text.end(), isLineBreak)};
}

bool inWord(char32_t character) {
    return g_unichar_isalnum(character) != 0 || g_unichar_ismark(character) != 0;
}

} // namespace

void EditableLine::assign(std::string_view utf8) {
    characters.clear();
    moveTo(0, false);
    insert(utf8);
    selectAll();
}

std::string EditableLine::textBetween(std::size_t first, std::size_t end) const {
    std::string utf8;
    for (std::size_t place = first; place < end; ++place) {
        constexpr std::size_t longest = 6;
        char bytes[longest];
        utf8.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(characters[place], bytes)));
    }
    return utf8;
}

std::size_t EditableLine::selectionStart() const {
    return std::min(caretPlace, anchor);
}

std::size_t EditableLine::selectionEnd() const {
    return std::max(caretPlace, anchor);
}

void EditableLine::selectAll() {
    anchor = 0;
    caretPlace = size();
}

void EditableLine::selectWordAt(std::size_t place) {
    if (characters.empty())
        return;
    const std::size_t at = std::min(place, size() - 1);
    const auto isOther = [kind = inWord(characters[at])](char32_t character) {
        return inWord(character) != kind;
    };
    const auto middle = characters.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = std::find_if(middle, characters.end(), isOther);
    const auto start =
        std::find_if(std::make_reverse_iterator(middle), characters.rend(), isOther).base();
    anchor = static_cast<std::size_t>(start - characters.begin());
    caretPlace = static_cast<std::size_t>(end - characters.begin());
}

void EditableLine::moveTo(std::size_t place, bool extend) {
    caretPlace = std::min(place, size());
    if (!extend)
        anchor = caretPlace;
}

void EditableLine::move(Direction direction, Step step, bool extend) {
    if (hasSelection() && !extend && step == Step::character)
        return moveTo(direction == Direction::back ? selectionStart() : selectionEnd(), false);
    moveTo(placeAfter(direction, step), extend);
}

void EditableLine::insert(std::string_view utf8) {
    const std::u32string text = decoded(utf8);
    replaceSelection(firstLine(text));
}

void EditableLine::insert(char32_t character) {
    replaceSelection({&character, 1});
}

void EditableLine::erase(Direction direction, Step step) {
    if (!hasSelection())
        anchor = placeAfter(direction, step);
    replaceSelection({});
}

void EditableLine::replaceSelection(std::u32string_view with) {
    const std::size_t start = selectionStart();
    characters.erase(start, selectionEnd() - start);
    std::u32string more(with);
    std::erase_if(more, [](char32_t character) { return g_unichar_iscntrl(character) != 0; });
    more.resize(std::min(more.size(), capacity - size()));
    characters.insert(start, more);
    moveTo(start + more.size(), false);
}

std::size_t EditableLine::placeAfter(Direction direction, Step step) const {
    const bool back = direction == Direction::back;
    switch (step) {
    case Step::character:
        if (back)
            return caretPlace - (caretPlace > 0 ? 1 : 0);
        return std::min(caretPlace + 1, size());
    case Step::word:
        return back ? wordStart(caretPlace) : wordEnd(caretPlace);
    case Step::end:
        break;
    }
    return back ? 0 : size();
}

// Of the word before, or around, the place.
std::size_t EditableLine::wordStart(std::size_t place) const {
    while (place > 0 && !inWord(characters[place - 1]))
        --place;
    while (place > 0 && inWord(characters[place - 1]))
        --place;
    return place;
}

std::size_t EditableLine::wordEnd(std::size_t place) const {
    while (place < size() && !inWord(characters[place]))
        ++place;
    while (place < size() && inWord(characters[place]))
        ++place;
    return place;
}

} // namespace mirelon
