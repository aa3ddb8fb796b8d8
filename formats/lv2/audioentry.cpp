// The name by which hosts find the LV2 plug-in, and its functions.
#include "formats/lv2/audiowrapper.h"

#include <cstring>

namespace {

using mirelon::lv2::AudioWrapper;

AudioWrapper& wrapperOf(LV2_Handle instance) {
    return *static_cast<AudioWrapper*>(instance);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double sampleRate,
                       const char* /*bundlePath*/, const LV2_Feature* const* features) noexcept {
    try {
        return new AudioWrapper(sampleRate, features);
    } catch (...) {
        return nullptr;
    }
}

void connectPort(LV2_Handle instance, std::uint32_t port, void* data) noexcept {
    wrapperOf(instance).connectPort(port, data);
}

void activate(LV2_Handle instance) noexcept {
    wrapperOf(instance).activate();
}

void run(LV2_Handle instance, std::uint32_t frames) noexcept {
    wrapperOf(instance).run(frames);
}

void deactivate(LV2_Handle instance) noexcept {
    wrapperOf(instance).deactivate();
}

void cleanup(LV2_Handle instance) noexcept {
    delete &wrapperOf(instance);
}

LV2_State_Status save(LV2_Handle instance, LV2_State_Store_Function store, LV2_State_Handle handle,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) noexcept {
    return wrapperOf(instance).save(store, handle);
}

LV2_State_Status restore(LV2_Handle instance, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle handle, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/) noexcept {
    return wrapperOf(instance).restore(retrieve, handle);
}

const void* extensionData(const char* uri) noexcept {
    static constexpr LV2_State_Interface state{save, restore};
    return std::strcmp(uri, LV2_STATE__interface) == 0 ? &state : nullptr;
}

constexpr LV2_Descriptor descriptor{mirelon::lv2::pluginUri,
                                    instantiate,
                                    connectPort,
                                    activate,
                                    run,
                                    deactivate,
                                    cleanup,
                                    extensionData};

} // namespace

extern "C" __attribute__((visibility("default"))) const LV2_Descriptor*
lv2_descriptor(std::uint32_t index) {
    return index == 0 ? &descriptor : nullptr;
}
