#include "formats/effecthost.h"

#include <stdexcept>
#include <string_view>

using namespace std::string_view_literals;

namespace mirelon {

thread_local const EffectHost* EffectHost::building = nullptr;

EffectHost::EffectHost(float rate, VstInt32 frames)
    : sampleRate(static_cast<VstIntPtr>(rate))
    , blockSize(frames) {
    struct Building {
        explicit Building(const EffectHost* host) { building = host; }
        ~Building() { building = nullptr; }
    };
    const Building scope(this);
    hosted = dynamic_cast<Mirelon*>(createEffectInstance(&EffectHost::callback));
    if (hosted == nullptr)
        throw std::runtime_error("there is no effect to host");
    hosted->getAeffect()->user = this;
    dispatch(effOpen);
    setFormat(rate, frames);
}

EffectHost::~EffectHost() {
    // What a derived class would hear of the end is gone already.
    hosted->getAeffect()->user = nullptr;
    dispatch(effClose);
}

void EffectHost::setFormat(float rate, VstInt32 frames) noexcept {
    sampleRate = static_cast<VstIntPtr>(rate);
    blockSize = frames;
    dispatch(effSetSampleRate, 0, 0, nullptr, rate);
    dispatch(effSetBlockSize, 0, frames);
}

VstIntPtr EffectHost::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                               float opt) noexcept {
    AEffect* const record = hosted->getAeffect();
    return record->dispatcher(record, opcode, index, value, ptr, opt);
}

bool EffectHost::isHeld(VstInt32 index) const noexcept {
    return isParameter(index) &&
           gestures[static_cast<std::size_t>(index)].depth.load(std::memory_order_relaxed) > 0;
}

VstIntPtr EffectHost::callback(AEffect* record, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                               void* ptr, float opt) noexcept {
    auto* const host = record != nullptr ? static_cast<EffectHost*>(record->user) : nullptr;
    if (host == nullptr)
        return building != nullptr ? building->answer(opcode) : 0;
    try {
        return host->hear(opcode, index, value, ptr, opt);
    } catch (...) { // out of memory on the way to the format's own host
        return 0;
    }
}

VstIntPtr EffectHost::answer(VstInt32 opcode) const noexcept {
    switch (opcode) {
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterGetSampleRate:
        return sampleRate;
    case audioMasterGetBlockSize:
        return blockSize;
    default:
        return 0;
    }
}

VstIntPtr EffectHost::hear(VstInt32 opcode, VstInt32 index, VstIntPtr value, const void* ptr,
                           float opt) {
    switch (opcode) {
    case audioMasterAutomate:
        automated(index, opt);
        return 1;
    case audioMasterBeginEdit:
        begin(index);
        return 1;
    case audioMasterEndEdit:
        end(index);
        return 1;
    case audioMasterUpdateDisplay:
        displayChanged();
        return 1;
    case audioMasterCanDo:
        return ptr != nullptr && static_cast<const char*>(ptr) == "sizeWindow"sv &&
               canResizeWindow();
    case audioMasterSizeWindow:
        return resizeWindow(index, static_cast<int>(value));
    default:
        return answer(opcode);
    }
}

void EffectHost::automated(VstInt32 index, float value) {
    if (!isParameter(index))
        return;
    Gesture& gesture = gestures[static_cast<std::size_t>(index)];
    if (gesture.depth.load(std::memory_order_relaxed) > 0 &&
        !gesture.passedOn.exchange(true, std::memory_order_relaxed))
        gestureBegun(index);
    parameterAutomated(index, value);
}

void EffectHost::begin(VstInt32 index) noexcept {
    if (isParameter(index))
        gestures[static_cast<std::size_t>(index)].depth.fetch_add(1, std::memory_order_relaxed);
}

void EffectHost::end(VstInt32 index) {
    if (!isHeld(index))
        return;
    Gesture& gesture = gestures[static_cast<std::size_t>(index)];
    if (gesture.depth.fetch_sub(1, std::memory_order_relaxed) == 1 &&
        gesture.passedOn.exchange(false, std::memory_order_relaxed))
        gestureEnded(index);
}

} // namespace mirelon
