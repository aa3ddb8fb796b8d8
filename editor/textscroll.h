// Which part of a text shows in a field that may be narrower than it.
#pragma once

#include <algorithm>

namespace mirelon {

// Distances in one unit, from the left of the text.
class TextScroll {
  public:
    // Scrolls no further than is needed to show the caret, and never past the end of
    // the text. A text that fits is not scrolled.
    constexpr void follow(double caret, double textWidth, double fieldWidth) {
        hidden = std::clamp(hidden, caret - fieldWidth, caret);
        hidden = std::clamp(hidden, 0.0, std::max(textWidth - fieldWidth, 0.0));
    }
    constexpr void reset() { hidden = 0.0; }

    // How much of the text is hidden at the left.
    constexpr double offset() const { return hidden; }

  private:
    double hidden = 0.0;
};

} // namespace mirelon
