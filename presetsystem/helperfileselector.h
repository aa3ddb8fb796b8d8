// The toolkit's file selector with a Linux back end of our own.
//
// The desktops' own dialogs are separate programs there. The toolkit's back end
// hands them the host's LD_PRELOAD, open files and signal mask, and neither the
// proposed name nor the file type; this one does it properly.
#pragma once

#include "platform/helperprocess.h"
#include "platform/toolkit.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mirelon {

enum class HelperDialect { kdialog, zenity };

struct HelperProgram {
    std::string path;
    HelperDialect dialect;
};

// In the order of preference.
std::vector<HelperProgram> desktopHelpers();
// The first that is there to be run.
std::optional<HelperProgram> firstInstalled(const std::vector<HelperProgram>& programs);

class HelperFileSelector final : public VSTGUI::IPlatformFileSelector {
  public:
    // Uses the first of the programs that is installed. The dialog belongs to
    // `parent`, an X11 window; 0: to none.
    HelperFileSelector(VSTGUI::PlatformFileSelectorStyle style, std::uint32_t parent,
                       std::vector<HelperProgram> programs = desktopHelpers());

    // Starts the dialog, once; false when it cannot. The callback is called once,
    // with the absolute path chosen: from the run loop when the user has answered, or
    // with none, when there is no dialog, before this returns. It may destroy this
    // object.
    bool run(const VSTGUI::PlatformFileSelectorConfig& config) override;
    // Ends the dialog and calls back with no path, unless it has been answered.
    bool cancel() override;

  private:
    using Paths = std::vector<VSTGUI::UTF8String>;
    void answer(Paths paths);

    VSTGUI::PlatformFileSelectorStyle style;
    std::uint32_t parent;
    std::vector<HelperProgram> programs;
    VSTGUI::PlatformFileSelectorConfig::CallbackFunc answered; // empty while nothing is asked
    std::unique_ptr<HelperProcess> dialog;
};

} // namespace mirelon
