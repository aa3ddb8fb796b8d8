#include "presetsystem/inputblock.h"

namespace mirelon {

// A modal view gets all events of the pointer; this one covers nothing and does
// nothing with them.
InputBlock::InputBlock(VSTGUI::CFrame& frame)
    : frame(frame) {
    auto* const modal = new VSTGUI::CView(VSTGUI::CRect());
    session = frame.beginModalViewSession(modal);
    if (!session)
        modal->forget();
    frame.registerKeyboardHook(&keySink);
}

InputBlock::~InputBlock() {
    frame.unregisterKeyboardHook(&keySink);
    if (session)
        frame.endModalViewSession(*session);
}

void InputBlock::KeySink::onKeyboardEvent(VSTGUI::KeyboardEvent& event, VSTGUI::CFrame* /*frame*/) {
    event.consumed = true;
}

} // namespace mirelon
