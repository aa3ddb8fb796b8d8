#include "editor/titleline.h"

using namespace VSTGUI;

namespace mirelon {

namespace {

// Between the text and the edges of its area: letters may reach over a little.
constexpr CCoord inset = 2;

} // namespace

CColor textColor(TextKind kind) {
    switch (kind) {
    case TextKind::explanation:
        return {214, 226, 234, 255};
    case TextKind::success:
        return {111, 220, 230, 255};
    case TextKind::failure:
        return {255, 184, 120, 255};
    }
    return kWhiteCColor;
}

TitleLine::TitleLine(const CRect& rect, const CRect& textArea, IControlListener* listener,
                     int32_t tag)
    : CControl(rect, listener, tag)
    , textArea(textArea) {
    setWantsFocus(false);
}

void TitleLine::show(const std::string& shownText, TextKind shownKind) {
    if (text == shownText && (text.empty() || kind == shownKind))
        return;
    text = shownText;
    kind = shownKind;
    invalidRect(textArea);
}

void TitleLine::draw(CDrawContext* context) {
    setDirty(false);
    if (text.empty())
        return;
    context->setFillColor(titleStripColor);
    context->setDrawMode(kAliasing);
    context->drawRect(textArea, kDrawFilled);
    context->setDrawMode(kAntiAliasing);
    const UTF8String fitting =
        CDrawMethods::createTruncatedText(CDrawMethods::kTextTruncateTail, UTF8String(text),
                                          kNormalFontVerySmall, textArea.getWidth() - 2 * inset);
    context->setFont(kNormalFontVerySmall);
    context->setFontColor(textColor(kind));
    CRect line(textArea);
    line.extend(-inset, 0);
    context->drawString(fitting, line, kRightText, true);
}

CMouseEventResult TitleLine::onMouseDown(CPoint& where, const CButtonState& buttons) {
    CFrame* const frame = getFrame();
    if (!buttons.isRightButton() || frame == nullptr)
        return kMouseEventNotHandled;
    pressed = where;
    // Gone by then, with its listener, when the window closes.
    const auto tell = [self = shared(this)] {
        if (self->listener != nullptr)
            self->listener->valueChanged(self);
    };
    if (frame->inEventProcessing())
        frame->doAfterEventProcessing(tell);
    else
        tell();
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

} // namespace mirelon
