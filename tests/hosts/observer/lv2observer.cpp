// The window of an LV2 plug-in that stands between a host and the real one and
// writes down what passes, as tests/hosts/observer/observer.cpp does and in its
// words: a number that the window writes to a parameter's port, the two ends of a
// touch, and a number that the host shows the window. Numbers are the ports' own.
//
// A host that offers no ui:touch offers none to the real window either.
#include "formats/lv2/names.h"
#include "shell/vst24.h"
#include "tests/hosts/observer/log.h"

#include <cstring>
#include <dlfcn.h>
#include <lv2/ui/ui.h>
#include <memory>
#include <vector>

using mirelon::test::log;
namespace lv2 = mirelon::lv2;

namespace {

constexpr std::uint32_t plainNumber = 0; // the protocol of control ports

const LV2UI_Descriptor* realWindow() {
    static const LV2UI_Descriptor* const descriptor = []() -> const LV2UI_Descriptor* {
        const char* const file = std::getenv("MIRELON_OBSERVED");
        void* const module = file == nullptr ? nullptr : dlopen(file, RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr)
            return nullptr;
        return reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(module, "lv2ui_descriptor"))(0);
    }();
    return descriptor;
}

bool isNumberOfParameter(std::uint32_t port, std::uint32_t size, std::uint32_t format) {
    return format == plainNumber && size == sizeof(float) && lv2::isParameterPort(port);
}

float numberIn(const void* buffer) {
    float number = 0.0F;
    std::memcpy(&number, buffer, sizeof number);
    return number;
}

void tells(VstInt32 opcode, std::uint32_t port, float number) {
    log().line("tells %d %d 0 %.9g", opcode, lv2::parameterOfPort(port),
               static_cast<double>(number));
}

class Observed {
  public:
    // The features of the real window are the host's, but for its touch.
    Observed(LV2UI_Write_Function write, LV2UI_Controller controller,
             const LV2_Feature* const* features)
        : hostWrite(write)
        , hostController(controller) {
        for (; features != nullptr && *features != nullptr; ++features) {
            const bool touch = std::strcmp((*features)->URI, LV2_UI__touch) == 0;
            if (touch)
                hostTouch = static_cast<const LV2UI_Touch*>((*features)->data);
            offered.push_back(touch ? &touchFeature : *features);
        }
        offered.push_back(nullptr);
    }

    bool open(const char* plugin, const char* bundle, LV2UI_Widget* widget) {
        real = realWindow()->instantiate(realWindow(), plugin, bundle, write, this, widget,
                                         offered.data());
        return real != nullptr;
    }
    LV2UI_Handle window() const { return real; }

  private:
    static void write(LV2UI_Controller controller, std::uint32_t port, std::uint32_t size,
                      std::uint32_t format, const void* buffer) {
        const auto& self = *static_cast<const Observed*>(controller);
        if (isNumberOfParameter(port, size, format))
            tells(audioMasterAutomate, port, numberIn(buffer));
        self.hostWrite(self.hostController, port, size, format, buffer);
    }
    static void touch(LV2UI_Feature_Handle handle, std::uint32_t port, bool grabbed) {
        const auto& host = *static_cast<const Observed*>(handle)->hostTouch;
        tells(grabbed ? audioMasterBeginEdit : audioMasterEndEdit, port, 0.0F);
        host.touch(host.handle, port, grabbed);
    }

    LV2UI_Write_Function hostWrite;
    LV2UI_Controller hostController;
    const LV2UI_Touch* hostTouch = nullptr;
    LV2UI_Touch ownTouch{this, touch};
    LV2_Feature touchFeature{LV2_UI__touch, &ownTouch};
    std::vector<const LV2_Feature*> offered;
    LV2UI_Handle real = nullptr;
};

LV2UI_Handle windowOf(LV2UI_Handle observed) {
    return static_cast<const Observed*>(observed)->window();
}

LV2UI_Handle instantiate(const LV2UI_Descriptor* /*descriptor*/, const char* plugin,
                         const char* bundle, LV2UI_Write_Function write,
                         LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) {
    auto observed = std::make_unique<Observed>(write, controller, features);
    const bool open = observed->open(plugin, bundle, widget);
    log().line("asks %d 0 0 0 = %d", effEditOpen, open ? 1 : 0);
    return open ? observed.release() : nullptr;
}

void cleanup(LV2UI_Handle observed) {
    realWindow()->cleanup(windowOf(observed));
    log().line("asks %d 0 0 0 = 1", effEditClose);
    delete static_cast<const Observed*>(observed);
}

void portEvent(LV2UI_Handle observed, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) {
    if (isNumberOfParameter(port, size, format))
        log().line("sets %d %.9g", lv2::parameterOfPort(port),
                   static_cast<double>(numberIn(buffer)));
    realWindow()->port_event(windowOf(observed), port, size, format, buffer);
}

const LV2UI_Idle_Interface& realIdling() {
    return *static_cast<const LV2UI_Idle_Interface*>(
        realWindow()->extension_data(LV2_UI__idleInterface));
}

const void* extensionData(const char* uri) {
    static constexpr LV2UI_Idle_Interface idling{
        [](LV2UI_Handle observed) { return realIdling().idle(windowOf(observed)); }};
    return std::strcmp(uri, LV2_UI__idleInterface) == 0 ? &idling : nullptr;
}

constexpr LV2UI_Descriptor descriptor{lv2::windowUri, instantiate, cleanup, portEvent,
                                      extensionData};

} // namespace

extern "C" __attribute__((visibility("default"))) const LV2UI_Descriptor*
lv2ui_descriptor(std::uint32_t index) {
    return index == 0 && realWindow() != nullptr ? &descriptor : nullptr;
}
