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

    // Calls `answered` once: before it returns, or later. The dialog may be
    // destroyed meanwhile, by what runs while the user thinks or by the answer
    // itself; then nothing may touch it any more, and the answer may be left out.
    virtual void ask(const FileQuestion& question, Answer answered) = 0;
};

} // namespace mirelon
