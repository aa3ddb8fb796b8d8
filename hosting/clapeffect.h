// A CLAP plug-in in the shape of a VST 2.4 effect, for all that drives effects.
#pragma once

#include "hosting/adaptedeffect.h"
#include "hosting/clapeditor.h"
#include "hosting/claplibrary.h"
#include "hosting/clapplayer.h"
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
class ClapEffect final : public AdaptedEffect {
  public:
    // The record owns what stands behind it, until effClose. Throws PluginError.
    static AEffect* make(const ClapLibrary& library, audioMasterCallback host);

  private:
    ClapEffect(const ClapLibrary& library, audioMasterCallback host);

    friend struct EffectFunctions<ClapEffect>;
    void setUpRecord();

    void setRate(double rate) override { player.setRate(rate); }
    void setLargestBlock(std::int32_t frames) override;
    void resume() override;
    void suspend() override { player.suspend(); }

    std::string effectName() override;
    std::string vendorName() override;
    VstPlugCategory category() override;

    const clap_param_info& parameterAt(VstInt32 index) const;
    void setParameter(VstInt32 index, float value);
    float getParameter(VstInt32 index) const;
    std::string parameterName(VstInt32 index) override;
    std::optional<std::string> parameterLabel(VstInt32 /*index*/) override { return std::nullopt; }
    std::string parameterDisplay(VstInt32 index) override;
    bool readParameter(VstInt32 index, const char* text) override;
    bool isAutomatable(VstInt32 index) override;
    bool isSwitch(VstInt32 index) override;

    std::optional<std::string> programName() override;
    std::vector<std::byte> chunk() override;
    bool setChunk(std::span<const std::byte> bytes) override { return player.load(bytes); }

    bool openEditor(std::uintptr_t parent) override { return editor.open(parent); }
    void closeEditor() override;
    void idleEditor() override;
    std::optional<std::pair<int, int>> editorSize() override;
    void passOnTold();

    const clap_plugin_descriptor& descriptor() { return *player.plugIn().plugin().desc; }

    ClapPlayer player;
    ClapEditor editor{player.plugIn()};
    bool hasBank = false;
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
