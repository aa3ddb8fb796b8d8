#include "editor/myframe.h"

#include "platform/runloop.h"
#include "platform/toolkitconnection.h"

using namespace VSTGUI;

// The base keeps only the address of the member, which is built after it.
MyFrame::MyFrame(const CRect& rect, double scale, VSTGUIEditorInterface* editor)
    : CFrame(rect, &detachableEditor)
    , detachableEditor(editor) {
    setZoom(scale);
}

bool MyFrame::openIn(void* parent) {
    const auto parentWindow = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(parent));
    if (!mirelon::windowExists(parentWindow))
        return false;
    X11::FrameConfig config;
    config.runLoop = SharedPointer<X11::IRunLoop>(&mirelon::RunLoop::instance());
    if (!open(parent, PlatformType::kX11EmbedWindowID, &config))
        return false;
    mirelon::announceMapped(mirelon::windowOf(*this));
    return true;
}

void MyFrame::retire() {
    setMouseEnabled(false);
    forEachChild([](CView* view) {
        if (auto* control = dynamic_cast<CControl*>(view))
            control->setListener(nullptr);
    });
    detachableEditor.detach();
    mirelon::RunLoop::instance().whenUnwound(
        [this, loopUser = std::make_shared<mirelon::RunLoop::User>()] {
            const std::uint32_t window = mirelon::windowOf(*this);
            close(); // also releases the frame
            if (window != 0)
                mirelon::destroyWindow(window);
        });
}

void MyFrame::closeModal() {
    captured = nullptr;
    invalid();
}

CMouseEventResult MyFrame::onMouseDown(CPoint& where, const CButtonState& buttons) {
    if (CView* view = getModal())
        return view->onMouseDown(where, buttons);
    return CFrame::onMouseDown(where, buttons);
}

CMouseEventResult MyFrame::onMouseUp(CPoint& where, const CButtonState& buttons) {
    if (CView* view = getModal())
        return view->onMouseUp(where, buttons);
    return CFrame::onMouseUp(where, buttons);
}

CMouseEventResult MyFrame::onMouseMoved(CPoint& where, const CButtonState& buttons) {
    if (CView* view = getModal())
        return view->onMouseMoved(where, buttons);
    return CFrame::onMouseMoved(where, buttons);
}

void MyFrame::onMouseWheelEvent(MouseWheelEvent& event) {
    if (CView* view = getModal())
        view->onMouseWheelEvent(event);
    else
        CFrame::onMouseWheelEvent(event);
}

// The toolkit scales the views of a zoomed frame, but not its background.
void MyFrame::drawBackgroundRect(CDrawContext* context, const CRect& updateRect) {
    CBitmap* background = getDrawBackground();
    if (background == nullptr)
        return CFrame::drawBackgroundRect(context, updateRect);
    const CDrawContext::Transform scaled(*context, getTransform());
    CRect rect(0, 0, getViewSize().getWidth(), getViewSize().getHeight());
    getTransform().inverse().transform(rect);
    background->draw(context, rect, getBackgroundOffset());
}

int32_t MyFrame::DetachableEditor::getKnobMode() const {
    return editor != nullptr ? editor->getKnobMode() : kCircularMode;
}

void MyFrame::DetachableEditor::beginEdit(int32_t index) {
    if (editor != nullptr)
        editor->beginEdit(index);
}

void MyFrame::DetachableEditor::endEdit(int32_t index) {
    if (editor != nullptr)
        editor->endEdit(index);
}
