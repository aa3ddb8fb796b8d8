#include "editor/textfield.h"

using namespace VSTGUI;

namespace mirelon {

void setUpTextField(CParamDisplay& display, const layout::TextField& field, CHoriTxtAlign alignment,
                    layout::Converter converter, float maximum, float value) {
    display.setBackOffset(field.back);
    display.setFont(kNormalFontSmall);
    display.setFontColor(kBlackCColor);
    display.setHoriAlign(alignment);
    display.setMax(maximum);
    display.setValueToStringFunction([converter](float shown, char text[256], CParamDisplay*) {
        *text = '\0';
        converter(shown, text);
        return true;
    });
    display.setValue(value);
}

CParamDisplay* newTextField(const layout::TextField& field, CBitmap* background,
                            CHoriTxtAlign alignment, layout::Converter converter, float maximum,
                            float value) {
    auto* display = new CParamDisplay(field.rect, background);
    setUpTextField(*display, field, alignment, converter, maximum, value);
    return display;
}

} // namespace mirelon
