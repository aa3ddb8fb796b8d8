// The editor without its panel: what the window shows is nothing yet.
#include "presetsystem/cpresetsystemeditor.h"

CPresetSystemEditor::CPresetSystemEditor(AudioEffect* effect)
    : AEffGUIEditor(effect) {
    if (effect != nullptr)
        presetEffect().setEditorLink(this);
}

CPresetSystemEditor::~CPresetSystemEditor() {
    storePathsAndFilenames();
    if (effect != nullptr)
        presetEffect().setEditorLink(nullptr);
}

bool CPresetSystemEditor::open(void* /*parent*/) {
    return frame != nullptr && effect != nullptr;
}

void CPresetSystemEditor::close() {}

void CPresetSystemEditor::idle() {
    AEffGUIEditor::idle();
}

void CPresetSystemEditor::valueChanged(VSTGUI::CControl* /*control*/) {}
void CPresetSystemEditor::endLearn() {}
void CPresetSystemEditor::endCancel() {}
void CPresetSystemEditor::nameChangedExternal(char* /*name*/) {}

void CPresetSystemEditor::nameChangedInternal(char* name) {
    nameChangedExternal(name);
    presetEffect().setPresetName(name);
}

void CPresetSystemEditor::bankReplaced() {}
void CPresetSystemEditor::showCurrentName(const mirelon::PresetName& /*name*/) {}
void CPresetSystemEditor::showBankName(int /*preset*/, const mirelon::PresetName& /*name*/) {}
