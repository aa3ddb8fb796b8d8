// The effect's presets: a bank of eleven, one of them current. Moving a parameter
// edits the current one in place.
#pragma once

#include "presetsystem/chunkimage.h"
#include "presetsystem/editorlink.h"
#include "presetsystem/effectlink.h"
#include "presetsystem/presetrecord.h"
#include "shell/audioeffectx.h"

#include <atomic>
#include <memory>
#include <span>

// To the host all of this is one program, whose name is that of the current
// preset. Names keep 24 bytes; the host's buffers receive 25.
class CPresetSystemEffect : public AudioEffectX, public EffectLink {
  public:
    explicit CPresetSystemEffect(audioMasterCallback audioMaster);
    ~CPresetSystemEffect() override;

    // The preset system's own operations. An index outside 0 to 10 is refused.
    VstInt32 getPresetNo() override;
    // Switches to preset n and sends its values through setParameter. The host is
    // told to look again: by a display update and a touch of parameter 0.
    void setPresetNo(long n) override;
    // Renames the current preset (null: only refreshes the host's display).
    void setPresetName(const char* name) override;

    // MIDI controller assignment is switched off: all of these do nothing.
    virtual void attachMidi(VstInt32 param, VstInt32 cc);
    virtual void detachMidiParam(VstInt32 param);
    virtual void detachMidiCC(VstInt32 cc);
    virtual VstInt32 getMidiCC(VstInt32 param);
    virtual VstInt32 getMidiParam(VstInt32 cc);
    virtual VstInt32 getMidiActivity();
    virtual void beginLearn();
    virtual void endLearn();
    virtual void setLearnParam(VstInt32 param);
    virtual void beginCancel();
    virtual void endCancel();

    // By this, chunks and files name the effect that they are for.
    VstInt32 getUniqueID() override;
    // Loads the stored defaults through the editor, if there is one.
    virtual void loadDefaults();
    // Where a derived effect puts its factory presets into the bank.
    virtual void initPresets();
    virtual void initMidi();

    void resume() override;
    // An edit of the current preset; indices outside 0 to 8 do nothing.
    void setParameter(VstInt32 index, float value) override;
    void setParameterAutomated(VstInt32 index, float value) override;
    // From the current preset; -1 for indices outside 0 to 8.
    float getParameter(VstInt32 index) override;
    VstInt32 getProgram() override;
    void setProgram(VstInt32 program) override;
    void setProgramName(char* name) override;
    void getProgramName(char* name) override;
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;
    VstInt32 getChunk(void** data, bool isPreset) override;
    VstInt32 setChunk(void* data, VstInt32 byteSize, bool isPreset) override;
    // The state in the caller's own memory: may be called on any thread, beside
    // each other and beside audio. An applied chunk ends up in native order.
    void writeChunk(std::span<std::byte, mirelon::chunkSize> image);
    mirelon::ChunkVerdict applyChunk(std::span<std::byte, mirelon::chunkSize> image);
    VstInt32 processEvents(VstEvents* events) override;
    VstInt32 canDo(char* text) override;

    // For the editor. A host that does not say that it can is not asked.
    bool resizeWindow(VstInt32 width, VstInt32 height) override;
    PresetBank& bank() override { return *presetBank; }

    // Called by the editor's constructor with itself, by its destructor with
    // null.
    void setEditorLink(EditorLink* link) override { editorLink = link; }

  protected:
    // True during setPresetNo: what arrives at setParameter meanwhile comes out of
    // the preset and need not go back into it.
    bool isPresetLoading() const { return presetLoading.load(std::memory_order_relaxed) != 0; }
    EditorLink* linkToEditor() const { return editorLink; }

  private:
    PresetRecord& currentPreset();

    std::unique_ptr<PresetBank> presetBank;
    std::atomic<VstInt32> presetNo{0};
    // Lent to the host by getChunk.
    std::unique_ptr<mirelon::ChunkImage> chunkBuffer;
    std::atomic<VstInt32> presetLoading{0};
    EditorLink* editorLink = nullptr; // not owned
};
