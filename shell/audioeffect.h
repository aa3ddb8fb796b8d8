// The base class of every effect: keeps the effect record, leads what a host calls
// there to virtual operations, and answers the basic commands.
#pragma once

#include "shell/aeffeditor.h"
#include "shell/vst24.h"

#include <atomic>

// The plug-in makes one object for every instance that a host asks for.
//
// Threads: the process functions, setParameter and getParameter are called on
// the audio thread (and others), everything else on the host's command thread.
class AudioEffect {
  public:
    // `audioMaster` may be null: the effect then works without a host.
    AudioEffect(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams);
    // Deletes the attached editor.
    virtual ~AudioEffect();

    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    // The record that the host keeps for the life of the instance.
    virtual AEffect* getAeffect() { return &cEffect; }
    AEffEditor* getEditor() const { return editor; }
    float getSampleRate() const { return sampleRate.load(std::memory_order_relaxed); }
    VstInt32 getBlockSize() const { return blockSize.load(std::memory_order_relaxed); }

    // Decodes opcodes 0 to 24; answers 0 to every other. Null pointers where a
    // command needs one do nothing.
    virtual VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                 float opt);

    virtual void open() {}
    virtual void close() {}
    virtual void suspend() {}
    virtual void resume() {}

    virtual void setSampleRate(float rate) { sampleRate.store(rate, std::memory_order_relaxed); }
    virtual void setBlockSize(VstInt32 size) { blockSize.store(size, std::memory_order_relaxed); }

    virtual void process(float** /*inputs*/, float** /*outputs*/, VstInt32 /*sampleFrames*/) {}
    virtual void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) = 0;
    virtual void processDoubleReplacing(double** /*inputs*/, double** /*outputs*/,
                                        VstInt32 /*sampleFrames*/) {}

    virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}
    virtual float getParameter(VstInt32 /*index*/) { return 0.0F; }
    virtual void getParameterLabel(VstInt32 /*index*/, char* label) { *label = '\0'; }
    virtual void getParameterDisplay(VstInt32 /*index*/, char* text) { *text = '\0'; }
    virtual void getParameterName(VstInt32 /*index*/, char* text) { *text = '\0'; }

    virtual VstInt32 getProgram() { return curProgram.load(std::memory_order_relaxed); }
    virtual void setProgram(VstInt32 program) {
        curProgram.store(program, std::memory_order_relaxed);
    }
    virtual void setProgramName(char* /*name*/) {}
    virtual void getProgramName(char* name) { *name = '\0'; }

    // Stores the address of the state in *data and returns its size in bytes.
    virtual VstInt32 getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }
    virtual VstInt32 setChunk(void* /*data*/, VstInt32 /*byteSize*/, bool /*isPreset*/) {
        return 0;
    }
    virtual float getVu() { return 0.0F; }

    // Calls setParameter, then reports the change to the host.
    virtual void setParameterAutomated(VstInt32 index, float value);

    // Host services; each answers its documented value without a host callback.
    VstInt32 getMasterVersion();
    VstInt32 getCurrentUniqueId();
    void masterIdle();
    bool isInputConnected(VstInt32 index);
    bool isOutputConnected(VstInt32 index);
    // Both answer what is stored from then on: what the host says, or the value
    // before when that is not positive.
    float updateSampleRate();
    VstInt32 updateBlockSize();

    // Attaches (non-null) or detaches (null) the editor and keeps the editor
    // flag in step. An attached editor is owned.
    void setEditor(AEffEditor* newEditor);

    void setUniqueID(VstInt32 id) { cEffect.uniqueID = id; }
    void setNumInputs(VstInt32 count) { cEffect.numInputs = count; }
    void setNumOutputs(VstInt32 count) { cEffect.numOutputs = count; }
    void setInitialDelay(VstInt32 frames) { cEffect.initialDelay = frames; }
    void setRealtimeQualities(VstInt32 qualities) { cEffect.realQualities = qualities; }
    void setOfflineQualities(VstInt32 qualities) { cEffect.offQualities = qualities; }
    void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
    void canDoubleReplacing(bool state = true) { setFlag(effFlagsCanDoubleReplacing, state); }
    void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }
    void hasVu(bool state = true) { setFlag(effFlagsHasVu, state); }
    void hasClip(bool state = true) { setFlag(effFlagsHasClip, state); }
    void canMono(bool state = true) { setFlag(effFlagsCanMono, state); }

  protected:
    void setFlag(VstInt32 flag, bool state) {
        cEffect.flags = state ? cEffect.flags | flag : cEffect.flags & ~flag;
    }
    // One call of the host callback with our own record; 0 without a callback.
    VstIntPtr callHost(AudioMasterOpcodes opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0F);
    // Closes and deletes the attached editor, while the derived effect that it
    // refers to is still whole. An editor whose closing fails is deleted all the
    // same. Safe to call twice.
    void destroyEditor() noexcept;

    audioMasterCallback audioMaster;
    AEffEditor* editor = nullptr;
    // Hosts change these while audio runs.
    std::atomic<float> sampleRate{44100.0F};
    std::atomic<VstInt32> blockSize{1024};
    VstInt32 numPrograms;
    VstInt32 numParams;
    std::atomic<VstInt32> curProgram{0};
    AEffect cEffect{};

  private:
    // The record's functions, each for the effect that its `object` names; a null
    // record or object, and any exception, answers 0.
    static VstIntPtr dispatchEffectClass(AEffect* e, VstInt32 opcode, VstInt32 index,
                                         VstIntPtr value, void* ptr, float opt) noexcept;
    static float getParameterClass(AEffect* e, VstInt32 index) noexcept;
    static void setParameterClass(AEffect* e, VstInt32 index, float value) noexcept;
    static void processClass(AEffect* e, float** inputs, float** outputs,
                             VstInt32 sampleFrames) noexcept;
    static void processClassReplacing(AEffect* e, float** inputs, float** outputs,
                                      VstInt32 sampleFrames) noexcept;
    static void processClassDoubleReplacing(AEffect* e, double** inputs, double** outputs,
                                            VstInt32 sampleFrames) noexcept;
};

// Builds the product's effect; null when the host does not answer its version.
// Implemented by the processor. Throws what a constructor throws.
AudioEffect* createEffectInstance(audioMasterCallback audioMaster);

// A value of the interface's pointer size as a 32-bit one; what does not fit is
// taken to the nearest end, never wrapped.
constexpr VstInt32 narrowed(VstIntPtr value) noexcept {
    if (value > INT32_MAX)
        return INT32_MAX;
    if (value < INT32_MIN)
        return INT32_MIN;
    return static_cast<VstInt32>(value);
}
