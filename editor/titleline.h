// The window's top line: says what is pointed at and what has happened, and is
// where the right mouse button asks for the window's size.
#pragma once

#include "platform/toolkit.h"

#include <string>

namespace mirelon {

enum class TextKind { explanation, success, failure };

// All of them stand out from the title strip by a contrast of at least 4.5 to 1.
inline constexpr VSTGUI::CColor titleStripColor(37, 45, 53, 255);
VSTGUI::CColor textColor(TextKind kind);

// At rest it draws nothing: the background's own words show. Its listener is told
// of a press of the right button, when that has been handled.
class TitleLine final : public VSTGUI::CControl {
  public:
    // What is said goes into `textArea`, which is cleared for it.
    TitleLine(const VSTGUI::CRect& rect, const VSTGUI::CRect& textArea,
              VSTGUI::IControlListener* listener, int32_t tag);

    // A text that is too long ends in dots; an empty one is the rest.
    void show(const std::string& text, TextKind kind);
    // Where the right button was pressed last.
    VSTGUI::CPoint pressedAt() const { return pressed; }

    void draw(VSTGUI::CDrawContext* context) override;
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    CLASS_METHODS_NOCOPY(TitleLine, CControl)

  private:
    VSTGUI::CRect textArea;
    VSTGUI::CPoint pressed;
    std::string text;
    TextKind kind = TextKind::explanation;
};

} // namespace mirelon
