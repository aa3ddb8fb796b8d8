// The preset panel: its controls, what they do, and what it shows.
#include "platform/idletimer.h"
#include "presetsystem/bitmaps.h"
#include "presetsystem/cpresetsystemeditor.h"
#include "presetsystem/displayname.h"
#include "presetsystem/panelcontrols.h"
#include "resources/resources.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

using namespace VSTGUI;
using mirelon::loadBitmap;
using mirelon::PresetName;
using mirelon::validUtf8;

namespace {

enum PanelTag : int32_t {
    firstTag = 1000,
    nameTag = firstTag,
    rockerTag = 1001,
    loadBankTag = 1002,
    saveBankTag = 1003,
    loadPresetTag = 1004,
    savePresetTag = 1005,
    menuTag = 1012,
    defaultBankTag = 1013,
    defaultPresetTag = 1014,
    storeATag = 1015,
    storeBTag = 1016,
    recallATag = 1017,
    recallBTag = 1018,
    lastTag = recallBTag
};

const CRect nameRect(91, 320, 201, 334);
const CRect menuRect(207, 319, 217, 333);
const CRect rockerRect(219, 319, 250, 333);

const CColor nameBackColor(189, 207, 218, 255);
const CColor nameInkColor(36, 36, 32, 255);

constexpr int32_t menuStyle = COptionMenu::kPopupStyle | COptionMenu::kCheckStyle |
                              CParamDisplay::kNoTextStyle | CParamDisplay::kNoDrawStyle;

// Below this a default button asks for the stored default to be cleared.
constexpr float clearThreshold = 0.75F;
// What a load button sends for a file of the other byte order.
constexpr float reversedRequest = 0.5F;

PresetName presetName(const char* text) {
    PresetName name{};
    std::memcpy(name.data(), text, strnlen(text, kPresetNameLen));
    return name;
}

UTF8String shown(const PresetName& name) {
    return UTF8String(validUtf8(name.data()));
}

} // namespace

CPresetSystemEditor::CPresetSystemEditor(AudioEffect* effect)
    : AEffGUIEditor(effect)
    , effectLink(dynamic_cast<EffectLink*>(effect)) {
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
    addPanel();
    idleTimer = createTimer(this);
    return true;
}

void CPresetSystemEditor::addPanel() {
    const double scale = frame->getZoom();
    const auto background = loadBitmap(mirelon::kPictureBackground, scale);
    const auto rocker = loadBitmap(mirelon::kPictureRocker, scale);
    const auto square = loadBitmap(mirelon::kPictureSquareButton, scale);
    const auto defaultBank = loadBitmap(mirelon::kPictureDefaultBank, scale);
    const auto defaultPreset = loadBitmap(mirelon::kPictureDefaultPreset, scale);

    nameField = new CTextEdit(nameRect, this, nameTag, nullptr, background);
    nameField->setBackOffset(nameRect.getTopLeft());
    nameField->setFont(kNormalFontSmall);
    nameField->setBackColor(nameBackColor);
    nameField->setFontColor(nameInkColor);
    nameField->setFrameColor(nameInkColor);
    nameField->setHoriAlign(kCenterText);
    frame->addView(nameField);

    presetMenu = new COptionMenu(menuRect, this, menuTag, background, nullptr, menuStyle);
    presetMenu->setBackOffset(menuRect.getTopLeft());
    frame->addView(presetMenu);

    frame->addView(mirelon::newRockerSwitch(rockerRect, this, rockerTag, rocker));
    const auto addSaveLoad = [&](const CRect& rect, PanelTag tag) {
        frame->addView(mirelon::newSaveLoadButton(rect, this, tag, square));
    };
    const auto addMemory = [&](const CRect& rect, PanelTag tag) {
        frame->addView(mirelon::newKickButton(rect, this, tag, square, false));
    };
    // A stored default is replaced or cleared by a double click only.
    const auto addDefault = [&](const CRect& rect, PanelTag tag, CBitmap* pictures) {
        frame->addView(mirelon::newKickButton(rect, this, tag, pictures, true));
    };
    addSaveLoad(CRect(71, 327, 83, 341), loadBankTag);
    addSaveLoad(CRect(8, 327, 20, 341), saveBankTag);
    addDefault(CRect(26, 329, 63, 339), defaultBankTag, defaultBank);
    addSaveLoad(CRect(71, 312, 83, 326), loadPresetTag);
    addSaveLoad(CRect(8, 312, 20, 326), savePresetTag);
    addDefault(CRect(22, 314, 69, 324), defaultPresetTag, defaultPreset);
    addMemory(CRect(279, 312, 291, 326), recallATag);
    addMemory(CRect(254, 312, 266, 326), storeATag);
    addMemory(CRect(279, 327, 291, 341), recallBTag);
    addMemory(CRect(254, 327, 266, 341), storeBTag);

    showBank();
}

void CPresetSystemEditor::close() {
    window.close();
    if (idleTimer != nullptr)
        destroyTimer(idleTimer);
    idleTimer = nullptr;
    nameField = nullptr;
    presetMenu = nullptr;
}

void CPresetSystemEditor::idle() {
    if (const auto held = window.tryHold())
        show(pending.take());
    AEffGUIEditor::idle();
}

void CPresetSystemEditor::show(mirelon::PendingUpdates::Taken updates) {
    for (int i = 0; i < kNumPresetParams; ++i)
        if (updates.parameter(i))
            showParameter(i);
    if (updates.bank())
        showBank();
}

// --- What the controls do ---

void CPresetSystemEditor::valueChanged(CControl* control) {
    if (effectLink == nullptr || control->getTag() < firstTag || control->getTag() > lastTag)
        return;
    const float value = control->getValue();
    // A file operation may end with this editor gone: nothing comes after it.
    switch (control->getTag()) {
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
    default:
        return;
    }
}

void CPresetSystemEditor::renamePreset() {
    if (nameField == nullptr)
        return;
    const PresetName name = presetName(nameField->getText().data());
    showName(name);
    effectLink->setPresetName(name.data());
}

void CPresetSystemEditor::stepPreset(float direction) {
    if (direction == 0.0F)
        return;
    const int step = direction > 0.0F ? 1 : -1;
    const int preset = std::clamp(effectLink->getPresetNo() + step, 0, kNumPresets - 1);
    const PresetName name = effectLink->bank()[static_cast<std::size_t>(preset)].name();
    if (presetMenu != nullptr)
        presetMenu->setValue(static_cast<float>(preset));
    if (nameField != nullptr)
        nameField->setText(shown(name));
    effectLink->setPresetNo(preset);
    effectLink->setPresetName(name.data());
}

void CPresetSystemEditor::choosePreset(float menuValue) {
    // Never negative: the menu counts from 0.
    const int preset = static_cast<int>(menuValue + 0.5F); // NOLINT(bugprone-incorrect-roundings)
    if (presetMenu == nullptr || presetMenu->getEntry(preset) == nullptr)
        return;
    presetMenu->setValue(static_cast<float>(preset));
    const UTF8String title = presetMenu->getEntry(preset)->getTitle();
    const PresetName stored = effectLink->bank()[static_cast<std::size_t>(preset)].name();
    // The title names the preset, but a name that could not be shown as it
    // stands keeps its bytes.
    const PresetName name = title == shown(stored) ? stored : presetName(title.data());
    effectLink->setPresetNo(preset);
    effectLink->setPresetName(name.data());
    if (nameField != nullptr)
        nameField->setText(shown(name));
}

// Controller assignment is switched off.
void CPresetSystemEditor::endLearn() {}
void CPresetSystemEditor::endCancel() {}

// --- What the panel shows ---

void CPresetSystemEditor::showName(const PresetName& name) {
    if (nameField != nullptr)
        nameField->setText(shown(name));
    if (presetMenu != nullptr && presetMenu->getCurrent() != nullptr)
        presetMenu->getCurrent()->setTitle(shown(name));
}

void CPresetSystemEditor::showBank() {
    if (presetMenu == nullptr || nameField == nullptr)
        return;
    const PresetBank& bank = effectLink->bank();
    // Entries are renamed rather than replaced: the menu may be on show.
    for (int i = 0; i < kNumPresets; ++i) {
        const UTF8String title = shown(bank[static_cast<std::size_t>(i)].name());
        if (CMenuItem* entry = presetMenu->getEntry(i))
            entry->setTitle(title);
        else
            // As an item: a plain title "-" would become a separator.
            presetMenu->addEntry(new CMenuItem(title));
    }
    const int current = effectLink->getPresetNo();
    presetMenu->setValue(static_cast<float>(current));
    nameField->setText(shown(bank[static_cast<std::size_t>(current)].name()));
}

void CPresetSystemEditor::nameChangedExternal(char* name) {
    if (name == nullptr)
        return;
    showCurrentName(presetName(name));
}

void CPresetSystemEditor::nameChangedInternal(char* name) {
    nameChangedExternal(name);
    effectLink->setPresetName(name);
}

void CPresetSystemEditor::bankReplaced() {
    if (const auto held = window.tryHold())
        showBank();
    else
        pending.addBank();
}

void CPresetSystemEditor::showCurrentName(const PresetName& name) {
    if (const auto held = window.tryHold())
        showName(name);
    else
        pending.addBank();
}

void CPresetSystemEditor::showBankName(int preset, const PresetName& name) {
    const auto held = window.tryHold();
    if (!held)
        return pending.addBank();
    if (presetMenu == nullptr || presetMenu->getEntry(preset) == nullptr)
        return;
    presetMenu->setValue(static_cast<float>(preset));
    presetMenu->getEntry(preset)->setTitle(shown(name));
}
