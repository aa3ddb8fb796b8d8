#include "editor/parameterviews.h"

#include "editor/parameterslider.h"
#include "editor/textfield.h"
#include "editor/valuereadout.h"
#include "presetsystem/effectlink.h"
#include "processor/core/parametertext.h"

using namespace VSTGUI;

namespace mirelon {

namespace {

// Of what is of no use at the moment.
constexpr float dimmedAlpha = 0.4F;

float switchValue(float normalised) {
    return normalised < 0.5F ? 0.0F : 1.0F;
}

// As if the user had moved the slider there at once. Nonsense leaves it where it is.
void enter(CControl& slider, const std::string& text) {
    const auto value = parameterValueOf(slider.getTag(), text);
    if (!value)
        return;
    slider.beginEdit();
    slider.setValue(*value);
    slider.valueChanged();
    slider.endEdit();
}

// Draws it anew, if that makes a difference.
void showValue(CControl& control, float value) {
    control.setValue(value);
    if (control.isDirty())
        control.invalid();
}

} // namespace

ParameterViews::ParameterViews(CFrame& frame, IControlListener& listener,
                               const WindowPictures& pictures, EffectLink& effect)
    : frame(frame)
    , listener(listener)
    , pictures(pictures)
    , effect(effect) {}

void ParameterViews::add(ParameterIndex parameter, CControl* control) {
    frame.addView(control);
    controls[static_cast<std::size_t>(parameter)] = control;
}

float ParameterViews::readOutValue(const layout::SliderRow& row, float normalised) const {
    return row.text.factor *
           (row.text.inOwnUnit ? effect.getParameterValue(row.parameter) : normalised);
}

void ParameterViews::addSlider(const layout::SliderRow& row) {
    const float value = effect.getParameter(row.parameter);
    CBitmap* const handle = pictures[kPictureSliderHandle];
    const CRect rect(layout::sliderLeft, row.top, layout::sliderRight,
                     row.top + 1 + handle->getHeight());
    const auto lastHandlePosition = static_cast<int32_t>(layout::sliderRight - handle->getWidth());
    auto* slider =
        new ParameterSlider(rect, &listener, row.parameter, layout::sliderLeft, lastHandlePosition,
                            handle, pictures.background(), rect.getTopLeft(), layout::sliderStyle);
    slider->setOffsetHandle(row.handleOffset);
    slider->setDefaultValue(0.5F);
    slider->setValue(value);
    add(row.parameter, slider);

    auto* readOut = new ValueReadOut(row.readOut.rect, pictures.background(),
                                     [&slider = *slider](const std::string& text) {
                                         const auto alive = shared(&slider);
                                         enter(slider, text);
                                     });
    setUpTextField(*readOut, row.readOut, kLeftText, row.text.converter, row.text.maximum,
                   readOutValue(row, value));
    frame.addView(readOut);
    readOuts[static_cast<std::size_t>(row.parameter)] = readOut;
    slider->setTyping([slider, readOut] { readOut->typeFrom(*slider); });
}

void ParameterViews::addSwitch(const layout::Switch& row) {
    const CPoint size(pictures[row.widthOf]->getWidth(),
                      pictures[layout::switchHeightOf]->getHeight() / 2);
    auto* button = new COnOffButton(CRect(CPoint(row.left, layout::switchTop), size), &listener,
                                    row.parameter, pictures[row.picture], 0);
    button->setValue(switchValue(effect.getParameter(row.parameter)));
    add(row.parameter, button);
}

void ParameterViews::addCaption(const layout::Caption& caption) {
    CParamDisplay* const display = newTextField(
        caption.field, pictures.background(), caption.rightAligned ? kRightText : kLeftText,
        parameterNameStringConvert, layout::captionMaximum, static_cast<float>(caption.text));
    frame.addView(display);
    if (caption.parameter < kNumParams)
        captions[static_cast<std::size_t>(caption.parameter)] = display;
}

void ParameterViews::dim(bool dimmed) {
    const float alpha = dimmed ? dimmedAlpha : 1.0F;
    const auto set = [alpha](CView* view) {
        if (view != nullptr)
            view->setAlphaValue(alpha);
    };
    for (std::size_t i = 0; i < kNumParams; ++i) {
        if (i == kParamProcess)
            continue;
        set(controls[i]);
        set(readOuts[i]);
        set(captions[i]);
    }
}

void ParameterViews::show(long index) {
    if (index < 0 || index >= kNumParams)
        return;
    const auto i = static_cast<std::size_t>(index);
    const float value = effect.getParameter(static_cast<VstInt32>(index));
    if (const layout::SliderRow* row = layout::sliderOf(index)) {
        showValue(*controls[i], value);
        showValue(*readOuts[i], readOutValue(*row, value));
    } else {
        showValue(*controls[i], switchValue(value));
    }
    if (index == kParamProcess)
        dim(switchValue(value) == 0.0F);
}

} // namespace mirelon
