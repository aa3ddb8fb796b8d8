#include "editor/textfield.h"

using namespace VSTGUI;

namespace mirelon {

CParamDisplay* newTextField(const layout::TextField& field, CBitmap* background,
                            CHoriTxtAlign alignment, layout::Converter converter, float maximum,
                            float value) {
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

} // namespace mirelon
