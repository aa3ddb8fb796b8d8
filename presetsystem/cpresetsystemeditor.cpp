#include "presetsystem/cpresetsystemeditor.h"

#include "platform/idletimer.h"
#include "presetsystem/desktopfiledialog.h"
#include "presetsystem/imageio.h"
#include "presetsystem/panellayout.h"

#include <algorithm>
#include <exception>
#include <type_traits>
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

// In messages.
constexpr const char* defaultBankPlace = "default bank";
constexpr const char* defaultPresetPlace = "default preset";

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
    updates.open();
    panel.build(*frame, this);
    showBank();
    memories.restart();
    idleTimer = createTimer(this);
    return true;
}

void CPresetSystemEditor::close() {
    filePrompt.cancel();
    updates.close();
    if (idleTimer != nullptr)
        destroyTimer(idleTimer);
    idleTimer = nullptr;
    panel.forget();
}

void CPresetSystemEditor::idle() {
    updates.idle([this] { showBank(); }, [this] { compareMemories(); });
    AEffGUIEditor::idle();
}

// --- What the panel shows ---

void CPresetSystemEditor::showBank() {
    panel.showBank(effectLink->bank(), effectLink->getPresetNo());
}

void CPresetSystemEditor::compareMemories() {
    if (!memories.isDue())
        return;
    presetfilestruct image;
    PresetToBuffer(&image);
    showMemories(memories.compare(image, storedPresets));
}

void CPresetSystemEditor::showCurrentName(const PresetName& name) {
    memories.presetChanged();
    updates.bankChanged([&] { panel.showCurrentName(name); });
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
    memories.presetChanged();
    updates.bankChanged([this] { showBank(); });
}

// --- What the controls do ---

void CPresetSystemEditor::valueChanged(VSTGUI::CControl* control) {
    if (effectLink == nullptr)
        return;
    const float value = control->getValue();
    memories.presetChanged(); // perhaps; looked at when this is done
    using enum mirelon::panel::Tag;
    // A file operation may end with this editor gone: nothing comes after it.
    // Without a default case, so that the compiler reports a tag that has no action.
    switch (static_cast<mirelon::panel::Tag>(control->getTag())) {
    case nameTag:
        return renamePreset();
    case rockerTag:
        return stepPreset(value);
    case menuTag:
        return choosePreset(value);
    case loadBankTag:
        return loadBank(value == reversedRequest);
    case saveBankTag:
        return saveBank();
    case loadPresetTag:
        return loadPreset(value == reversedRequest);
    case savePresetTag:
        return savePreset();
    case defaultBankTag:
        return value < clearThreshold ? resetDefaultBank() : saveDefaultBank();
    case defaultPresetTag:
        return value < clearThreshold ? resetDefaultPreset() : saveDefaultPreset();
    case storeATag:
        return storeA();
    case storeBTag:
        return storeB();
    case recallATag:
        return recallA();
    case recallBTag:
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
    verdict = reading.verdict;
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
    verdict = reading.verdict;
    memories.presetChanged();
    const bool accepted = reading.verdict == ImageVerdict::accepted;
    updates.bankChanged([&] {
        // A name shows as soon as it is read, before its preset's values: a bank
        // that is refused at a value leaves the names up to there in the menu.
        if (reading.verdict == ImageVerdict::outOfRange)
            panel.showFirstNames(namesUpTo(reading.preset, *image));
        if (accepted) {
            panel.showBank(effectLink->bank(), 0);
        } else {
            panel.select(0);
            panel.showInField(presetAt(effectLink->bank(), 0).name());
        }
    });
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
    if (!filePrompt.canAsk())
        return tell(mirelon::noDialogMessage());
    filePrompt.ask({type, save, title, lastFiles.currentDir.data(), name.data()},
                   [this, &name, proceed = std::move(proceed)](const ChosenFile& file) {
                       name = file.name;
                       lastFiles.currentDir = file.directory;
                       proceed(file);
                   });
}

template <typename Image>
void CPresetSystemEditor::save(const mirelon::FileType& type, const char* title,
                               mirelon::PathBuffer& name,
                               void (CPresetSystemEditor::*fill)(Image*)) {
    askForFile(type, true, title, name, [this, fill](const ChosenFile& file) {
        Image image;
        (this->*fill)(&image);
        const int error = mirelon::writeImage(file, image.bytes);
        tell(mirelon::savedMessage(file.name.data(), error));
    });
}

template <typename Image>
void CPresetSystemEditor::load(const mirelon::FileType& type, const char* title,
                               mirelon::PathBuffer& name,
                               void (CPresetSystemEditor::*apply)(Image*, bool), bool reversed) {
    askForFile(type, false, title, name, [this, apply, reversed](const ChosenFile& file) {
        constexpr const char* kind = std::is_same_v<Image, bankfilestruct> ? "bank" : "preset";
        Image image;
        const int error = mirelon::readImage(file, image.bytes);
        (this->*apply)(&image, reversed);
        tell(mirelon::loadedMessage(kind, file.name.data(), error, verdict));
        if (getFrame() != nullptr)
            getFrame()->invalid();
    });
}

void CPresetSystemEditor::savePreset() {
    save(mirelon::presetFileType, "Save preset", lastFiles.currentPresetName,
         &CPresetSystemEditor::PresetToBuffer);
}

void CPresetSystemEditor::saveBank() {
    save(mirelon::bankFileType, "Save bank", lastFiles.currentBankName,
         &CPresetSystemEditor::BankToBuffer);
}

void CPresetSystemEditor::loadPreset(bool reversed) {
    load(mirelon::presetFileType, reversed ? "Load preset (endian-reversed)" : "Load preset",
         lastFiles.currentPresetName, &CPresetSystemEditor::BufferToPreset, reversed);
}

void CPresetSystemEditor::loadBank(bool reversed) {
    load(mirelon::bankFileType, reversed ? "Load bank (endian-reversed)" : "Load bank",
         lastFiles.currentBankName, &CPresetSystemEditor::BufferToBank, reversed);
}

void CPresetSystemEditor::loadMidi(bool /*reversed*/) {}
void CPresetSystemEditor::saveMidi() {}

// --- Preferences ---

bool CPresetSystemEditor::storePreset(PresetSlot slot) {
    presetfilestruct image;
    PresetToBuffer(&image);
    return storedPresets.storePreset(slot, image);
}

void CPresetSystemEditor::recallPreset(PresetSlot slot) {
    presetfilestruct image = storedPresets.preset(slot);
    BufferToPreset(&image, false);
}

void CPresetSystemEditor::storeMemory(PresetSlot slot, const char* place) {
    tell(mirelon::storedMessage(place, storePreset(slot)));
}

void CPresetSystemEditor::recallMemory(PresetSlot slot, const char* place) {
    recallPreset(slot);
    tell(mirelon::recalledMessage(place, verdict));
}

void CPresetSystemEditor::saveDefaultBank() {
    bankfilestruct image;
    BankToBuffer(&image);
    tell(mirelon::storedMessage(defaultBankPlace, storedPresets.storeDefaultBank(image)));
}

void CPresetSystemEditor::loadDefaultBank() {
    bankfilestruct image = storedPresets.defaultBank();
    BufferToBank(&image, false);
}

void CPresetSystemEditor::resetDefaultBank() {
    tell(mirelon::forgottenMessage(defaultBankPlace, storedPresets.clearDefaultBank()));
}

void CPresetSystemEditor::saveDefaultPreset() {
    storeMemory(PresetSlot::defaultPreset, defaultPresetPlace);
}

void CPresetSystemEditor::loadDefaultPreset() {
    recallPreset(PresetSlot::defaultPreset);
}

void CPresetSystemEditor::resetDefaultPreset() {
    tell(mirelon::forgottenMessage(defaultPresetPlace,
                                   storedPresets.clearPreset(PresetSlot::defaultPreset)));
}

void CPresetSystemEditor::storeA() {
    storeMemory(PresetSlot::memoryA, "A");
}

void CPresetSystemEditor::storeB() {
    storeMemory(PresetSlot::memoryB, "B");
}

void CPresetSystemEditor::recallA() {
    recallMemory(PresetSlot::memoryA, "A");
}

void CPresetSystemEditor::recallB() {
    recallMemory(PresetSlot::memoryB, "B");
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
