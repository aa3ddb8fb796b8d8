// Keeps the user's input from a window for a while.
#pragma once

#include "platform/toolkit.h"

namespace mirelon {

// While it exists, pointer and keys reach no view of the frame: what is being typed
// counts as typed, and nothing is hovered over. Keys are left to the host. Drawing
// goes on. On the thread that owns the window.
class InputBlock final {
  public:
    // The frame outlives this object and is closed after its end.
    explicit InputBlock(VSTGUI::CFrame& frame);
    ~InputBlock();
    InputBlock(const InputBlock&) = delete;
    InputBlock& operator=(const InputBlock&) = delete;

  private:
    VSTGUI::CFrame& frame;
    VSTGUI::Optional<VSTGUI::ModalViewSessionID> session;
};

} // namespace mirelon
