#include "presetsystem/desktopfiledialog.h"

#include "platform/toolkitconnection.h"
#include "presetsystem/helperfileselector.h"

#include <utility>

namespace mirelon {

using VSTGUI::CNewFileSelector;
using VSTGUI::PlatformFileSelectorStyle;

namespace {

// 0 for a frame that is on no screen.
std::uint32_t parentFor(const VSTGUI::CFrame* frame) {
    const std::uint32_t window = frame != nullptr ? windowOf(*frame) : 0;
    return window != 0 ? managedWindowOf(window) : 0;
}

} // namespace

bool DesktopFileDialog::isAvailable() const {
    return firstInstalled(desktopHelpers()).has_value();
}

void DesktopFileDialog::ask(const FileQuestion& question, Answer whenAnswered) {
    VSTGUI::CFrame* const frame = window.getFrame();
    const bool save = question.save;
    auto backEnd = std::make_shared<HelperFileSelector>(
        save ? PlatformFileSelectorStyle::SelectSaveFile : PlatformFileSelectorStyle::SelectFile,
        parentFor(frame));
    // This object may be gone, or ask anew, before it is known whether it could ask.
    const auto asking = VSTGUI::owned(new CNewFileSelector(std::move(backEnd), frame));
    const VSTGUI::CFileExtension type(question.type.description, question.type.extension);
    asking->setTitle(question.title.c_str());
    asking->setInitialDirectory(question.directory.c_str());
    if (save) {
        asking->setDefaultSaveName(question.name.c_str());
        asking->setDefaultExtension(type);
    } else {
        asking->addFileExtension(type);
        asking->setAllowMultiFileSelection(false);
    }
    answered = std::move(whenAnswered);
    selector = asking;
    if (frame != nullptr)
        inputBlock.emplace(*frame);
    asking->run([this](CNewFileSelector* asked) { take(*asked); });
}

// Also called, with nothing chosen, when the dialog is dismissed.
void DesktopFileDialog::take(const CNewFileSelector& asked) {
    inputBlock.reset();
    selector = nullptr;
    const Answer told = std::exchange(answered, nullptr);
    if (told == nullptr)
        return;
    if (asked.getNumSelectedFiles() == 1)
        told(asked.getSelectedFile(0));
    else
        told(std::nullopt);
}

void DesktopFileDialog::end() {
    answered = nullptr;
    if (const auto asked = selector)
        asked->cancel();
}

} // namespace mirelon
