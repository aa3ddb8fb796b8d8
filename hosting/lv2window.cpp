#include "hosting/lv2window.h"

#include "hosting/hostingerror.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <dlfcn.h>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <utility>

namespace mirelon::hosting {

namespace {

constexpr std::array offered{LV2_URID__map,     LV2_URID__unmap,     LV2_UI__parent,
                             LV2_UI__resize,    LV2_UI__touch,       LV2_UI__idleInterface,
                             LV2_UI__fixedSize, LV2_UI__noUserResize};

const LV2UI_Descriptor* descriptorOf(void* library, const std::string& uri) {
    const auto entry =
        reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library, "lv2ui_descriptor"));
    if (entry == nullptr)
        return nullptr;
    for (std::uint32_t index = 0;; ++index) {
        const LV2UI_Descriptor* const each = entry(index);
        if (each == nullptr || uri == each->URI)
            return each;
    }
}

} // namespace

bool Lv2Window::offers(const std::string& feature) {
    return std::ranges::find(offered, feature) != offered.end();
}

void Lv2Window::Unload::operator()(void* library) const {
    dlclose(library);
}

Lv2Window::Lv2Window(const Lv2Bundle& bundle, const Options& options, Lv2WindowListener& listener_)
    : numbers(bundle.numbers())
    , listener(listener_)
    , library(dlopen(bundle.windowBinary().c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (library == nullptr)
        throw PluginError(bundle.uri() + ": its window cannot be loaded (" + dlerror() + ")");
    descriptor = descriptorOf(library.get(), bundle.windowUri());
    if (descriptor == nullptr)
        throw PluginError(bundle.windowBinary().string() + ": holds no window " +
                          bundle.windowUri());
    if (descriptor->extension_data != nullptr)
        idling = static_cast<const LV2UI_Idle_Interface*>(
            descriptor->extension_data(LV2_UI__idleInterface));

    touching = {this, [](LV2UI_Feature_Handle self, std::uint32_t port, bool grabbed) {
                    static_cast<Lv2Window*>(self)->listener.touched(port, grabbed);
                }};
    resizing = {this, [](LV2UI_Feature_Handle self, int width, int height) {
                    static_cast<Lv2Window*>(self)->listener.resized(width, height);
                    return 0;
                }};
    const float factor = options.scale.value_or(1.0F);
    const LV2_Options_Option optionList[] = {{LV2_OPTIONS_INSTANCE, 0,
                                              numbers.number(LV2_UI__scaleFactor), sizeof factor,
                                              numbers.number(LV2_ATOM__Float), &factor},
                                             {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    const LV2_Feature map{LV2_URID__map, numbers.map()};
    const LV2_Feature unmap{LV2_URID__unmap, numbers.unmap()};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an X11 window is a number
    const LV2_Feature parent{LV2_UI__parent, reinterpret_cast<void*>(options.parent)};
    const LV2_Feature touch{LV2_UI__touch, &touching};
    const LV2_Feature resize{LV2_UI__resize, &resizing};
    const LV2_Feature idle{LV2_UI__idleInterface, nullptr};
    const LV2_Feature given{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(optionList)};
    std::vector<const LV2_Feature*> features{&touch, &resize, &idle};
    if (options.map)
        features.insert(features.end(), {&map, &unmap});
    if (options.parent != 0)
        features.push_back(&parent);
    if (options.scale)
        features.push_back(&given);
    features.push_back(nullptr);
    const std::string folder = bundle.windowBinary().parent_path() / "";
    handle = descriptor->instantiate(
        descriptor, bundle.uri().c_str(), folder.c_str(),
        [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
           const void* buffer) {
            static_cast<Lv2Window*>(self)->hear(port, size, protocol, buffer);
        },
        this, &widget, features.data());
}

Lv2Window::~Lv2Window() {
    close();
}

void Lv2Window::close() {
    if (handle != nullptr)
        descriptor->cleanup(std::exchange(handle, nullptr));
}

std::uint32_t Lv2Window::child() const noexcept {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(widget));
}

void Lv2Window::hear(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                     const void* buffer) {
    Lv2Write write{port, std::nullopt, {}};
    const auto* const bytes = static_cast<const std::byte*>(buffer);
    if (protocol == 0 && size == sizeof(float)) {
        float number = 0.0F;
        std::memcpy(&number, buffer, sizeof number);
        write.number = number;
    } else if (protocol == numbers.number(LV2_ATOM__eventTransfer)) {
        write.message.assign(bytes, bytes + size);
    }
    listener.written(write);
}

void Lv2Window::tell(std::uint32_t port, float number) {
    tellRaw(port, sizeof number, 0, &number);
}

void Lv2Window::tell(std::uint32_t port, std::span<const std::byte> atom) {
    tellRaw(port, static_cast<std::uint32_t>(atom.size()), numbers.number(LV2_ATOM__eventTransfer),
            atom.data());
}

void Lv2Window::tellRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                        const void* bytes) {
    if (handle != nullptr && descriptor->port_event != nullptr)
        descriptor->port_event(handle, port, size, format, bytes);
}

int Lv2Window::idle() {
    return handle != nullptr && idling != nullptr ? idling->idle(handle) : 0;
}

} // namespace mirelon::hosting
