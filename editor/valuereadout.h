// The read-out of a slider's value.
#pragma once

#include "editor/textentry.h"

#include <functional>
#include <string>

// Shows a value; a double click opens it for typing one, and so does its slider. What is typed
// counts when it is confirmed: whoever leaves the window in the middle of a number has not chosen
// it. Meanwhile the value may go on changing and does not disturb what is typed.
class ValueReadOut : public TextEntry {
  public:
    using Entered = std::function<void(const std::string& text)>;

    // `entered` is called with what has been typed and confirmed, sense or nonsense,
    // when the field is closed already.
    ValueReadOut(const VSTGUI::CRect& rect, VSTGUI::CBitmap* background, Entered entered);

    // As a double click does. The keys go back to `from` when return or escape ends the
    // typing; it must live as long as this.
    void typeFrom(VSTGUI::CView& from);

    void looseFocus() override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;

  protected:
    ~ValueReadOut() noexcept override = default;

    void shownTextChanged() override {}
    VSTGUI::CRect textArea() const override;
    void drawEditBackground(VSTGUI::CDrawContext* context) override;

  private:
    Entered entered;
    VSTGUI::CView* typedFrom = nullptr; // while typing
};
