// What the adapters that present other formats' plug-ins as effects have in common.
#pragma once

#include "shell/vst24.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace mirelon::hosting {

// Cuts the text to what hosts' buffers have room for, whatever the interface says.
// Answers whether there is any.
inline VstIntPtr putText(void* buffer, std::string_view text) {
    constexpr std::size_t longestText = 128;
    if (buffer == nullptr)
        return 0;
    auto* const to = static_cast<char*>(buffer);
    const std::size_t length = std::min(text.size(), longestText - 1);
    std::copy_n(text.data(), length, to);
    to[length] = '\0';
    return length > 0 ? 1 : 0;
}

// A name as a number that hardly another plug-in has: never 0.
inline VstInt32 identifierOf(std::string_view name) {
    std::uint32_t hash = 2166136261U;
    for (const char letter : name)
        hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    return static_cast<VstInt32>(hash | 1U);
}

// What a host is told of a parameter that is on or off.
inline void describeSwitch(VstParameterProperties& properties, std::string_view name) {
    properties = {};
    properties.flags = kVstParameterIsSwitch;
    std::copy_n(name.data(), std::min(name.size(), sizeof properties.label - 1), properties.label);
}

// The functions of an adapter's record, which lead to its own: `dispatch`,
// `setParameter`, `getParameter` and its `player`. An adapter makes it a friend.
template <typename Adapter>
struct EffectFunctions {
    static Adapter& of(AEffect* effect) { return *static_cast<Adapter*>(effect->object); }

    // From here on the record is the adapter's, until effClose.
    static void give(AEffect& record, Adapter& adapter) {
        record.magic = kEffectMagic;
        record.object = &adapter;
        record.ioRatio = 1.0F;
        record.dispatcher = [](AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                               void* ptr, float opt) {
            if (opcode != effClose)
                return of(effect).dispatch(opcode, index, value, ptr, opt);
            delete &of(effect);
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
