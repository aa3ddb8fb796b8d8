#include "editor/hoverframe.h"

#include "editor/cabout.h"
#include "editor/layout.h"
#include "editor/parameterslider.h"

#include <algorithm>
#include <cmath>

using namespace VSTGUI;
namespace layout = mirelon::layout;

namespace {

const CColor hoverColor(31, 135, 150, 255);

// What of a view is framed, in its coordinates, and how round its corners are.
struct Shape {
    CRect rect;
    CCoord radius;
};

std::optional<Shape> shapeOf(CView* view) {
    if (const auto* slider = dynamic_cast<const ParameterSlider*>(view))
        return Shape{slider->visibleHandle(), layout::handleRadius};
    if (dynamic_cast<const CAbout*>(view) != nullptr)
        return Shape{layout::aboutOutline, layout::aboutRadius};
    if (dynamic_cast<const COnOffButton*>(view) != nullptr)
        return Shape{view->getViewSize(), layout::switchRadius};
    if (dynamic_cast<const COptionMenu*>(view) != nullptr)
        return Shape{view->getViewSize(), layout::menuRadius};
    return std::nullopt;
}

} // namespace

HoverFrame::HoverFrame(CFrame& frame)
    : frame(frame) {
    frame.registerMouseObserver(this);
}

HoverFrame::~HoverFrame() {
    frame.unregisterMouseObserver(this);
}

void HoverFrame::onMouseEntered(CView* view, CFrame* /*entered*/) {
    hovered = view;
    if (shapeOf(view))
        view->invalid();
}

void HoverFrame::onMouseExited(CView* view, CFrame* /*exited*/) {
    if (hovered == view)
        hovered = nullptr;
    if (shapeOf(view))
        view->invalid();
}

void HoverFrame::draw(CDrawContext& context, const CRect& updateRect) const {
    // Of nothing while something is open above: the pointer has left all else then.
    const std::optional<Shape> shape = shapeOf(hovered);
    if (!shape || shape->rect.isEmpty())
        return;
    // In pixels of the screen, where the picture's edges are too.
    CRect outline(shape->rect);
    frame.getTransform().transform(outline);
    outline.makeIntegral();
    const CCoord width = std::max(1.0, std::floor(frame.getZoom()));
    outline.inset(width / 2, width / 2);
    const ConcatClip clipped(context, updateRect);
    const auto path = owned(context.createGraphicsPath());
    if (path == nullptr)
        return;
    path->addRoundRect(outline, std::max(0.0, shape->radius * frame.getZoom() - width / 2));
    context.setDrawMode(kAntiAliasing | kNonIntegralMode);
    context.setLineStyle(kLineSolid);
    context.setLineWidth(width);
    context.setFrameColor(hoverColor);
    context.drawGraphicsPath(path, CDrawContext::kPathStroked);
}
