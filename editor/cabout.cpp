#include "editor/cabout.h"

#include "editor/csplashscreenmyview.h"

using namespace VSTGUI;

CAbout::CAbout(const CRect& rect, IControlListener* listener, int32_t tag, CBitmap* picture,
               const CRect& toDisplay, const CPoint& offset, const CPoint& textOrigin)
    : CSplashScreen(rect, listener, tag, picture, toDisplay, offset)
    , textOrigin(textOrigin) {}

CMouseEventResult CAbout::onMouseDown(CPoint& /*where*/, const CButtonState& buttons) {
    if ((buttons & kLButton) == 0)
        return kMouseEventNotHandled;
    if (isShown()) {
        setValue(0.0F);
    } else if (CFrame* frame = getFrame()) {
        CRect area;
        auto* view = new CSplashScreenMyView(getDisplayArea(area), this, textOrigin);
        if (frame->setModalView(view))
            setValue(1.0F);
        else
            view->forget();
        invalid();
    }
    return kMouseEventHandled;
}

void CAbout::endSplash() {
    CFrame* frame = getFrame();
    if (frame == nullptr)
        return;
    if (auto* view = dynamic_cast<CSplashScreenMyView*>(frame->getModalView()))
        view->end();
}
