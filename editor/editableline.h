// A line of text that is being typed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mirelon {

// Its characters, the caret and what is selected. Places are counted in characters:
// place n is before character n. One thread; needs no toolkit.
class EditableLine {
  public:
    // What goes beyond it is not taken.
    static constexpr std::size_t capacity = 256;

    enum class Step { character, word, end };
    enum class Direction { back, forward };

    // Another text, all of it selected. Bytes that are no UTF-8 become U+FFFD.
    void assign(std::string_view utf8);

    std::string text() const { return textBetween(0, size()); }
    std::string textBetween(std::size_t first, std::size_t end) const;
    std::string selectedText() const { return textBetween(selectionStart(), selectionEnd()); }
    std::size_t size() const { return characters.size(); }

    std::size_t caret() const { return caretPlace; }
    std::size_t selectionStart() const;
    std::size_t selectionEnd() const;
    bool hasSelection() const { return caretPlace != anchor; }

    void selectAll();
    // The word, or the run of other characters, around `place`.
    void selectWordAt(std::size_t place);
    // Beyond the end is the end. `extend`: what lies between stays selected.
    void moveTo(std::size_t place, bool extend);
    // Without `extend` a selection collapses to the side where the step leads.
    void move(Direction direction, Step step, bool extend);

    // In place of what is selected. The text's first line that is not empty, without
    // control characters.
    void insert(std::string_view utf8);
    void insert(char32_t character);
    // The selection, or without one what the step passes over.
    void erase(Direction direction, Step step);

  private:
    std::size_t placeAfter(Direction direction, Step step) const;
    std::size_t wordStart(std::size_t place) const;
    std::size_t wordEnd(std::size_t place) const;
    void replaceSelection(std::u32string_view with);

    std::u32string characters;
    std::size_t caretPlace = 0;
    std::size_t anchor = 0; // the other end of the selection
};

} // namespace mirelon
