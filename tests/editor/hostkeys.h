// A host that waits for keys in the window around the editor.
#pragma once

#include "tests/editor/editorhost.h"

#include <string>

namespace mirelon::test {

// The window has the input focus, as when the host stands in front of the user.
class HostKeys {
  public:
    explicit HostKeys(EditorHost& editor);

    void takeFocus() const;
    bool hasFocus() const;

    // What has come since the last time: "+space -space" for a press and a release.
    std::string heard();

    // Presses a key as a host does that hands its own keys on to the editor.
    void send(unsigned long keysym) const;

  private:
    EditorHost& editor;
};

} // namespace mirelon::test
