// The file dialog of the user's desktop.
#pragma once

#include "platform/toolkit.h"
#include "presetsystem/filedialog.h"
#include "presetsystem/inputblock.h"

#include <optional>

namespace mirelon {

// While it is open the editor's window takes no input; everything else goes on.
class DesktopFileDialog final : public FileDialog {
  public:
    // `window` outlives the dialog; a frame that it has when it is asked is there
    // until it is answered or dismissed.
    explicit DesktopFileDialog(const VSTGUI::VSTGUIEditorInterface& window)
        : window(window) {}
    ~DesktopFileDialog() override { end(); }

    bool isAvailable() const override;
    void ask(const FileQuestion& question, Answer answered) override;
    void dismiss() override { end(); }

  private:
    void take(const VSTGUI::CNewFileSelector& asked);
    void end();

    const VSTGUI::VSTGUIEditorInterface& window;
    // While the dialog is open.
    Answer answered;
    VSTGUI::SharedPointer<VSTGUI::CNewFileSelector> selector;
    std::optional<InputBlock> inputBlock;
};

} // namespace mirelon
