#include "presetsystem/inputblock.h"

namespace mirelon {

// A modal view gets all events of the pointer, and takes the keys from every other;
// this one covers nothing and does nothing with them.
InputBlock::InputBlock(VSTGUI::CFrame& frame)
    : frame(frame) {
    auto* const modal = new VSTGUI::CView(VSTGUI::CRect());
    session = frame.beginModalViewSession(modal);
    if (!session)
        modal->forget();
}

InputBlock::~InputBlock() {
    if (session)
        frame.endModalViewSession(*session);
}

} // namespace mirelon
