// The base of the product's editors: carries out what the user asks of presets, in
// the effect, in files and in the preferences.
#pragma once

#include "platform/toolkit.h"
#include "presetsystem/editorlink.h"
#include "presetsystem/effectlink.h"
#include "presetsystem/fileprompt.h"
#include "presetsystem/memorycomparison.h"
#include "presetsystem/message.h"
#include "presetsystem/presetimages.h"
#include "presetsystem/presetpanel.h"
#include "presetsystem/storedpresets.h"
#include "presetsystem/windowupdates.h"

#include <memory>

class IdleTimer;

// Everything here runs on the thread that opened the editor, except what
// EditorLink says. Files are asked for by an open window only, in one dialog at a
// time, which is gone when the window closes; everything else works without one.
class CPresetSystemEditor : public VSTGUI::AEffGUIEditor,
                            public VSTGUI::IControlListener,
                            public EditorLink {
  public:
    // `effect` is the editor's owner, never null; one that is no EffectLink has
    // no presets, and the editor does not open.
    explicit CPresetSystemEditor(AudioEffect* effect);
    ~CPresetSystemEditor() override;

    // Puts the panel into the frame and has idle() called from now on; false
    // without a frame or presets.
    bool open(void* parent) override;
    void close() override;
    void idle() override;
    void valueChanged(VSTGUI::CControl* control) override;
    virtual void endLearn();
    virtual void endCancel();
    void nameChangedExternal(char* name) override;
    void loadDefaults() override;

    // --- Byte images from the effect's presets, and back ---
    virtual void BufferToBank(bankfilestruct* image, bool reversed);
    virtual void BankToBuffer(bankfilestruct* image);
    virtual void BufferToPreset(presetfilestruct* image, bool reversed);
    virtual void PresetToBuffer(presetfilestruct* image);
    virtual void BufferToMidi(midifilestruct* image, bool reversed);
    virtual void MidiToBuffer(midifilestruct* image);

    // --- What the panel's buttons do ---
    virtual void loadBank(bool reversed);
    virtual void saveBank();
    virtual void saveDefaultBank();
    virtual void resetDefaultBank();
    virtual void loadDefaultBank();
    virtual void loadPreset(bool reversed);
    virtual void savePreset();
    virtual void saveDefaultPreset();
    virtual void resetDefaultPreset();
    virtual void loadDefaultPreset();
    virtual void storeA();
    virtual void storeB();
    virtual void recallA();
    virtual void recallB();
    virtual void loadMidi(bool reversed);
    virtual void saveMidi();
    virtual void saveDefaultMidi();
    virtual void resetDefaultMidi();
    virtual void loadDefaultMidi();
    virtual void storePathsAndFilenames();
    virtual void recallPathsAndFilenames();

    // As nameChangedExternal, and renames the effect's current preset.
    void nameChangedInternal(char* name);
    void bankReplaced() override;

  protected:
    // For an editor that asks for files by `dialog`; null: the desktop's.
    CPresetSystemEditor(AudioEffect* effect, std::unique_ptr<mirelon::FileDialog> dialog);

    // Two of the bases have a setParameter: the toolkit's is not used, EditorLink's
    // is where the effect reports.
    using AEffGUIEditor::setParameter;
    using EditorLink::setParameter;

    // Which of the compare memories hold what the current preset is.
    virtual void showMemories(mirelon::MemoryComparison::Equal /*equal*/) {}
    // What has become of something that the user has asked for.
    virtual void tell(const mirelon::Message& /*message*/) {}

    EffectLink* const effectLink; // not owned; null without presets

    mirelon::WindowUpdates updates;
    mirelon::MemoryComparison memories;

    mirelon::PresetPanel panel;
    mirelon::LastFiles lastFiles;

  private:
    void showBank();
    void showCurrentName(const mirelon::PresetName& name);

    void renamePreset();
    void stepPreset(float direction);
    void choosePreset(float menuValue);

    // Asks for a file of `type`, remembers it in `name` and as the last
    // directory, and goes on with it. Nothing without an open window.
    void askForFile(const mirelon::FileType& type, bool save, const char* title,
                    mirelon::PathBuffer& name, mirelon::FilePrompt::Continuation proceed);
    // Asks, and moves an image between the effect and the file.
    template <typename Image>
    void save(const mirelon::FileType& type, const char* title, mirelon::PathBuffer& name,
              void (CPresetSystemEditor::*fill)(Image*));
    template <typename Image>
    void load(const mirelon::FileType& type, const char* title, mirelon::PathBuffer& name,
              void (CPresetSystemEditor::*apply)(Image*, bool), bool reversed);
    bool storePreset(mirelon::PresetSlot slot);
    void recallPreset(mirelon::PresetSlot slot);
    void storeMemory(mirelon::PresetSlot slot, const char* place);
    void recallMemory(mirelon::PresetSlot slot, const char* place);
    void compareMemories();

    // Of the last image that was to be loaded.
    mirelon::ImageVerdict verdict = mirelon::ImageVerdict::notOurs;

    mirelon::StoredPresets storedPresets;
    IdleTimer* idleTimer = nullptr; // owned; null without an open window
    mirelon::FilePrompt filePrompt;
};
