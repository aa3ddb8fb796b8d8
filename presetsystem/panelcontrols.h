// How the preset panel gets its field and its buttons, without knowing how they are made.
#pragma once

#include "platform/toolkit.h"

#include <cstdint>

namespace mirelon {

// Each answers a new view with one reference, which the caller hands on to a
// frame. Implemented by the editor.

// The field that shows a name and in which one is typed; the listener hears of every
// name that is another than before. It shows the part of `background` that it covers.
VSTGUI::CTextEdit* newNameField(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener,
                                std::int32_t tag, VSTGUI::CBitmap* background);

// The buttons: `pictures` is a strip of pictures of the rectangle's height. The listener
// hears the press only, never the release.

// Sends 1; with `doubleClickOnly` answers double clicks alone, and with the
// control key sends 0.5.
VSTGUI::CControl* newKickButton(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener,
                                std::int32_t tag, VSTGUI::CBitmap* pictures, bool doubleClickOnly);
// Sends 0.5 for a right click without modifiers, 1 for any other.
VSTGUI::CControl* newSaveLoadButton(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener,
                                    std::int32_t tag, VSTGUI::CBitmap* pictures);
// Sends -1 for its left half, +1 for its right.
VSTGUI::CControl* newRockerSwitch(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener,
                                  std::int32_t tag, VSTGUI::CBitmap* pictures);

} // namespace mirelon
