// The toolkit's file selector with a Linux back end of our own.
//
// The desktops' own dialogs are separate programs there. The toolkit's back end
// hands them the host's LD_PRELOAD, open files and signal mask, and neither the
// proposed name nor the file type; this one does it properly.
#pragma once

#include "platform/toolkit.h"

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

class HelperFileSelector final : public VSTGUI::IPlatformFileSelector {
  public:
    // Uses the first of the programs that is installed.
    HelperFileSelector(VSTGUI::PlatformFileSelectorStyle style,
                       std::vector<HelperProgram> programs = desktopHelpers());

    // Blocks until the user has answered, then hands the absolute paths chosen
    // to the callback. False when there is no program to ask with.
    bool run(const VSTGUI::PlatformFileSelectorConfig& config) override;
    // Nothing runs beyond run().
    bool cancel() override { return true; }

  private:
    VSTGUI::PlatformFileSelectorStyle style;
    std::vector<HelperProgram> programs;
};

} // namespace mirelon
