#include "editor/csplashscreenmyview.h"

#include <array>
#include <string_view>

using namespace VSTGUI;

namespace {

const CColor darkBlue(45, 45, 120, 255);
const CColor darkGrey(60, 60, 60, 255);

constexpr CCoord lineHeight = 15;

struct Line {
    const char* text;
    CCoord top; // below the first line
};
constexpr std::array<Line, 3> lines{{
    {"Dravik Mirelon   v.1.9.8", 0},
    {"made by Dravik", 17},
    {"dravik.example", 34},
}};
constexpr Line lastLine{"VST PlugIn Technology by Steinberg", 71};

} // namespace

CSplashScreenMyView::CSplashScreenMyView(const CRect& rect, CSplashScreen* owner,
                                         const CPoint& textOrigin)
    : CControl(rect, nullptr, 0, owner->getBackground())
    , owner(owner)
    , textOrigin(textOrigin) {}

void CSplashScreenMyView::draw(CDrawContext* context) {
    if (CBitmap* picture = getDrawBackground())
        picture->draw(context, getViewSize(), CPoint(0, 0), 1.0F);

    const auto drawLine = [&](const Line& line) {
        CRect rect(getViewSize());
        rect.offset(textOrigin.x, 0);
        rect.top += textOrigin.y + line.top;
        rect.setHeight(lineHeight);
        context->drawString(line.text, rect, kCenterText, true);
    };
    context->setFont(kNormalFontSmaller);
    context->setFontColor(darkBlue);
    for (const Line& line : lines)
        drawLine(line);
    context->setFont(kNormalFontVerySmall);
    context->setFontColor(darkGrey);
    drawLine(lastLine);
    setDirty(false);
}

CMouseEventResult CSplashScreenMyView::onMouseDown(CPoint& /*where*/, const CButtonState& buttons) {
    if ((buttons & kLButton) == 0)
        return kMouseEventNotHandled;
    endWhenHandled();
    return kMouseEventHandled;
}

void CSplashScreenMyView::onKeyboardEvent(KeyboardEvent& event) {
    if (event.type != EventType::KeyDown || event.virt != VirtualKey::Escape)
        return;
    event.consumed = true;
    endWhenHandled(); // may be the end of this view
}

// The frame still refers to this view while it delivers an event.
void CSplashScreenMyView::endWhenHandled() {
    CFrame* frame = getFrame();
    if (frame == nullptr || !frame->inEventProcessing())
        end();
    else
        frame->doAfterEventProcessing([view = shared(this)] { view->end(); });
}

void CSplashScreenMyView::end() {
    owner->unSplash();
    CFrame* frame = getFrame();
    // Ended before: by a second press among the same events, or by the closing
    // window.
    if (frame == nullptr || frame->getModalView() != this)
        return;
    frame->invalid();
    frame->setModalView(nullptr);
    forget();
}

bool CSplashScreenMyView::isTypeOf(const char* className) const {
    for (const std::string_view known : {"CSplashScreenMyView", "CControl", "CView", "CBaseObject"})
        if (known == className)
            return true;
    return false;
}

CBaseObject* CSplashScreenMyView::newCopy() const {
    return new CSplashScreenMyView(*this);
}
