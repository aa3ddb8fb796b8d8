// The views of the window, built when it opens.
#include "editor/adeditor.h"
#include "editor/layout.h"
#include "editor/parameterslider.h"

using namespace VSTGUI;
namespace layout = mirelon::layout;

namespace {

// A read-out of the window: a text on the window's own background.
CParamDisplay* newTextField(const layout::TextField& field, CBitmap* background, float maximum,
                            CHoriTxtAlign alignment, layout::Converter converter, float value) {
    auto* display = new CParamDisplay(field.rect, background);
    display->setBackOffset(field.back);
    display->setFont(kNormalFontSmall);
    display->setFontColor(kBlackCColor);
    display->setHoriAlign(alignment);
    display->setMax(maximum);
    display->setValueToStringFunction([converter](float shown, char text[256], CParamDisplay*) {
        *text = '\0';
        converter(shown, text);
        return true;
    });
    display->setValue(value);
    return display;
}

} // namespace

// Later views lie above earlier ones.
void ADEditor::buildViews() {
    addCaptions();
    addMeter(widthMeter, layout::widthMeterAt);
    addSlider(kParamWidth);
    addSlider(kParamGain);
    addMeter(balanceMeter, layout::balanceMeterAt);
    addSlider(kParamBalance);
    addSlider(kParamStability);
    addSlider(kParamCenterPos);
    addSwitches();
    addAbout();
}

void ADEditor::addCaptions() {
    for (const layout::Caption& caption : layout::captions)
        frame->addView(newTextField(caption.field, background, layout::captionMaximum,
                                    caption.rightAligned ? kRightText : kLeftText,
                                    parameterNameStringConvert, static_cast<float>(caption.text)));
}

void ADEditor::addMeter(CVuMeter1*& meter, CPoint at) {
    const CRect rect(at, CPoint(meterUnlit->getWidth(), meterUnlit->getHeight()));
    meter = new CVuMeter1(rect, meterLit, meterUnlit, layout::meterSegments, CVuMeter::kHorizontal);
    meter->setDecreaseStepValue(1.0F);
    meter->setDefaultValue(0.5F);
    meter->setMax(1.0F);
    meter->setMin(0.0F);
    meter->setValue(0.5F);
    frame->addView(meter);
}

float ADEditor::readOutValue(int index) const {
    switch (index) {
    case kParamWidth:
        return 2.0F * effectLink->getParameterValue(index);
    case kParamGain:
        return effectLink->getParameterValue(index);
    default:
        return effectLink->getParameter(index);
    }
}

float ADEditor::switchValue(int index) const {
    return effectLink->getParameter(index) < 0.5F ? 0.0F : 1.0F;
}

void ADEditor::addSlider(int index) {
    const layout::SliderRow& row = layout::sliderRows[static_cast<std::size_t>(index)];
    const CRect rect(layout::sliderLeft, row.top, layout::sliderRight,
                     row.top + 1 + sliderHandle->getHeight());
    const auto lastHandlePosition =
        static_cast<int32_t>(layout::sliderRight - sliderHandle->getWidth());
    auto* slider =
        new ParameterSlider(rect, this, index, layout::sliderLeft, lastHandlePosition, sliderHandle,
                            background, CPoint(layout::sliderLeft, row.top), layout::sliderStyle);
    slider->setOffsetHandle(row.handleOffset);
    slider->setDefaultValue(0.5F);
    slider->setValue(effectLink->getParameter(index));
    frame->addView(slider);
    sliders[static_cast<std::size_t>(index)] = slider;

    CParamDisplay* readOut = newTextField(row.readOut, background, row.maximum, kLeftText,
                                          row.converter, readOutValue(index));
    frame->addView(readOut);
    readOuts[static_cast<std::size_t>(index)] = readOut;
}

void ADEditor::addSwitches() {
    // All four are as high as half the picture of the first.
    const CCoord height = switchPictures[kParamProcess]->getHeight() / 2;
    for (const layout::Switch& place : layout::switches) {
        const CRect rect(CPoint(place.left, layout::switchTop),
                         CPoint(switchPictures[place.widthFrom]->getWidth(), height));
        auto* button =
            new COnOffButton(rect, this, place.parameter, switchPictures[place.parameter], 0);
        button->setValue(switchValue(place.parameter));
        frame->addView(button);
        switches[place.parameter] = button;
    }
}

void ADEditor::addAbout() {
    const CPoint size(aboutPicture->getWidth(), aboutPicture->getHeight());
    const CRect area(
        CPoint((layout::aboutAreaWidth - size.x) / 2, (layout::aboutAreaHeight - size.y) / 2),
        size);
    about = new CAbout(layout::aboutStrip, this, layout::aboutTag, aboutPicture, area, CPoint(0, 0),
                       layout::aboutTextOrigin);
    frame->addView(about);
}
