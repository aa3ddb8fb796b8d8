// The file dialog of the user's desktop.
#pragma once

#include "platform/toolkit.h"
#include "presetsystem/filedialog.h"

namespace mirelon {

// Answers before ask() returns.
class DesktopFileDialog final : public FileDialog {
  public:
    // `window` has the frame that is brought up to date before the dialog opens,
    // if any, and outlives the dialog.
    explicit DesktopFileDialog(const VSTGUI::VSTGUIEditorInterface& window)
        : window(window) {}

    void ask(const FileQuestion& question, Answer answered) override;

  private:
    const VSTGUI::VSTGUIEditorInterface& window;
};

} // namespace mirelon
