#include "editor/myframe.h"

#include "editor/ringed.h"
#include "editor/titleline.h"
#include "platform/runloop.h"
#include "platform/toolkitconnection.h"

#include <array>
#include <cmath>

using namespace VSTGUI;

namespace {

const CColor ringColor(20, 97, 109, 255);
const CColor selectionColor(126, 214, 226, 255);
constexpr CCoord ringWidth = 2;

GenericOptionMenuTheme menuColors() {
    GenericOptionMenuTheme theme;
    theme.backgroundColor = mirelon::titleStripColor;
    theme.backgroundColor.alpha = 254; // the toolkit draws none that is opaque
    theme.selectedBackgroundColor = selectionColor;
    return theme;
}

// To the nearest pixels of the screen.
CRect onScreen(CRect rect, const CGraphicsTransform& transform) {
    transform.transform(rect);
    return {std::round(rect.left), std::round(rect.top), std::round(rect.right),
            std::round(rect.bottom)};
}

// The ring's edges and what stands in front of it, in whole pixels of the screen, so
// that all four sides are equally wide and sharp.
struct Ring {
    CRect inner;
    CRect outer;
    CRect front;
};
// It surrounds a view that says nothing else of it.
Ring ringAround(const CView& view, const CFrame& frame) {
    const CGraphicsTransform& transform = frame.getTransform();
    Ring ring;
    if (const auto* ringed = dynamic_cast<const Ringed*>(&view)) {
        ring.inner = onScreen(ringed->ringedArea(), transform);
        ring.front = onScreen(ringed->inFrontOfRing(), transform);
    } else {
        CRect area(view.getViewSize());
        ring.inner = transform.transform(area).makeIntegral();
    }
    const CCoord width = std::round(ringWidth * frame.getZoom());
    ring.outer = ring.inner;
    ring.outer.extend(width, width);
    return ring;
}

// All of `rect` but what `front` covers; some of the parts may be empty.
std::array<CRect, 4> visibleParts(const CRect& rect, const CRect& front) {
    CRect covered(front);
    covered.bound(rect);
    if (covered.isEmpty())
        return {rect};
    return {CRect(rect.left, rect.top, rect.right, covered.top),
            CRect(rect.left, covered.bottom, rect.right, rect.bottom),
            CRect(rect.left, covered.top, covered.left, covered.bottom),
            CRect(covered.right, covered.top, rect.right, covered.bottom)};
}

bool isTab(const KeyboardEvent& event) {
    return event.type == EventType::KeyDown && event.virt == VirtualKey::Tab &&
           (event.modifiers.empty() || event.modifiers.is(ModifierKey::Shift));
}

} // namespace

// The base keeps only the address of the member, which is built after it.
MyFrame::MyFrame(const CRect& rect, double scale, VSTGUIEditorInterface* editor)
    : CFrame(rect, &detachableEditor)
    , detachableEditor(editor) {
    setZoom(scale);
    setFocusColor(selectionColor); // the text fields take it from there
    registerFocusViewObserver(this);
    hoverFrame.emplace(*this);
}

bool MyFrame::openIn(void* parent) {
    const auto parentWindow = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(parent));
    if (!mirelon::windowExists(parentWindow))
        return false;
    X11::FrameConfig config;
    config.runLoop = SharedPointer<X11::IRunLoop>(&mirelon::RunLoop::instance());
    if (!open(parent, PlatformType::kX11EmbedWindowID, &config))
        return false;
    GenericOptionMenuTheme menus = menuColors();
    getPlatformFrame()->setupGenericOptionMenu(true, &menus);
    const std::uint32_t window = mirelon::windowOf(*this);
    mirelon::announceMapped(window);
    keys.emplace(window, [this] { endRing(); });
    return true;
}

void MyFrame::beforeDelete() {
    hoverFrame.reset();
    CFrame::beforeDelete();
}

void MyFrame::retire() {
    unregisterFocusViewObserver(this);
    hoverFrame.reset();
    keys.reset();
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

// --- Keys ---

void MyFrame::platformOnEvent(Event& event) {
    const auto alive = shared(this);
    if (event.type == EventType::MouseExit) {
        lastPointer.reset();
    } else if (const auto* at = asMousePositionEvent(event)) {
        lastPointer = at->mousePosition;
        getTransform().inverse().transform(*lastPointer);
    }
    if (auto* key = asKeyboardEvent(event)) {
        onKey(*key);
    } else {
        const bool pressed = event.type == EventType::MouseDown;
        if (pressed && isTyping())
            hideRing(); // a click into the text only moves the caret
        else if (pressed)
            endRing();
        CFrame::platformOnEvent(event);
        // For a press that was used the toolkit would take the input focus.
        if (pressed)
            event.consumed = false;
    }
    settleKeys();
}

void MyFrame::platformOnActivate(bool active) {
    if (active)
        CFrame::platformOnActivate(active);
}

bool MyFrame::isTyping() const {
    return dynamic_cast<CTextEdit*>(getFocusView()) != nullptr;
}

void MyFrame::onKey(KeyboardEvent& event) {
    CView* const modal = getModalView();
    if (modal != nullptr && modal->asViewContainer() == nullptr)
        return modal->onKeyboardEvent(event); // the about picture, or what blocks the input
    handlingKey = true;
    const auto end = finally([this] { handlingKey = false; });
    const bool typing = isTyping();
    if (modal == nullptr && isTab(event))
        ringShown = true;
    CFrame::platformOnEvent(event);
    if (event.type == EventType::KeyDown && !event.consumed && ringShown && modal == nullptr) {
        if (isTab(event)) { // beyond the last control
            event.consumed = advanceNextFocusView(nullptr, event.modifiers.is(ModifierKey::Shift));
        } else if (event.virt == VirtualKey::Escape) {
            endRing();
            event.consumed = true;
        }
    }
    if (typing)
        event.consumed = true;
}

// The ring goes, and a text that is being typed counts as typed.
void MyFrame::endRing() {
    hideRing();
    if (getModalView() == nullptr)
        setFocusView(nullptr);
}

void MyFrame::hideRing() {
    invalidRing(getFocusView());
    ringShown = false;
}

void MyFrame::invalidRing(const CView* view) {
    if (view == nullptr || !ringShown)
        return;
    CRect area = ringAround(*view, *this).outer;
    area.extend(1, 1); // the way back to whole pixels may round it
    getTransform().inverse().transform(area);
    invalidRect(area);
}

void MyFrame::onFocusViewChanged(CFrame* /*frame*/, CView* now, CView* before) {
    invalidRing(before);
    invalidRing(now);
    // The toolkit puts the keys on a menu that has been closed, for one.
    mirelon::RunLoop::instance().whenUnwound([alive = shared(this)] { alive->settleKeys(); });
}

// Takes the keys from a control that has them without a ring, and the input focus
// for one that has them rightly.
void MyFrame::settleKeys() {
    if (!keys || handlingKey)
        return;
    if (getModalView() == nullptr) {
        if (!ringShown && !isTyping())
            setFocusView(nullptr);
        ringShown = ringShown && getFocusView() != nullptr;
    }
    if (getFocusView() != nullptr)
        keys->take();
    else
        keys->giveBack();
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

void MyFrame::drawRect(CDrawContext* context, const CRect& updateRect) {
    CFrame::drawRect(context, updateRect);
    if (hoverFrame)
        hoverFrame->draw(*context, updateRect);
    const CView* const view = getFocusView();
    if (!ringShown || view == nullptr || getModalView() != nullptr)
        return;
    const auto [inner, outer, front] = ringAround(*view, *this);
    const ConcatClip clipped(*context, updateRect);
    context->setDrawMode(kAliasing);
    context->setFillColor(ringColor);
    for (const CRect& side : {CRect(outer.left, outer.top, outer.right, inner.top),
                              CRect(outer.left, inner.bottom, outer.right, outer.bottom),
                              CRect(outer.left, inner.top, inner.left, inner.bottom),
                              CRect(inner.right, inner.top, outer.right, inner.bottom)})
        for (const CRect& part : visibleParts(side, front))
            if (!part.isEmpty())
                context->drawRect(part, kDrawFilled);
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
