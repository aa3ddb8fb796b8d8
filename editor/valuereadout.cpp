#include "editor/valuereadout.h"

#include <utility>

using namespace VSTGUI;

ValueReadOut::ValueReadOut(const CRect& rect, CBitmap* background, Entered entered_)
    : TextEntry(rect, nullptr, -1, background, kDoubleClickStyle)
    , entered(std::move(entered_)) {}

void ValueReadOut::typeFrom(CView& from) {
    typedFrom = &from;
    takeFocus();
}

void ValueReadOut::onKeyboardEvent(KeyboardEvent& event) {
    const auto alive = shared(this);
    CView* const from = typedFrom;
    TextEntry::onKeyboardEvent(event);
    // The host may have closed the window for the value.
    if (from != nullptr && !isEditing() && getFrame() != nullptr)
        getFrame()->setFocusView(from);
}

void ValueReadOut::looseFocus() {
    if (!isEditing())
        return;
    typedFrom = nullptr;
    const auto alive = shared(this);
    const bool counts = isEdited() && ending() == Ending::confirmed;
    const std::string typed = typedText();
    setTypedText(getText()); // nothing for the toolkit to report
    TextEntry::looseFocus();
    if (counts)
        entered(typed);
}

CRect ValueReadOut::textArea() const {
    CRect area = TextEntry::textArea();
    return isEditing() ? area.inset(fieldInset, 0) : area;
}

// As the name field looks, which is part of the window's background.
void ValueReadOut::drawEditBackground(CDrawContext* context) {
    CRect field(getViewSize());
    context->setDrawMode(kAliasing);
    context->setFillColor(inkColor);
    context->drawRect(field, kDrawFilled);
    context->setFillColor(fieldColor);
    context->drawRect(field.inset(1, 1), kDrawFilled);
}
