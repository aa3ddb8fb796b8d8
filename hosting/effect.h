// One instance of an effect, as its host holds it.
#pragma once

#include "hosting/pluginmodule.h"
#include "hosting/recordinghost.h"
#include "shell/vst24.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// Which state a chunk carries: everything, or the current program only.
enum class ChunkKind { bank, program };

// An opened instance; the destructor suspends it if need be and closes it.
// `module` and `host` must outlive it. Texts are read into 256-byte buffers and
// come back as bytes, cut at the first zero; what the effect leaves unwritten
// is empty. Indices go to the effect as they are, valid or not.
class Effect {
  public:
    // Makes an instance and opens it. Throws PluginError when the module makes
    // none or answers with a record that cannot be used: wrong magic word, a
    // missing function, a negative count.
    Effect(const PluginModule& module, RecordingHost& host);
    // The same with any callback, which must serve as long as the instance.
    Effect(const PluginModule& module, audioMasterCallback host);
    ~Effect();
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    AEffect& record() noexcept { return *effect; }
    const AEffect& record() const noexcept { return *effect; }
    bool hasFlag(VstAEffectFlags flag) const noexcept { return (effect->flags & flag) != 0; }

    // Any opcode, for what has no operation of its own here.
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0F) const;

    // Identity.
    std::string name() const;
    std::string vendor() const;
    std::string product() const;
    VstIntPtr vendorVersion() const;
    VstIntPtr vstVersion() const;
    VstIntPtr category() const; // a VstPlugCategory
    VstIntPtr canDo(const std::string& capability) const;

    // Parameters; values are normalised, 0 to 1.
    float parameter(VstInt32 index) const;
    void setParameter(VstInt32 index, float value);
    std::string parameterName(VstInt32 index) const;
    std::string parameterLabel(VstInt32 index) const;
    std::string parameterDisplay(VstInt32 index) const;
    std::optional<VstParameterProperties> parameterProperties(VstInt32 index) const;
    bool canBeAutomated(VstInt32 index) const;
    bool setParameterText(VstInt32 index, const std::string& text);

    // Channels.
    std::optional<VstPinProperties> inputProperties(VstInt32 index) const;
    std::optional<VstPinProperties> outputProperties(VstInt32 index) const;

    // Programs. `programNameAt` has no answer for an index that the effect
    // refuses.
    VstIntPtr program() const;
    void setProgram(VstIntPtr index);
    std::string programName() const;
    void setProgramName(const std::string& name);
    std::optional<std::string> programNameAt(VstInt32 index) const;

    // The state as the effect writes it; empty when it has none. `setChunk`
    // passes on the effect's answer.
    std::vector<std::byte> chunk(ChunkKind kind = ChunkKind::bank) const;
    VstIntPtr setChunk(std::span<const std::byte> bytes, ChunkKind kind = ChunkKind::bank);

    // Audio. Rate and block size are set while suspended; `process` takes at
    // most the block size, between `resume` and `suspend`. The pointers are one
    // for each input and output of the record.
    void setSampleRate(float rate);
    void setBlockSize(VstIntPtr frames);
    void setPrecision(VstProcessPrecision precision);
    void resume();
    void suspend();
    void process(float** inputs, float** outputs, VstInt32 frames);
    void process(double** inputs, double** outputs, VstInt32 frames);

  private:
    std::string text(VstInt32 opcode, VstInt32 index = 0) const;

    AEffect* effect;
    bool running = false;
};

} // namespace mirelon::hosting
