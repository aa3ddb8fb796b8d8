#include "platform/toolkitconnection.h"

#include "platform/toolkitx11.h"

#include <array>
#include <mutex>
#include <string_view>

namespace mirelon {

namespace {

constexpr std::string_view embedPropertyName = "_XEMBED_INFO";
// Window managers put it on the windows that they manage.
constexpr std::string_view managedPropertyName = "WM_STATE";
constexpr std::array<std::uint32_t, 2> embedVersionAndMapped{0, 1};

// 0 when the server is gone.
xcb_atom_t atomNamed(std::string_view name) {
    const auto length = static_cast<std::uint16_t>(name.size());
    const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection(), xcb_intern_atom(connection(), 0, length, name.data()), nullptr));
    return reply != nullptr ? reply->atom : 0;
}

// A double click, or ctrl + left press, resets a slider; both are ordinary presses
// on all else.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the toolkit's signature
bool resetsToDefault(VSTGUI::CControl* control, VSTGUI::CButtonState buttons) {
    const auto modifiers = buttons.getModifierState();
    return dynamic_cast<VSTGUI::CSliderBase*>(control) != nullptr && buttons.isLeftButton() &&
           (modifiers == VSTGUI::kControl || (modifiers == 0 && buttons.isDoubleClick()));
}

} // namespace

void setUpToolkit() {
    static std::once_flag once;
    std::call_once(once, [] {
        // The toolkit would look for a bundle around a library handle; our
        // pictures are compiled in.
        VSTGUI::init(nullptr);
        VSTGUI::CControl::CheckDefaultValueFunc = resetsToDefault;
    });
}

void connectToolkit(VSTGUI::X11::IRunLoop& loop) {
    setUpToolkit();
    VSTGUI::X11::RunLoop::init(VSTGUI::SharedPointer<VSTGUI::X11::IRunLoop>(&loop));
}

bool toolkitConnectionAlive() {
    return connection() != nullptr && xcb_connection_has_error(connection()) == 0;
}

std::uint64_t toolkitBytesRead() {
    return xcb_total_read(connection());
}

void flushToolkit() {
    xcb_flush(connection());
}

bool isRedrawTimer(const VSTGUI::X11::ITimerHandler& timer) {
    // Every other timer of the toolkit's is one of the class that it offers to
    // controls and animations.
    return dynamic_cast<const VSTGUI::X11::Timer*>(&timer) == nullptr;
}

std::uint32_t windowOf(const VSTGUI::CFrame& frame) {
    const auto* x11 = dynamic_cast<VSTGUI::X11::IX11Frame*>(frame.getPlatformFrame());
    return x11 != nullptr ? x11->getX11WindowID() : 0;
}

bool windowExists(std::uint32_t window) {
    const ReplyPtr<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), window), nullptr));
    return reply != nullptr;
}

std::uint32_t managedWindowOf(std::uint32_t window) {
    const xcb_atom_t managed = atomNamed(managedPropertyName);
    if (managed == 0)
        return window;
    for (std::uint32_t around = window; around != 0;) {
        const auto property = xcb_get_property(connection(), 0, around, managed, managed, 0, 0);
        const auto tree = xcb_query_tree(connection(), around);
        const ReplyPtr<xcb_get_property_reply_t> state(
            xcb_get_property_reply(connection(), property, nullptr));
        const ReplyPtr<xcb_query_tree_reply_t> place(
            xcb_query_tree_reply(connection(), tree, nullptr));
        if (state != nullptr && state->type == managed)
            return around;
        around = place != nullptr ? place->parent : 0;
    }
    return window;
}

void announceMapped(std::uint32_t window) {
    const xcb_atom_t atom = atomNamed(embedPropertyName);
    if (atom != 0)
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom, atom, 32,
                            embedVersionAndMapped.size(), embedVersionAndMapped.data());
    xcb_map_window(connection(), window);
    xcb_flush(connection());
}

void blackenBackground(std::uint32_t window) {
    constexpr std::uint32_t black = 0;
    xcb_change_window_attributes(connection(), window, XCB_CW_BACK_PIXEL, &black);
    xcb_flush(connection());
}

void destroyWindow(std::uint32_t window) {
    xcb_destroy_window(connection(), window);
    xcb_flush(connection());
}

} // namespace mirelon
