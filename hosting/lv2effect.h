// An LV2 plug-in in the shape of a VST 2.4 effect, for all that drives effects.
#pragma once

#include "hosting/effectrecord.h"
#include "hosting/lv2bundle.h"
#include "hosting/lv2editor.h"
#include "hosting/lv2parameter.h"
#include "hosting/lv2player.h"
#include "hosting/pluginmodule.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::hosting {

// Each control input is a parameter, each preset of the data files a program. A
// state that is the one chunk of Mirelon's is the effect's chunk, byte for byte,
// and holds the presets; other plug-ins' ports are not in their state, and they
// have no chunk here. The X11 window is the editor.
//
// Threads as for an effect: process and setParameter on any one thread each,
// everything else on the main thread; the chunk may be read and given on another
// one.
class Lv2Effect : private Lv2EditorListener {
  public:
    // The record owns what stands behind it, until effClose. Throws PluginError.
    static AEffect* make(const Lv2Bundle& bundle, audioMasterCallback host);

  private:
    Lv2Effect(const Lv2Bundle& bundle, audioMasterCallback host);

    friend struct EffectFunctions<Lv2Effect>;
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    VstIntPtr answerText(VstInt32 opcode, VstInt32 index, char* buffer);

    const Lv2Parameter* parameterAt(VstInt32 index) const;
    std::optional<VstInt32> indexOfPort(std::uint32_t port) const;
    void setParameter(VstInt32 index, float value);
    float getParameter(VstInt32 index) const;
    VstIntPtr setParameterText(VstInt32 index, const char* text);
    VstIntPtr describeParameter(VstInt32 index, VstParameterProperties& properties) const;

    void setProgram(VstIntPtr number);
    std::string programName(VstInt32 index);

    std::optional<std::string> bankProperty();
    std::vector<std::byte> chunk();
    VstIntPtr setChunk(std::span<const std::byte> bytes);
    void showBank(std::span<const std::byte> chunk);

    VstIntPtr openEditor(void* parent);
    const ERect* editorRectangle();
    void numberWritten(std::uint32_t port, float number) override;
    void touched(std::uint32_t port, bool grabbed) override;
    void resized(int width, int height) override;
    VstIntPtr tellHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, float opt = 0.0F);

    const Lv2Bundle& bundle;
    audioMasterCallback host;
    AEffect record{};
    std::vector<Lv2Parameter> parameters;
    Lv2Player player;
    std::vector<std::string> programs; // by label; empty where the chunk holds them
    VstIntPtr program = 0;
    std::string chunkProperty{};       // of the state; empty: the effect has no chunk
    std::vector<std::byte> givenChunk; // what the host was handed last
    std::unique_ptr<Lv2Editor> editor;
    ERect rectangle{};
};

// A bundle's plug-in.
class Lv2Module final : public PluginModule {
  public:
    // Throws PluginError when the plug-in needs what is not offered here.
    explicit Lv2Module(std::unique_ptr<const Lv2Bundle> bundle);

    PluginFormat format() const noexcept override { return PluginFormat::lv2; }
    std::string name() const override { return bundle->uri(); }
    std::vector<std::filesystem::path> libraries() const override;
    AEffect* makeInstance(audioMasterCallback host) const override;

    const Lv2Bundle& files() const noexcept { return *bundle; }

  private:
    std::unique_ptr<const Lv2Bundle> bundle;
};

} // namespace mirelon::hosting
