// What the adapters that present other formats' plug-ins as effects have in common.
#pragma once

#include "shell/vst24.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mirelon::hosting {

// A name as a number that hardly another plug-in has: never 0.
VstInt32 identifierOf(std::string_view name);

// The effect's record, and the answers to a host's opcodes: what each of them hands
// over is checked here, and what it asks for is a virtual function of the format's.
// These get numbers of parameters that there are. effClose deletes it.
//
// The audio thread's functions are not virtual: EffectFunctions leads to them.
class AdaptedEffect {
  public:
    virtual ~AdaptedEffect() = default;
    AdaptedEffect(const AdaptedEffect&) = delete;
    AdaptedEffect& operator=(const AdaptedEffect&) = delete;

  protected:
    explicit AdaptedEffect(audioMasterCallback host) noexcept
        : host(host) {}

    bool hasParameter(VstInt32 index) const noexcept {
        return index >= 0 && index < record.numParams;
    }
    // 0 without a host's callback.
    VstIntPtr tellHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, float opt = 0.0F);

    AEffect record{};

  private:
    template <typename Adapter>
    friend struct EffectFunctions;
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    VstIntPtr answerText(VstInt32 opcode, VstInt32 index, void* buffer);
    VstIntPtr answerParameterText(VstInt32 opcode, VstInt32 index, void* buffer);
    VstIntPtr giveRectangle(void* to);
    VstIntPtr giveChunk(void* to);
    VstIntPtr setParameterText(VstInt32 index, const char* text);
    VstIntPtr describeParameter(VstInt32 index, VstParameterProperties* properties);

    virtual void setRate(double rate) = 0;
    virtual void setLargestBlock(std::int32_t frames) = 0; // 0 to 2^24
    virtual void resume() = 0;
    virtual void suspend() = 0;

    virtual std::string effectName() = 0;
    virtual std::string vendorName() = 0;
    virtual VstPlugCategory category() = 0;

    virtual std::string parameterName(VstInt32 index) = 0;
    // Nothing where the format has no such text.
    virtual std::optional<std::string> parameterLabel(VstInt32 index) = 0;
    virtual std::string parameterDisplay(VstInt32 index) = 0;
    // Whether the text could be read.
    virtual bool readParameter(VstInt32 index, const char* text) = 0;
    virtual bool isAutomatable(VstInt32 index) = 0;
    virtual bool isSwitch(VstInt32 index) = 0;

    virtual void setProgram(VstIntPtr /*number*/) {}
    virtual VstIntPtr program() { return 0; }
    // Nothing without programs.
    virtual std::optional<std::string> programName() = 0;
    virtual std::optional<std::string> programName(VstInt32 /*index*/) { return std::nullopt; }

    virtual std::vector<std::byte> chunk() = 0;
    virtual bool setChunk(std::span<const std::byte> bytes) = 0;

    // In this X11 window. Only with effFlagsHasEditor.
    virtual bool openEditor(std::uintptr_t parent) = 0;
    virtual void closeEditor() = 0;
    virtual void idleEditor() = 0;
    // Width and height.
    virtual std::optional<std::pair<int, int>> editorSize() = 0;

    audioMasterCallback host;
    std::vector<std::byte> givenChunk; // what the host was handed last
    ERect rectangle{};
};

// The functions of an adapter's record, which lead to its own: `setParameter`,
// `getParameter` and its `player`. An adapter makes it a friend.
template <typename Adapter>
struct EffectFunctions {
    static Adapter& of(AEffect* effect) {
        return static_cast<Adapter&>(*static_cast<AdaptedEffect*>(effect->object));
    }

    // From here on the record is the adapter's, until effClose.
    static void give(AEffect& record, AdaptedEffect& adapter) {
        record.magic = kEffectMagic;
        record.object = &adapter;
        record.ioRatio = 1.0F;
        record.dispatcher = [](AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                               void* ptr, float opt) {
            auto* const self = static_cast<AdaptedEffect*>(effect->object);
            if (opcode != effClose)
                return self->dispatch(opcode, index, value, ptr, opt);
            delete self;
            return VstIntPtr{1};
        };
        record.setParameter = [](AEffect* effect, VstInt32 index, float value) {
            of(effect).setParameter(index, value);
        };
        record.getParameter = [](AEffect* effect, VstInt32 index) {
            return of(effect).getParameter(index);
        };
        record.processReplacing = process<float>;
    }

    template <typename Sample>
    static void process(AEffect* effect, Sample** inputs, Sample** outputs, VstInt32 frames) {
        if (frames > 0)
            of(effect).player.process(inputs, outputs, static_cast<std::uint32_t>(frames));
    }
};

} // namespace mirelon::hosting
