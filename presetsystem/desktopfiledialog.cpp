#include "presetsystem/desktopfiledialog.h"

#include "presetsystem/helperfileselector.h"

#include <utility>

namespace mirelon {

using VSTGUI::CNewFileSelector;
using VSTGUI::PlatformFileSelectorStyle;

void DesktopFileDialog::ask(const FileQuestion& question, Answer answered) {
    const bool save = question.save;
    auto backEnd = std::make_shared<HelperFileSelector>(
        save ? PlatformFileSelectorStyle::SelectSaveFile : PlatformFileSelectorStyle::SelectFile);
    const auto selector =
        VSTGUI::owned(new CNewFileSelector(std::move(backEnd), window.getFrame()));
    const VSTGUI::CFileExtension type(question.type.description, question.type.extension);
    selector->setTitle(question.title.c_str());
    selector->setInitialDirectory(question.directory.c_str());
    if (save) {
        selector->setDefaultSaveName(question.name.c_str());
        selector->setDefaultExtension(type);
    } else {
        selector->addFileExtension(type);
        selector->setAllowMultiFileSelection(false);
    }
    // This object and the question may be gone when the user has answered.
    const bool hasAnswer = selector->runModal();
    if (!save)
        selector->cancel();
    if (hasAnswer && selector->getNumSelectedFiles() == 1)
        answered(selector->getSelectedFile(0));
    else
        answered(std::nullopt);
}

} // namespace mirelon
