#include "editor/textentry.h"
#include "presetsystem/panelcontrols.h"

using namespace VSTGUI;

namespace mirelon {

CTextEdit* newNameField(const CRect& rect, IControlListener* listener, std::int32_t tag,
                        CBitmap* background) {
    auto* field = new TextEntry(rect, listener, tag, background);
    field->setBackOffset(rect.getTopLeft());
    field->setBackColor(TextEntry::fieldColor);
    field->setFrameColor(TextEntry::inkColor);
    field->setHoriAlign(kCenterText);
    field->setTextInset(CPoint(TextEntry::fieldInset, 0));
    return field;
}

} // namespace mirelon
