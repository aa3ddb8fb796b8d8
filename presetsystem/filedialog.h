// The dialog that asks the user for a file.
#pragma once

#include "presetsystem/filequestion.h"

#include <functional>
#include <optional>
#include <string>

namespace mirelon {

// User-interface thread only.
class FileDialog {
  public:
    // The full path of the one file chosen, or nothing.
    using Answer = std::function<void(std::optional<std::string> path)>;

    FileDialog() = default;
    virtual ~FileDialog() = default;
    FileDialog(const FileDialog&) = delete;
    FileDialog& operator=(const FileDialog&) = delete;

    // Whether there is a dialog to be shown.
    virtual bool isAvailable() const { return true; }
    // Shows the dialog, which keeps nobody waiting, and calls `answered` once: before
    // it returns, or later. The answer may ask anew and may destroy the dialog.
    // Asked at most once at a time.
    virtual void ask(const FileQuestion& question, Answer answered) = 0;
    // Takes the dialog off the screen, if it is there; it is not answered any more.
    // So does its destruction.
    virtual void dismiss() = 0;
};

} // namespace mirelon
