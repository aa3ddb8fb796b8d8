// Gets one file from the user: asks until the answer is one that can be used.
#pragma once

#include "presetsystem/filedialog.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace mirelon {

// To be saved under, a name without the type's extension gets it; when that
// makes it the name of an existing file, which the dialog has not asked about,
// the user is asked once more, with that name proposed.
//
// The answer may come before ask() returns or much later. One thread at a time.
class FilePrompt {
  public:
    using Continuation = std::function<void(const ChosenFile& file)>;

    explicit FilePrompt(std::unique_ptr<FileDialog> dialog)
        : dialog(std::move(dialog)) {}
    ~FilePrompt() = default;
    FilePrompt(const FilePrompt&) = delete;
    FilePrompt& operator=(const FilePrompt&) = delete;

    // Calls `proceed` at most once: with the file, or not at all when the user
    // dismisses the dialog, chooses what is no file or has too long a path, or
    // when the prompt is cancelled or destroyed first. While one question is open
    // another is dropped. `proceed` may ask again and may destroy the prompt.
    void ask(const FileQuestion& question, Continuation proceed);
    // Takes back the question that is open, if one is.
    void cancel();
    // Whether there is a dialog to ask by.
    bool canAsk() const { return dialog->isAvailable(); }
    bool isAsking() const { return open != nullptr; }

  private:
    struct OpenQuestion {
        FileQuestion question;
        Continuation proceed;
        bool repeated = false;
    };

    void openDialog();
    void take(std::optional<std::string> path);
    void end() { open.reset(); }

    std::unique_ptr<FileDialog> dialog;
    // Answers look whether it is still there; nothing else shares it.
    std::shared_ptr<OpenQuestion> open;
};

} // namespace mirelon
