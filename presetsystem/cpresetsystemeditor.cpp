#include "presetsystem/cpresetsystemeditor.h"

#include "platform/idletimer.h"
#include "presetsystem/desktopfiledialog.h"
#include "presetsystem/imageio.h"
#include "presetsystem/panellayout.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

using mirelon::ChosenFile;
using mirelon::ImageVerdict;
using mirelon::PresetName;
using mirelon::PresetSlot;

namespace {

// Below this a default button asks for the stored default to be cleared.
constexpr float clearThreshold = 0.75F;
// What a load button sends for a file of the other byte order.
constexpr float reversedRequest = 0.5F;

const PresetRecord& presetAt(const PresetBank& bank, int preset) {
    return bank[static_cast<std::size_t>(preset)];
}

std::vector<PresetName> namesUpTo(int last, const bankfilestruct& image) {
    std::vector<PresetName> names;
    for (int preset = 0; preset <= last; ++preset)
        names.push_back(mirelon::bankImageName(image, preset));
    return names;
}

} // namespace

CPresetSystemEditor::CPresetSystemEditor(AudioEffect* effect)
    : CPresetSystemEditor(effect, nullptr) {}

CPresetSystemEditor::CPresetSystemEditor(AudioEffect* effect,
                                         std::unique_ptr<mirelon::FileDialog> dialog)
    : AEffGUIEditor(effect)
    , effectLink(dynamic_cast<EffectLink*>(effect))
    , filePrompt(dialog != nullptr ? std::move(dialog)
                                   : std::make_unique<mirelon::DesktopFileDialog>(*this)) {
    if (effectLink != nullptr)
        effectLink->setEditorLink(this);
}

CPresetSystemEditor::~CPresetSystemEditor() {
    if (effectLink != nullptr)
        effectLink->setEditorLink(nullptr);
    try {
        CPresetSystemEditor::storePathsAndFilenames();
    } catch (const std::exception&) {
        return; // out of memory: the folders and names are not remembered
    }
}

bool CPresetSystemEditor::open(void* /*parent*/) {
    if (frame == nullptr || effectLink == nullptr)
        return false;
    // Pending updates stay: what was set since the controls took their values
    // shows at the first idle.
    window.open();
    panel.build(*frame, this);
    panel.showBank(effectLink->bank(), effectLink->getPresetNo());
    idleTimer = createTimer(this);
    return true;
}

void CPresetSystemEditor::close() {
    window.close();
    if (idleTimer != nullptr)
        destroyTimer(idleTimer);
    idleTimer = nullptr;
    panel.forget();
}

void CPresetSystemEditor::idle() {
    if (const auto held = window.tryHold())
        show(pending.take());
    AEffGUIEditor::idle();
}

// --- What the panel shows ---

void CPresetSystemEditor::show(mirelon::PendingUpdates::Taken updates) {
    for (int i = 0; i < kNumPresetParams; ++i)
        if (updates.parameter(i))
            showParameter(i);
    if (updates.bank())
        panel.showBank(effectLink->bank(), effectLink->getPresetNo());
}

void CPresetSystemEditor::showCurrentName(const PresetName& name) {
    if (const auto held = window.tryHold())
        panel.showCurrentName(name);
    else
        pending.addBank();
}

void CPresetSystemEditor::nameChangedExternal(char* name) {
    if (name != nullptr)
        showCurrentName(mirelon::presetName(name));
}

void CPresetSystemEditor::nameChangedInternal(char* name) {
    nameChangedExternal(name);
    if (effectLink != nullptr)
        effectLink->setPresetName(name);
}

void CPresetSystemEditor::bankReplaced() {
    if (const auto held = window.tryHold())
        panel.showBank(effectLink->bank(), effectLink->getPresetNo());
    else
        pending.addBank();
}

// --- What the controls do ---

void CPresetSystemEditor::valueChanged(VSTGUI::CControl* control) {
    if (effectLink == nullptr)
        return;
    const float value = control->getValue();
    // A file operation may end with this editor gone: nothing comes after it.
    // Without a default case, so that the compiler misses a tag that has no action.
    switch (static_cast<mirelon::panel::Tag>(control->getTag())) {
    case mirelon::panel::nameTag:
        return renamePreset();
    case mirelon::panel::rockerTag:
        return stepPreset(value);
    case mirelon::panel::menuTag:
        return choosePreset(value);
    case mirelon::panel::loadBankTag:
        return loadBank(value == reversedRequest);
    case mirelon::panel::saveBankTag:
        return saveBank();
    case mirelon::panel::loadPresetTag:
        return loadPreset(value == reversedRequest);
    case mirelon::panel::savePresetTag:
        return savePreset();
    case mirelon::panel::defaultBankTag:
        return value < clearThreshold ? resetDefaultBank() : saveDefaultBank();
    case mirelon::panel::defaultPresetTag:
        return value < clearThreshold ? resetDefaultPreset() : saveDefaultPreset();
    case mirelon::panel::storeATag:
        return storeA();
    case mirelon::panel::storeBTag:
        return storeB();
    case mirelon::panel::recallATag:
        return recallA();
    case mirelon::panel::recallBTag:
        return recallB();
    }
}

void CPresetSystemEditor::renamePreset() {
    const auto name = panel.typedName();
    if (!name)
        return;
    panel.showCurrentName(*name);
    effectLink->setPresetName(name->data());
}

void CPresetSystemEditor::stepPreset(float direction) {
    if (direction == 0.0F)
        return;
    const int step = direction > 0.0F ? 1 : -1;
    const int preset = std::clamp(effectLink->getPresetNo() + step, 0, kNumPresets - 1);
    const PresetName name = presetAt(effectLink->bank(), preset).name();
    panel.select(preset);
    panel.showInField(name);
    effectLink->setPresetNo(preset);
    effectLink->setPresetName(name.data());
}

void CPresetSystemEditor::choosePreset(float menuValue) {
    // Never negative: the menu counts from 0.
    const int preset = static_cast<int>(menuValue + 0.5F); // NOLINT(bugprone-incorrect-roundings)
    if (!mirelon::isPresetIndex(preset) || !panel.select(preset))
        return;
    const PresetName name = panel.nameOf(preset, presetAt(effectLink->bank(), preset).name());
    effectLink->setPresetNo(preset);
    effectLink->setPresetName(name.data());
    panel.showInField(name);
}

// Controller assignment is switched off.
void CPresetSystemEditor::endLearn() {}
void CPresetSystemEditor::endCancel() {}

// --- Images ---

void CPresetSystemEditor::PresetToBuffer(presetfilestruct* image) {
    if (effectLink != nullptr)
        mirelon::writePresetImage(*image, effectLink->getUniqueID(),
                                  presetAt(effectLink->bank(), effectLink->getPresetNo()));
}

void CPresetSystemEditor::BankToBuffer(bankfilestruct* image) {
    if (effectLink != nullptr)
        mirelon::writeBankImage(*image, effectLink->getUniqueID(), effectLink->bank());
}

void CPresetSystemEditor::BufferToPreset(presetfilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    const int current = effectLink->getPresetNo();
    PresetRecord& preset = effectLink->bank()[static_cast<std::size_t>(current)];
    const auto reading =
        mirelon::readPresetImage(*image, effectLink->getUniqueID(), reversed, preset);
    if (reading.verdict != ImageVerdict::accepted)
        return;
    const PresetName name = preset.name();
    showCurrentName(name);
    effectLink->setPresetName(name.data());
    effectLink->setPresetNo(current);
}

void CPresetSystemEditor::BufferToBank(bankfilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    effectLink->setPresetNo(0); // whatever the image holds
    const auto reading =
        mirelon::readBankImage(*image, effectLink->getUniqueID(), reversed, effectLink->bank());
    const bool accepted = reading.verdict == ImageVerdict::accepted;
    if (!accepted && reading.verdict != ImageVerdict::outOfRange)
        return;
    if (const auto held = window.tryHold()) {
        // A name shows as soon as it is read, before its preset's values: a bank
        // that is refused at a value leaves the names up to there in the menu.
        if (accepted)
            panel.showBank(effectLink->bank(), 0);
        else
            panel.showFirstNames(namesUpTo(reading.preset, *image));
    } else {
        pending.addBank();
    }
    if (accepted)
        effectLink->setPresetNo(0);
}

void CPresetSystemEditor::MidiToBuffer(midifilestruct* image) {
    if (effectLink == nullptr)
        return;
    // The map's values are those of the nine parameters after the preset's.
    mirelon::PresetValues values{};
    for (int j = 0; j < kNumPresetParams; ++j)
        values[static_cast<std::size_t>(j)] = effectLink->getParameter(kNumPresetParams + j);
    mirelon::writeMidiImage(*image, effectLink->getUniqueID(), values);
}

void CPresetSystemEditor::BufferToMidi(midifilestruct* image, bool reversed) {
    if (effectLink == nullptr)
        return;
    const auto read = mirelon::readMidiImage(*image, effectLink->getUniqueID(), reversed);
    for (int j = 0; j < read.count; ++j)
        effect->setParameter(kNumPresetParams + j, read.values[static_cast<std::size_t>(j)]);
}

// --- Files ---

void CPresetSystemEditor::askForFile(const mirelon::FileType& type, bool save, const char* title,
                                     mirelon::PathBuffer& name,
                                     mirelon::FilePrompt::Continuation proceed) {
    if (getFrame() == nullptr)
        return;
    filePrompt.ask({type, save, title, lastFiles.currentDir.data(), name.data()},
                   [this, &name, proceed = std::move(proceed)](const ChosenFile& file) {
                       name = file.name;
                       lastFiles.currentDir = file.directory;
                       proceed(file);
                   });
}

void CPresetSystemEditor::savePreset() {
    askForFile(mirelon::presetFileType, true, "Save preset", lastFiles.currentPresetName,
               [this](const ChosenFile& file) {
                   presetfilestruct image;
                   PresetToBuffer(&image);
                   mirelon::writeImage(file, image.bytes);
               });
}

void CPresetSystemEditor::saveBank() {
    askForFile(mirelon::bankFileType, true, "Save bank", lastFiles.currentBankName,
               [this](const ChosenFile& file) {
                   bankfilestruct image;
                   BankToBuffer(&image);
                   mirelon::writeImage(file, image.bytes);
               });
}

void CPresetSystemEditor::loadPreset(bool reversed) {
    askForFile(mirelon::presetFileType, false,
               reversed ? "Load preset (endian-reversed)" : "Load preset",
               lastFiles.currentPresetName, [this, reversed](const ChosenFile& file) {
                   presetfilestruct image;
                   mirelon::readImage(file, image.bytes);
                   BufferToPreset(&image, reversed);
                   if (getFrame() != nullptr)
                       getFrame()->invalid();
               });
}

void CPresetSystemEditor::loadBank(bool reversed) {
    askForFile(mirelon::bankFileType, false, reversed ? "Load bank (endian-reversed)" : "Load bank",
               lastFiles.currentBankName, [this, reversed](const ChosenFile& file) {
                   bankfilestruct image;
                   mirelon::readImage(file, image.bytes);
                   BufferToBank(&image, reversed);
                   if (getFrame() != nullptr)
                       getFrame()->invalid();
               });
}

void CPresetSystemEditor::loadMidi(bool /*reversed*/) {}
void CPresetSystemEditor::saveMidi() {}

// --- Preferences ---

void CPresetSystemEditor::storePreset(PresetSlot slot) {
    presetfilestruct image;
    PresetToBuffer(&image);
    storedPresets.storePreset(slot, image);
}

void CPresetSystemEditor::recallPreset(PresetSlot slot) {
    presetfilestruct image = storedPresets.preset(slot);
    BufferToPreset(&image, false);
}

void CPresetSystemEditor::saveDefaultBank() {
    bankfilestruct image;
    BankToBuffer(&image);
    storedPresets.storeDefaultBank(image);
}

void CPresetSystemEditor::loadDefaultBank() {
    bankfilestruct image = storedPresets.defaultBank();
    BufferToBank(&image, false);
}

void CPresetSystemEditor::resetDefaultBank() {
    storedPresets.clearDefaultBank();
}

void CPresetSystemEditor::saveDefaultPreset() {
    storePreset(PresetSlot::defaultPreset);
}

void CPresetSystemEditor::loadDefaultPreset() {
    recallPreset(PresetSlot::defaultPreset);
}

void CPresetSystemEditor::resetDefaultPreset() {
    storedPresets.clearPreset(PresetSlot::defaultPreset);
}

void CPresetSystemEditor::storeA() {
    storePreset(PresetSlot::memoryA);
}

void CPresetSystemEditor::storeB() {
    storePreset(PresetSlot::memoryB);
}

void CPresetSystemEditor::recallA() {
    recallPreset(PresetSlot::memoryA);
}

void CPresetSystemEditor::recallB() {
    recallPreset(PresetSlot::memoryB);
}

void CPresetSystemEditor::saveDefaultMidi() {}
void CPresetSystemEditor::loadDefaultMidi() {}

void CPresetSystemEditor::resetDefaultMidi() {
    storedPresets.clearDefaultMidi();
}

void CPresetSystemEditor::storePathsAndFilenames() {
    storedPresets.storeLastFiles(lastFiles);
}

void CPresetSystemEditor::recallPathsAndFilenames() {
    storedPresets.recallLastFiles(lastFiles);
}

void CPresetSystemEditor::loadDefaults() {
    loadDefaultBank();
    loadDefaultPreset();
    loadDefaultMidi();
    recallPathsAndFilenames();
}
