// The editor of the effect under check in a host's window.
#pragma once

#include "hosting/editorwindow.h"

#include <chrono>
#include <memory>

namespace mirelon::validator {

// The window is on the process's display. Throws Skipped when the effect has no
// editor or the process no display. One thread only.
class CheckedEditor {
  public:
    explicit CheckedEditor(hosting::Effect& effect);

    // Each throws Failed when the editor does not do its part.
    void open();
    void close();
    // Sends the host's idle command for this long.
    void idle(std::chrono::milliseconds time);

  private:
    bool waitForChildren(bool some);

    hosting::Effect& effect;
    std::unique_ptr<hosting::EditorWindow> editor;
};

} // namespace mirelon::validator
