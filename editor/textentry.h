// A field of the window into which text is typed.
#pragma once

#include "editor/editableline.h"
#include "editor/textscroll.h"
#include "platform/toolkit.h"

#include <string>
#include <vector>

namespace mirelon {
class Clipboard;
}

// The toolkit's text field with an editor of its own: what is typed scrolls, so that
// the caret always shows, takes the mouse, and goes to and comes from the clipboard
// of the desktop. While nobody types, a text that is too long ends in an ellipsis, and
// the whole of it is the view's tooltip, for whatever shows such.
//
// Typing begins with a click (a double click in that style of the toolkit's) or the
// tab key, with everything selected. Return, the tab key and a click elsewhere end
// it; escape ends it with the old text.
class TextEntry : public VSTGUI::CTextEdit, private VSTGUI::IMouseObserver {
  public:
    // The field's look while it is typed in, in the colours of the window.
    static constexpr VSTGUI::CColor fieldColor{189, 207, 218, 255};
    static constexpr VSTGUI::CColor inkColor{36, 36, 32, 255};
    static constexpr VSTGUI::CCoord fieldInset = 3; // from its edge to the text

    // As the toolkit's.
    TextEntry(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, std::int32_t tag,
              VSTGUI::CBitmap* background, std::int32_t style = 0);

    bool isEditing() const { return platformControl != nullptr; }

    void setText(const VSTGUI::UTF8String& shown) override;
    void takeFocus() override;
    void looseFocus() override;
    void draw(VSTGUI::CDrawContext* context) override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;

  protected:
    enum class Ending {
        confirmed, // by the return or tab key or a click elsewhere in the window
        left,      // the input focus has gone, or the window goes
        dismissed, // by the escape key
    };

    ~TextEntry() noexcept override = default;

    // Of the typing that is about to end.
    Ending ending() const { return end; }
    // Whether the user has changed anything.
    bool isEdited() const { return edited; }
    std::string typedText() const { return line.text(); }
    // As if the typing began with this text.
    void setTypedText(const VSTGUI::UTF8String& text);
    // The field's text has changed while one is being typed.
    virtual void shownTextChanged() { setTypedText(getText()); }
    // Where the text stands.
    virtual VSTGUI::CRect textArea() const;
    // What is behind the text that is being typed.
    virtual void drawEditBackground(VSTGUI::CDrawContext* context) { drawBack(context); }

  private:
    class Typed;

    // The observer's; the view's own of these names stay.
    using CTextEdit::onMouseEntered;
    using CTextEdit::onMouseExited;
    void onMouseEntered(VSTGUI::CView*, VSTGUI::CFrame*) override {}
    void onMouseExited(VSTGUI::CView*, VSTGUI::CFrame*) override {}
    void onMouseEvent(VSTGUI::MouseEvent& event, VSTGUI::CFrame* frame) override;
    void onPress(VSTGUI::MouseDownEvent& event);

    bool onTextKey(const VSTGUI::KeyboardEvent& event);
    bool onShortcut(char32_t letter);
    bool onMovement(const VSTGUI::KeyboardEvent& event);
    void endTyping(Ending how);

    mirelon::Clipboard* clipboard() const;
    void paste();

    void lineEdited();
    void lineChanged();
    void caretMoved();
    void blink();
    VSTGUI::CCoord textLeft() const;
    VSTGUI::CCoord widthOf(const std::string& part) const;
    VSTGUI::UTF8String withEllipsis(const VSTGUI::UTF8String& whole) const;
    std::size_t placeAt(VSTGUI::CCoord x) const;

    mirelon::EditableLine line;
    mirelon::TextScroll scroll;
    std::vector<VSTGUI::CCoord> edges; // of the typed characters, from the text's left
    VSTGUI::SharedPointer<VSTGUI::CVSTGUITimer> blinking; // while typing
    Ending end = Ending::left;
    bool edited = false;
    bool caretShown = false;
    bool selecting = false; // with the mouse
};
