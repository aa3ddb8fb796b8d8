// The editor class with the preset system: moves presets and banks between the
// effect's store, files and the user's preferences, and shows the preset panel.
#pragma once

#include "platform/editorthread.h"
#include "platform/preferences.h"
#include "platform/toolkit.h"
#include "presetsystem/editorlink.h"
#include "presetsystem/effectlink.h"
#include "presetsystem/filequestion.h"
#include "presetsystem/pendingupdates.h"
#include "presetsystem/presetimages.h"
#include "presetsystem/windowaccess.h"

#include <array>
#include <memory>
#include <optional>
#include <string>

class IdleTimer;

// Everything here runs on the thread that opened the editor, except what
// EditorLink says. The file operations need an open window; the others work
// without one.
class CPresetSystemEditor : public VSTGUI::AEffGUIEditor,
                            public VSTGUI::IControlListener,
                            public EditorLink {
  public:
    // `effect` is the editor's owner; one that is no EffectLink counts as none.
    explicit CPresetSystemEditor(AudioEffect* effect);
    ~CPresetSystemEditor() override;

    // --- The panel (presetpanel.cpp) ---
    // Adds the panel to the frame and starts the idle timer; false without a
    // frame or an effect.
    bool open(void* parent) override;
    void close() override;
    void idle() override;
    void valueChanged(VSTGUI::CControl* control) override;
    virtual void endLearn();
    virtual void endCancel();
    // Shows `name` in the name field and as the menu's current entry.
    void nameChangedExternal(char* name) override;
    // The same, and renames the effect's current preset.
    void nameChangedInternal(char* name);
    void bankReplaced() override;

    // --- Images, files and preferences (presetfiles.cpp, storedpresets.cpp) ---
    void loadDefaults() override;
    virtual void BufferToBank(bankfilestruct* image, bool reversed);
    virtual void BankToBuffer(bankfilestruct* image);
    virtual void BufferToPreset(presetfilestruct* image, bool reversed);
    virtual void PresetToBuffer(presetfilestruct* image);
    virtual void BufferToMidi(midifilestruct* image, bool reversed);
    virtual void MidiToBuffer(midifilestruct* image);
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

  protected:
    // The toolkit's setParameter(int, float) stays empty; the effect reports its
    // changes through EditorLink's setParameter(long, float).
    using AEffGUIEditor::setParameter;
    using EditorLink::setParameter;

    EffectLink* const effectLink; // not owned; null without an effect

    // Reads parameter `index` from the effect and shows it, while the window is
    // held; any index.
    virtual void showParameter(long /*index*/) {}

    // A change is shown by the thread that gets hold of the window, or else is
    // pending until the next idle. Any thread.
    mirelon::WindowAccess window;
    mirelon::PendingUpdates pending;

    // Asks the user for one file and waits for the answer: its full path, or
    // nothing. Must not touch the editor once the wait is over: it may be gone.
    virtual std::optional<std::string> askForFile(const mirelon::FileQuestion& question);

    // --- For the image readers: where a loaded name is shown, if anywhere ---
    void showCurrentName(const mirelon::PresetName& name);
    void showBankName(int preset, const mirelon::PresetName& name);

    // Last directory and file names used; the terminated texts that file
    // selectors are started with.
    using PathBuffer = std::array<char, 257>;
    PathBuffer currentDir{};
    PathBuffer currentBankName{};
    PathBuffer currentPresetName{};

    // The panel's views that are read again; the frame owns them. Null while
    // the editor is closed.
    VSTGUI::CTextEdit* nameField = nullptr;
    VSTGUI::COptionMenu* presetMenu = nullptr;

    IdleTimer* idleTimer = nullptr; // owned; null while the editor is closed

  private:
    void addPanel();
    void showName(const mirelon::PresetName& name);
    void showBank();
    void renamePreset();
    void stepPreset(float direction);
    void choosePreset(float menuValue);
    void show(mirelon::PendingUpdates::Taken updates);

    // Asks, and puts the parts of the path into `name` and currentDir. False
    // when there is nothing to do or no editor left to do it: the caller
    // returns at once.
    bool chooseFile(const mirelon::FileType& type, bool save, const char* title, PathBuffer& name);

    void storePreset(const char* key);
    void recallPreset(const char* key);
    void removePreference(const char* key);
    std::string storedText(const char* key) const;

    // The folder that the environment named when the editor was built.
    mirelon::Preferences preferences{mirelon::userPreferencesFolder()};
    // Ends with the editor: who has waited for the user looks whether it has.
    std::shared_ptr<const bool> lifeMark = std::make_shared<const bool>(true);
};
