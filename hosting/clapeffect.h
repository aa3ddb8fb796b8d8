// A CLAP plug-in in the shape of a VST 2.4 effect, for all that drives effects.
#pragma once

#include "hosting/clapeditor.h"
#include "hosting/claplibrary.h"
#include "hosting/clapplayer.h"
#include "hosting/effectrecord.h"
#include "hosting/pluginmodule.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// The parameters' ranges become 0 to 1, the state is the chunk, the embedded X11
// window the editor. A state that is the chunk of Mirelon's names the effect and
// its program; other plug-ins have no programs.
//
// Threads as for an effect: process and setParameter on any one thread each,
// everything else on the main thread; the chunk may be read and given on another
// one. What the window tells of parameters reaches the host in the editor's idle.
class ClapEffect {
  public:
    // The record owns what stands behind it, until effClose. Throws PluginError.
    static AEffect* make(const ClapLibrary& library, audioMasterCallback host);
    ClapEffect(const ClapEffect&) = delete;
    ClapEffect& operator=(const ClapEffect&) = delete;

  private:
    ClapEffect(const ClapLibrary& library, audioMasterCallback host);

    friend struct EffectFunctions<ClapEffect>;
    void setUpRecord();
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    VstIntPtr answerText(VstInt32 opcode, VstInt32 index, char* buffer);

    const clap_param_info* parameterAt(VstInt32 index) const;
    void setParameter(VstInt32 index, float value);
    float getParameter(VstInt32 index) const;
    VstIntPtr setParameterText(VstInt32 index, const char* text);
    VstIntPtr describeParameter(VstInt32 index, VstParameterProperties& properties) const;

    std::string programName();
    VstIntPtr setChunk(std::span<const std::byte> bytes);

    const ERect* editorRectangle();
    void idle();
    void passOnTold();
    VstIntPtr tellHost(VstInt32 opcode, VstInt32 index = 0, float opt = 0.0F);

    const clap_plugin_descriptor& descriptor() { return *player.plugIn().plugin().desc; }

    audioMasterCallback host;
    ClapPlayer player;
    ClapEditor editor{player.plugIn()};
    AEffect record{};
    bool hasBank = false;
    std::vector<std::byte> givenChunk; // what the host was handed last
    ERect rectangle{};
};

// A file's first plug-in.
class ClapModule final : public PluginModule {
  public:
    explicit ClapModule(const std::filesystem::path& file)
        : library(file) {}

    PluginFormat format() const noexcept override { return PluginFormat::clap; }
    std::string name() const override { return library.file().string(); }
    std::vector<std::filesystem::path> libraries() const override { return {library.file()}; }
    AEffect* makeInstance(audioMasterCallback host) const override {
        return ClapEffect::make(library, host);
    }

  private:
    ClapLibrary library;
};

} // namespace mirelon::hosting
