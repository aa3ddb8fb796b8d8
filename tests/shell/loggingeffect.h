// An effect that notes every operation it is asked for; as long as the command set.
#pragma once

#include "shell/audioeffectx.h"

#include <sstream>
#include <string>
#include <vector>

// Each override notes its name and arguments and answers something that no
// default answers, so that a test sees which operation an answer came from.
class LoggingEffect : public AudioEffectX {
  public:
    explicit LoggingEffect(audioMasterCallback audioMaster, VstInt32 programs = 3)
        : AudioEffectX(audioMaster, programs, 9) {}

    std::vector<std::string> heard;

    void open() override { note("open"); }
    void close() override { note("close"); }
    void suspend() override { note("suspend"); }
    void resume() override { note("resume"); }
    void setSampleRate(float rate) override {
        note("setSampleRate", rate);
        AudioEffectX::setSampleRate(rate);
    }
    void setBlockSize(VstInt32 size) override {
        note("setBlockSize", size);
        AudioEffectX::setBlockSize(size);
    }
    void process(float**, float**, VstInt32 frames) override { note("process", frames); }
    void processReplacing(float**, float**, VstInt32 frames) override {
        note("processReplacing", frames);
    }
    void processDoubleReplacing(double**, double**, VstInt32 frames) override {
        note("processDoubleReplacing", frames);
    }
    void setParameter(VstInt32 index, float value) override { note("setParameter", index, value); }
    float getParameter(VstInt32 index) override {
        note("getParameter", index);
        return 0.25F;
    }
    void getParameterLabel(VstInt32 index, char* text) override {
        note("getParameterLabel", index, noted(text));
    }
    void getParameterDisplay(VstInt32 index, char* text) override {
        note("getParameterDisplay", index, noted(text));
    }
    void getParameterName(VstInt32 index, char* text) override {
        note("getParameterName", index, noted(text));
    }
    VstInt32 getProgram() override { return answer(2, "getProgram"); }
    void setProgram(VstInt32 program) override { note("setProgram", program); }
    void setProgramName(char* name) override { note("setProgramName", noted(name)); }
    void getProgramName(char* name) override { note("getProgramName", noted(name)); }
    VstInt32 getChunk(void** data, bool isPreset) override {
        return answer(321, "getChunk", noted(data), isPreset);
    }
    VstInt32 setChunk(void* data, VstInt32 size, bool isPreset) override {
        return answer(7, "setChunk", noted(data), size, isPreset);
    }
    float getVu() override {
        note("getVu");
        return 0.5F;
    }
    VstInt32 processEvents(VstEvents* events) override {
        return answer(5, "processEvents", noted(events));
    }
    bool canParameterBeAutomated(VstInt32 index) override {
        return answer(false, "canParameterBeAutomated", index);
    }
    bool string2parameter(VstInt32 index, char* text) override {
        return answer(true, "string2parameter", index, noted(text));
    }
    VstInt32 getNumCategories() override { return answer(4, "getNumCategories"); }
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override {
        return answer(true, "getProgramNameIndexed", category, index, noted(text));
    }
    bool copyProgram(VstInt32 destination) override {
        return answer(true, "copyProgram", destination);
    }
    void inputConnected(VstInt32 index, bool state) override {
        note("inputConnected", index, state);
    }
    void outputConnected(VstInt32 index, bool state) override {
        note("outputConnected", index, state);
    }
    bool getInputProperties(VstInt32 index, VstPinProperties* pin) override {
        return answer(true, "getInputProperties", index, noted(pin));
    }
    bool getOutputProperties(VstInt32 index, VstPinProperties* pin) override {
        return answer(true, "getOutputProperties", index, noted(pin));
    }
    VstInt32 getPlugCategory() override { return answer(6, "getPlugCategory"); }
    VstInt32 reportCurrentPosition() override { return answer(8, "reportCurrentPosition"); }
    float* reportDestinationBuffer() override {
        note("reportDestinationBuffer");
        return &destination;
    }
    bool offlineNotify(VstAudioFile* files, VstInt32 count, bool start) override {
        return answer(true, "offlineNotify", noted(files), count, start);
    }
    bool offlinePrepare(VstOfflineTask* tasks, VstInt32 count) override {
        return answer(true, "offlinePrepare", noted(tasks), count);
    }
    bool offlineRun(VstOfflineTask* tasks, VstInt32 count) override {
        return answer(true, "offlineRun", noted(tasks), count);
    }
    bool processVariableIo(VstVariableIo* io) override {
        return answer(true, "processVariableIo", noted(io));
    }
    bool setSpeakerArrangement(VstSpeakerArrangement* in, VstSpeakerArrangement* out) override {
        return answer(true, "setSpeakerArrangement", noted(in), noted(out));
    }
    void setBlockSizeAndSampleRate(VstInt32 size, float rate) override {
        note("setBlockSizeAndSampleRate", size, rate);
        AudioEffectX::setBlockSizeAndSampleRate(size, rate);
    }
    bool setBypass(bool on) override { return answer(true, "setBypass", on); }
    bool getEffectName(char* text) override { return answer(true, "getEffectName", noted(text)); }
    bool getErrorText(char* text) override { return answer(true, "getErrorText", noted(text)); }
    bool getVendorString(char* text) override {
        return answer(true, "getVendorString", noted(text));
    }
    bool getProductString(char* text) override {
        return answer(true, "getProductString", noted(text));
    }
    VstInt32 getVendorVersion() override { return answer(1234, "getVendorVersion"); }
    VstIntPtr vendorSpecific(VstInt32 arg1, VstIntPtr arg2, void* ptr, float opt) override {
        return answer(VstIntPtr{99}, "vendorSpecific", arg1, arg2, noted(ptr), opt);
    }
    VstInt32 canDo(char* text) override { return answer(-1, "canDo", noted(text)); }
    VstInt32 getGetTailSize() override { return answer(44, "getGetTailSize"); }
    VstInt32 fxIdle() override { return answer(45, "fxIdle"); }
    void* getIcon() override {
        note("getIcon");
        return &destination;
    }
    bool setViewPosition(VstInt32 x, VstInt32 y) override {
        return answer(true, "setViewPosition", x, y);
    }
    bool getParameterProperties(VstInt32 index, VstParameterProperties* properties) override {
        return answer(true, "getParameterProperties", index, noted(properties));
    }
    bool keysRequired() override { return answer(true, "keysRequired"); }
    VstInt32 getVstVersion() override { return answer(2399, "getVstVersion"); }
    VstInt32 getMidiProgramName(VstInt32 channel, MidiProgramName* name) override {
        return answer(62, "getMidiProgramName", channel, noted(name));
    }
    VstInt32 getCurrentMidiProgram(VstInt32 channel, MidiProgramName* name) override {
        return answer(63, "getCurrentMidiProgram", channel, noted(name));
    }
    VstInt32 getMidiProgramCategory(VstInt32 channel, MidiProgramCategory* category) override {
        return answer(64, "getMidiProgramCategory", channel, noted(category));
    }
    bool hasMidiProgramsChanged(VstInt32 channel) override {
        return answer(true, "hasMidiProgramsChanged", channel);
    }
    bool getMidiKeyName(VstInt32 channel, MidiKeyName* name) override {
        return answer(true, "getMidiKeyName", channel, noted(name));
    }
    bool beginSetProgram() override { return answer(true, "beginSetProgram"); }
    bool endSetProgram() override { return answer(true, "endSetProgram"); }
    bool getSpeakerArrangement(VstSpeakerArrangement** in, VstSpeakerArrangement** out) override {
        return answer(true, "getSpeakerArrangement", noted(in), noted(out));
    }
    VstInt32 getNextShellPlugin(char* name) override {
        return answer(70, "getNextShellPlugin", noted(name));
    }
    VstInt32 startProcess() override { return answer(71, "startProcess"); }
    VstInt32 stopProcess() override { return answer(72, "stopProcess"); }
    VstInt32 setTotalSampleToProcess(VstInt32 count) override {
        return answer(count + 1, "setTotalSampleToProcess", count);
    }
    bool setPanLaw(VstInt32 type, float gain) override {
        return answer(true, "setPanLaw", type, gain);
    }
    VstInt32 beginLoadBank(VstPatchChunkInfo* info) override {
        return answer(75, "beginLoadBank", noted(info));
    }
    VstInt32 beginLoadProgram(VstPatchChunkInfo* info) override {
        return answer(76, "beginLoadProgram", noted(info));
    }
    bool setProcessPrecision(VstInt32 precision) override {
        return answer(true, "setProcessPrecision", precision);
    }
    VstInt32 getNumMidiInputChannels() override { return answer(78, "getNumMidiInputChannels"); }
    VstInt32 getNumMidiOutputChannels() override { return answer(79, "getNumMidiOutputChannels"); }

    // How a pointer argument appears in `heard`.
    static std::string noted(const void* pointer) {
        std::ostringstream text;
        text << 'p' << std::hex << reinterpret_cast<std::uintptr_t>(pointer);
        return text.str();
    }

    float destination = 0.0F;

  private:
    template <typename... Arguments>
    void note(const char* name, const Arguments&... arguments) {
        std::ostringstream text;
        text << name;
        ((text << ' ' << arguments), ...);
        heard.push_back(text.str());
    }
    template <typename Answer, typename... Arguments>
    Answer answer(Answer result, const char* name, const Arguments&... arguments) {
        note(name, arguments...);
        return result;
    }
};
