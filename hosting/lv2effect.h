// An LV2 plug-in in the shape of a VST 2.4 effect, for all that drives effects.
#pragma once

#include "hosting/adaptedeffect.h"
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
#include <utility>
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
class Lv2Effect final : public AdaptedEffect, private Lv2EditorListener {
  public:
    // The record owns what stands behind it, until effClose. Throws PluginError.
    static AEffect* make(const Lv2Bundle& bundle, audioMasterCallback host);

  private:
    Lv2Effect(const Lv2Bundle& bundle, audioMasterCallback host);

    friend struct EffectFunctions<Lv2Effect>;

    void setRate(double rate) override { player.setRate(rate); }
    void setLargestBlock(std::int32_t frames) override { player.setLargestBlock(frames); }
    void resume() override { player.resume(); }
    void suspend() override { player.suspend(); }

    std::string effectName() override;
    std::string vendorName() override;
    VstPlugCategory category() override;

    const Lv2Parameter& parameterAt(VstInt32 index) const;
    std::optional<VstInt32> indexOfPort(std::uint32_t port) const;
    void setParameter(VstInt32 index, float value);
    float getParameter(VstInt32 index) const;
    std::string parameterName(VstInt32 index) override { return parameterAt(index).name; }
    std::optional<std::string> parameterLabel(VstInt32 index) override;
    std::string parameterDisplay(VstInt32 index) override;
    bool readParameter(VstInt32 index, const char* text) override;
    bool isAutomatable(VstInt32 /*index*/) override { return true; }
    bool isSwitch(VstInt32 index) override;

    void setProgram(VstIntPtr number) override;
    VstIntPtr program() override { return chosenProgram; }
    std::optional<std::string> programName() override;
    std::optional<std::string> programName(VstInt32 index) override;
    std::string nameOfProgram(VstIntPtr number) const;

    std::optional<std::string> bankProperty();
    std::vector<std::byte> chunk() override;
    bool setChunk(std::span<const std::byte> bytes) override;
    void showBank(std::span<const std::byte> chunk);

    bool openEditor(std::uintptr_t parent) override;
    void closeEditor() override;
    void idleEditor() override;
    std::optional<std::pair<int, int>> editorSize() override;
    void numberWritten(std::uint32_t port, float number) override;
    void touched(std::uint32_t port, bool grabbed) override;
    void resized(int width, int height) override;

    const Lv2Bundle& bundle;
    std::vector<Lv2Parameter> parameters;
    Lv2Player player;
    std::vector<std::string> programs; // by label; empty where the chunk holds them
    VstIntPtr chosenProgram = 0;
    std::string chunkProperty{}; // of the state; empty: the effect has no chunk
    std::unique_ptr<Lv2Editor> editor;
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
