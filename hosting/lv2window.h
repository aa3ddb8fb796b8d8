// An X11 window of an LV2 plug-in, in a parent's.
#pragma once

#include "hosting/lv2bundle.h"

#include <cstddef>
#include <cstdint>
#include <lv2/ui/ui.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::hosting {

// What a window's write to a port was.
struct Lv2Write {
    std::uint32_t port = 0;
    std::optional<float> number;    // of a control port
    std::vector<std::byte> message; // otherwise: a whole atom
};

// What a window asks of its host, at any time from its constructor's call to its
// destructor's.
class Lv2WindowListener {
  public:
    virtual ~Lv2WindowListener() = default;
    virtual void written(const Lv2Write& write) = 0;
    virtual void touched(std::uint32_t port, bool grabbed) = 0;
    virtual void resized(int width, int height) = 0;
};

// Its binary stays loaded for as long. One thread.
class Lv2Window {
  public:
    struct Options {
        std::uintptr_t parent = 0; // 0: none is given
        bool map = true;
        std::optional<float> scale;
    };
    // Throws PluginError when the binary cannot be loaded; the window may refuse
    // to open.
    Lv2Window(const Lv2Bundle& bundle, const Options& options, Lv2WindowListener& listener);
    ~Lv2Window();
    Lv2Window(const Lv2Window&) = delete;
    Lv2Window& operator=(const Lv2Window&) = delete;

    // Whether a window that requires this feature gets it.
    static bool offers(const std::string& feature);

    bool isOpen() const noexcept { return handle != nullptr; }
    // The child's X11 window.
    std::uint32_t child() const noexcept;
    void tell(std::uint32_t port, float number);
    void tell(std::uint32_t port, std::span<const std::byte> atom);
    void tellRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format, const void* bytes);
    int idle();
    // As the destructor; what the window writes meanwhile is still heard.
    void close();

  private:
    void hear(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* buffer);

    struct Unload {
        void operator()(void* library) const;
    };
    Lv2Numbers& numbers;
    Lv2WindowListener& listener;
    std::unique_ptr<void, Unload> library;
    const LV2UI_Descriptor* descriptor = nullptr;
    const LV2UI_Idle_Interface* idling = nullptr;
    LV2UI_Handle handle = nullptr;
    LV2UI_Widget widget = nullptr;
    LV2UI_Touch touching{};
    LV2UI_Resize resizing{};
};

} // namespace mirelon::hosting
