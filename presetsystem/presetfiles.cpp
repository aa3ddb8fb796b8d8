// The editor's side of images and files: between the effect's store and byte
// images, and between those and files that the user chooses.
#include "platform/files.h"
#include "presetsystem/cpresetsystemeditor.h"
#include "presetsystem/helperfileselector.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>

namespace {

using mirelon::FileType;
using mirelon::ImageVerdict;

template <std::size_t Size>
void readImageFile(const char* name, const char* dir, std::array<std::byte, Size>& image) {
    XPlatFile file = nullptr;
    XPlatFileOpen(name, dir, &file, false);
    XPlatFileRead(file, image.data(), static_cast<std::int32_t>(image.size()));
    XPlatFileClose(file);
}

template <std::size_t Size>
void writeImageFile(const char* name, const char* dir, const std::array<std::byte, Size>& image) {
    XPlatFile file = nullptr;
    XPlatFileOpen(name, dir, &file, true);
    XPlatFileWrite(file, image.data(), static_cast<std::int32_t>(image.size()));
    XPlatFileClose(file);
}

bool hasExtension(std::string_view path, std::string_view extension) {
    const std::size_t dot = path.rfind('.');
    return dot != std::string_view::npos && path.size() - dot - 1 == extension.size() &&
           strncasecmp(&path[dot + 1], extension.data(), extension.size()) == 0;
}

bool exists(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0;
}

// Whether the parts of `path` fit the editor's buffers and the file layer.
bool fits(std::string_view path, std::size_t bufferSize) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return false;
    const std::size_t nameLength = path.size() - slash - 1;
    return nameLength > 0 && nameLength < bufferSize && slash + 1 < bufferSize &&
           path.size() < kXPlatPathSize;
}

} // namespace

void CPresetSystemEditor::PresetToBuffer(presetfilestruct* image) {
    if (effectLink == nullptr)
        return;
    EffectLink& presets = *effectLink;
    const auto current = static_cast<std::size_t>(presets.getPresetNo());
    mirelon::writePresetImage(*image, presets.getUniqueID(), presets.bank()[current]);
}

void CPresetSystemEditor::BankToBuffer(bankfilestruct* image) {
    if (effectLink != nullptr)
        mirelon::writeBankImage(*image, effectLink->getUniqueID(), effectLink->bank());
}

void CPresetSystemEditor::BufferToPreset(presetfilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    EffectLink& presets = *effectLink;
    const VstInt32 current = presets.getPresetNo();
    PresetRecord& preset = presets.bank()[static_cast<std::size_t>(current)];
    const auto reading = mirelon::readPresetImage(*image, presets.getUniqueID(), reversed, preset);
    if (reading.verdict != ImageVerdict::accepted)
        return;
    const mirelon::PresetName name = preset.name();
    showCurrentName(name);
    presets.setPresetName(name.data());
    presets.setPresetNo(current);
}

void CPresetSystemEditor::BufferToBank(bankfilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    EffectLink& presets = *effectLink;
    presets.setPresetNo(0); // whatever the image turns out to be
    const auto reading =
        mirelon::readBankImage(*image, presets.getUniqueID(), reversed, presets.bank());
    const bool accepted = reading.verdict == ImageVerdict::accepted;
    if (!accepted && reading.verdict != ImageVerdict::outOfRange)
        return;
    // Names show as they are read, each before its values: a bank that is
    // refused at a value leaves those up to that preset in the menu.
    const int lastNamed = accepted ? kNumPresets - 1 : reading.preset;
    for (int preset = 0; preset <= lastNamed; ++preset)
        showBankName(preset, mirelon::bankImageName(*image, preset));
    if (!accepted)
        return;
    const mirelon::PresetName first = mirelon::bankImageName(*image, 0);
    showBankName(0, first);
    showCurrentName(first);
    presets.setPresetNo(0);
}

void CPresetSystemEditor::MidiToBuffer(midifilestruct* image) {
    if (effectLink == nullptr)
        return;
    // The map's values are those of the nine parameters after the preset's.
    mirelon::PresetValues values{};
    for (int j = 0; j < kNumPresetParams; ++j)
        values[static_cast<std::size_t>(j)] = effect->getParameter(kNumPresetParams + j);
    mirelon::writeMidiImage(*image, effectLink->getUniqueID(), values);
}

void CPresetSystemEditor::BufferToMidi(midifilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    const auto read = mirelon::readMidiImage(*image, effectLink->getUniqueID(), reversed);
    for (int j = 0; j < read.count; ++j)
        effect->setParameter(kNumPresetParams + j, read.values[static_cast<std::size_t>(j)]);
}

void CPresetSystemEditor::loadMidi(bool /*reversed*/) {}
void CPresetSystemEditor::saveMidi() {}

std::optional<std::string> CPresetSystemEditor::askForFile(const mirelon::FileQuestion& question) {
    using VSTGUI::CNewFileSelector;
    auto backEnd = std::make_shared<mirelon::HelperFileSelector>(
        question.save ? VSTGUI::PlatformFileSelectorStyle::SelectSaveFile
                      : VSTGUI::PlatformFileSelectorStyle::SelectFile);
    const auto selector = VSTGUI::owned(new CNewFileSelector(std::move(backEnd), getFrame()));
    const VSTGUI::CFileExtension type(question.type.description, question.type.extension);
    selector->setTitle(question.title.c_str());
    selector->setInitialDirectory(question.directory.c_str());
    if (question.save) {
        selector->setDefaultSaveName(question.name.c_str());
        selector->setDefaultExtension(type);
    } else {
        selector->addFileExtension(type);
        selector->setAllowMultiFileSelection(false);
    }
    const bool answered = selector->runModal();
    if (!question.save)
        selector->cancel();
    if (!answered || selector->getNumSelectedFiles() != 1)
        return std::nullopt;
    return selector->getSelectedFile(0);
}

bool CPresetSystemEditor::chooseFile(const FileType& type, bool save, const char* title,
                                     PathBuffer& name) {
    if (getFrame() == nullptr)
        return false;
    mirelon::FileQuestion question{type, save, title, currentDir.data(), name.data()};
    const std::weak_ptr<const bool> life = lifeMark;
    std::optional<std::string> path = askForFile(question);
    if (path && save && !life.expired() && !hasExtension(*path, type.extension)) {
        path->append(".").append(type.extension);
        // The dialog has asked about the shorter name only; so that no file is
        // replaced unasked, the user is asked once more about this one.
        if (fits(*path, name.size()) && exists(*path)) {
            const std::size_t slash = path->rfind('/');
            question.directory = path->substr(0, slash + 1);
            question.name = path->substr(slash + 1);
            path = askForFile(question);
            if (path && !hasExtension(*path, type.extension))
                path.reset();
        }
    }
    if (life.expired() || !path || !fits(*path, name.size()))
        return false;
    XPlatGetFileNameAndDir(path->c_str(), name.data(), currentDir.data());
    return true;
}

void CPresetSystemEditor::savePreset() {
    if (!chooseFile(mirelon::presetFileType, true, "Save preset", currentPresetName))
        return;
    presetfilestruct image;
    PresetToBuffer(&image);
    writeImageFile(currentPresetName.data(), currentDir.data(), image.bytes);
}

void CPresetSystemEditor::saveBank() {
    if (!chooseFile(mirelon::bankFileType, true, "Save bank", currentBankName))
        return;
    bankfilestruct image;
    BankToBuffer(&image);
    writeImageFile(currentBankName.data(), currentDir.data(), image.bytes);
}

void CPresetSystemEditor::loadPreset(bool reversed) {
    const char* title = reversed ? "Load preset (endian-reversed)" : "Load preset";
    if (!chooseFile(mirelon::presetFileType, false, title, currentPresetName))
        return;
    presetfilestruct image;
    readImageFile(currentPresetName.data(), currentDir.data(), image.bytes);
    BufferToPreset(&image, reversed);
    if (getFrame() != nullptr)
        getFrame()->invalid();
}

void CPresetSystemEditor::loadBank(bool reversed) {
    const char* title = reversed ? "Load bank (endian-reversed)" : "Load bank";
    if (!chooseFile(mirelon::bankFileType, false, title, currentBankName))
        return;
    bankfilestruct image;
    readImageFile(currentBankName.data(), currentDir.data(), image.bytes);
    BufferToBank(&image, reversed);
    if (getFrame() != nullptr)
        getFrame()->invalid();
}
