// The name by which hosts find the LV2 plug-in's window, and its functions.
#include "formats/lv2/names.h"
#include "formats/lv2/windowwrapper.h"

#include <cstring>
#include <memory>

namespace {

using mirelon::lv2::WindowWrapper;

WindowWrapper& wrapperOf(LV2UI_Handle window) {
    return *static_cast<WindowWrapper*>(window);
}

LV2UI_Handle instantiate(const LV2UI_Descriptor* /*descriptor*/, const char* pluginUri,
                         const char* /*bundlePath*/, LV2UI_Write_Function write,
                         LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) noexcept {
    if (std::strcmp(pluginUri, mirelon::lv2::pluginUri) != 0 || write == nullptr)
        return nullptr;
    try {
        auto window =
            std::make_unique<WindowWrapper>(WindowWrapper::Writing{write, controller}, features);
        if (widget != nullptr)
            *widget = window->widget();
        return window.release();
    } catch (...) {
        return nullptr;
    }
}

void cleanup(LV2UI_Handle window) noexcept {
    delete &wrapperOf(window);
}

// What throws is short of memory; the host goes on.
template <typename Call>
void guarded(Call call) noexcept {
    try {
        call();
    } catch (...) {
        return;
    }
}

void portEvent(LV2UI_Handle window, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) noexcept {
    guarded([&] { wrapperOf(window).portEvent(port, size, format, buffer); });
}

int idle(LV2UI_Handle window) noexcept {
    guarded([&] { wrapperOf(window).idle(); });
    return 0;
}

const void* extensionData(const char* uri) noexcept {
    static constexpr LV2UI_Idle_Interface idling{idle};
    return std::strcmp(uri, LV2_UI__idleInterface) == 0 ? &idling : nullptr;
}

constexpr LV2UI_Descriptor descriptor{mirelon::lv2::windowUri, instantiate, cleanup, portEvent,
                                      extensionData};

} // namespace

extern "C" __attribute__((visibility("default"))) const LV2UI_Descriptor*
lv2ui_descriptor(std::uint32_t index) {
    return index == 0 ? &descriptor : nullptr;
}
