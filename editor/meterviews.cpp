#include "editor/meterviews.h"

#include "presetsystem/effectlink.h"

namespace mirelon {

using layout::Reading;

namespace {

// Where a meter of 0 to 1 shows a reading of 0.
constexpr float middle = 0.5F;

} // namespace

void MeterViews::add(VSTGUI::CFrame& frame, const WindowPictures& pictures,
                     const layout::Meter& meter) {
    VSTGUI::CBitmap* const unlit = pictures[kPictureMeterUnlit];
    const VSTGUI::CRect rect(meter.at, {unlit->getWidth(), unlit->getHeight()});
    auto* view = new CVuMeter1(rect, pictures[kPictureMeterLit], unlit, layout::meterSegments,
                               VSTGUI::CVuMeter::kHorizontal);
    view->setDecreaseStepValue(1.0F);
    view->setDefaultValue(middle);
    view->setMax(1.0F);
    view->setMin(0.0F);
    view->setValue(middle);
    frame.addView(view);
    meters[static_cast<std::size_t>(meter.reading)] = view;
}

void MeterViews::showReading(Reading reading, float value) {
    if (CVuMeter1* meter = meters[static_cast<std::size_t>(reading)])
        meter->setValue(value + middle);
}

void MeterViews::show(const EffectLink& effect) {
    showReading(Reading::width, effect.getWidthMeter());
    showReading(Reading::balance, effect.getBalanceMeter());
}

void MeterViews::centre() {
    showReading(Reading::width, 0.0F);
    showReading(Reading::balance, 0.0F);
}

} // namespace mirelon
