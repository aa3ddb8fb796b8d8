#include "hosting/adaptedeffect.h"

#include <algorithm>

namespace mirelon::hosting {

namespace {

constexpr VstIntPtr largestBlock = 1 << 24;

// Cuts the text to what hosts' buffers have room for, whatever the interface says, and
// leaves the buffer alone where there is none. Answers whether there is anything in it.
VstIntPtr putText(void* buffer, const std::optional<std::string>& text) {
    constexpr std::size_t longestText = 128;
    if (buffer == nullptr || !text)
        return 0;
    auto* const to = static_cast<char*>(buffer);
    const std::size_t length = std::min(text->size(), longestText - 1);
    std::copy_n(text->data(), length, to);
    to[length] = '\0';
    return length > 0 ? 1 : 0;
}

} // namespace

VstInt32 identifierOf(std::string_view name) {
    std::uint32_t hash = 2166136261U;
    for (const char letter : name)
        hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    return static_cast<VstInt32>(hash | 1U);
}

VstIntPtr AdaptedEffect::tellHost(VstInt32 opcode, VstInt32 index, VstIntPtr value, float opt) {
    return host != nullptr ? host(&record, opcode, index, value, nullptr, opt) : 0;
}

VstIntPtr AdaptedEffect::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                  float opt) {
    switch (opcode) {
    case effSetProgram:
        setProgram(value);
        return 0;
    case effGetProgram:
        return program();
    case effSetSampleRate:
        setRate(static_cast<double>(opt));
        return 0;
    case effSetBlockSize:
        setLargestBlock(static_cast<std::int32_t>(std::clamp<VstIntPtr>(value, 0, largestBlock)));
        return 0;
    case effMainsChanged:
        value != 0 ? resume() : suspend();
        return 0;
    case effEditGetRect:
        return giveRectangle(ptr);
    case effEditOpen:
        return (record.flags & effFlagsHasEditor) != 0 &&
                       openEditor(reinterpret_cast<std::uintptr_t>(ptr))
                   ? 1
                   : 0;
    case effEditClose:
        closeEditor();
        return 0;
    case effEditIdle:
        idleEditor();
        return 0;
    case effGetChunk:
        return giveChunk(ptr);
    case effSetChunk:
        return ptr != nullptr && value >= 0 &&
                       setChunk(
                           {static_cast<const std::byte*>(ptr), static_cast<std::size_t>(value)})
                   ? 1
                   : 0;
    case effCanBeAutomated:
        return hasParameter(index) && isAutomatable(index) ? 1 : 0;
    case effString2Parameter:
        return setParameterText(index, static_cast<const char*>(ptr));
    case effGetPlugCategory:
        return category();
    case effGetVendorVersion:
        return record.version;
    case effGetParameterProperties:
        return describeParameter(index, static_cast<VstParameterProperties*>(ptr));
    default:
        return answerText(opcode, index, ptr);
    }
}

VstIntPtr AdaptedEffect::answerText(VstInt32 opcode, VstInt32 index, void* buffer) {
    switch (opcode) {
    case effGetEffectName:
    case effGetProductString:
        return putText(buffer, effectName());
    case effGetVendorString:
        return putText(buffer, vendorName());
    case effGetProgramName:
        return putText(buffer, programName());
    case effGetProgramNameIndexed:
        return putText(buffer, programName(index));
    default:
        return hasParameter(index) ? answerParameterText(opcode, index, buffer) : 0;
    }
}

VstIntPtr AdaptedEffect::answerParameterText(VstInt32 opcode, VstInt32 index, void* buffer) {
    switch (opcode) {
    case effGetParamName:
        return putText(buffer, parameterName(index));
    case effGetParamLabel:
        return putText(buffer, parameterLabel(index));
    case effGetParamDisplay:
        return putText(buffer, parameterDisplay(index));
    default:
        return 0;
    }
}

VstIntPtr AdaptedEffect::giveRectangle(void* to) {
    if (to == nullptr)
        return 0;
    const auto size = editorSize();
    if (size)
        rectangle = {0, 0, static_cast<VstInt16>(size->second), static_cast<VstInt16>(size->first)};
    *static_cast<const ERect**>(to) = size ? &rectangle : nullptr;
    return size ? 1 : 0;
}

VstIntPtr AdaptedEffect::giveChunk(void* to) {
    if (to == nullptr)
        return 0;
    givenChunk = chunk();
    *static_cast<void**>(to) = givenChunk.data();
    return static_cast<VstIntPtr>(givenChunk.size());
}

VstIntPtr AdaptedEffect::setParameterText(VstInt32 index, const char* text) {
    if (!hasParameter(index))
        return 0;
    // No text: can it be done at all?
    return text == nullptr || readParameter(index, text) ? 1 : 0;
}

// What a host is told of a parameter that is on or off.
VstIntPtr AdaptedEffect::describeParameter(VstInt32 index, VstParameterProperties* properties) {
    if (properties == nullptr || !hasParameter(index) || !isSwitch(index))
        return 0;
    const std::string name = parameterName(index);
    *properties = {};
    properties->flags = kVstParameterIsSwitch;
    std::copy_n(name.data(), std::min(name.size(), sizeof properties->label - 1),
                properties->label);
    return 1;
}

} // namespace mirelon::hosting
