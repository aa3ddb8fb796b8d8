#include "hosting/lv2editor.h"

#include <X11/Xlib.h>
#include <bit>
#include <memory>

namespace mirelon::hosting {

namespace {

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

bool sameBits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

} // namespace

Lv2Editor::Lv2Editor(const Lv2Bundle& bundle, Lv2Player& player_, std::uintptr_t parent,
                     Lv2EditorListener& listener_)
    : player(player_)
    , listener(listener_)
    , told(player.ports().portCount()) {
    // What was sent while there was no window is none of this one's concern.
    while (player.takeNotification()) {
    }
    Lv2WindowListener& self = *this;
    window.emplace(bundle, Lv2Window::Options{parent, true, std::nullopt}, self);
    if (isOpen())
        tellNumbers();
}

std::optional<std::pair<int, int>> Lv2Editor::size() const {
    if (wantedSize || !isOpen())
        return wantedSize;
    const std::unique_ptr<Display, CloseDisplay> display(XOpenDisplay(nullptr));
    XWindowAttributes attributes{};
    if (display == nullptr || window->child() == 0 ||
        XGetWindowAttributes(display.get(), window->child(), &attributes) == 0)
        return std::nullopt;
    return std::pair{attributes.width, attributes.height};
}

void Lv2Editor::idle() {
    player.settle();
    while (const auto message = player.takeNotification())
        window->tell(message->port, message->bytes);
    tellNumbers();
    window->idle();
}

void Lv2Editor::tellNumbers() {
    for (std::uint32_t port = 0; port < told.size(); ++port) {
        if (!player.ports().isControlInput(port) && !player.ports().isControlOutput(port))
            continue;
        const float number = player.number(port);
        if (told[port] && sameBits(*told[port], number))
            continue;
        told[port] = number;
        window->tell(port, number);
    }
}

void Lv2Editor::written(const Lv2Write& write) {
    if (write.port >= told.size())
        return;
    if (!write.number)
        return player.send(write.port, write.message);
    if (!player.ports().isControlInput(write.port))
        return;
    told[write.port] = *write.number;
    player.setNumber(write.port, *write.number);
    listener.numberWritten(write.port, *write.number);
}

void Lv2Editor::touched(std::uint32_t port, bool grabbed) {
    listener.touched(port, grabbed);
}

void Lv2Editor::resized(int width, int height) {
    wantedSize = {width, height};
    listener.resized(width, height);
}

} // namespace mirelon::hosting
