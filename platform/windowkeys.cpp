#include "platform/windowkeys.h"

#include "platform/toolkitconnection.h"
#include "platform/toolkitx11.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace mirelon {

namespace {

constexpr std::uint8_t sentByAProgram = 0x80; // in the type of an event

xcb_window_t focusedWindow() {
    const ReplyPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
    return reply != nullptr ? reply->focus : xcb_window_t{XCB_NONE};
}

void setFocus(xcb_window_t window) {
    xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(connection());
}

// Goes further out from there to whatever window asks for keys.
void sendToParent(const xcb_key_press_event_t& key, std::uint32_t mask) {
    const ReplyPtr<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), key.event), nullptr));
    if (tree == nullptr || tree->parent == XCB_NONE)
        return;
    // An editor's window stands in its parent's corner: positions stay.
    xcb_key_press_event_t sent = key;
    sent.child = key.event;
    sent.event = tree->parent;
    xcb_send_event(connection(), 1, tree->parent, mask, reinterpret_cast<const char*>(&sent));
    xcb_flush(connection());
}

} // namespace

// Hears of the keys of all windows.
class WindowKeys::Observer final : public VSTGUI::X11::IKeyObserver {
  public:
    static Observer& instance() {
        // Never destroyed: the toolkit keeps hold of it.
        static auto* const observer = new Observer;
        return *observer;
    }

    void add(WindowKeys* keys) {
        VSTGUI::X11::keyObserver = this;
        windows.push_back(keys);
    }
    void remove(WindowKeys* keys) { std::erase(windows, keys); }

    void onKey(const xcb_key_press_event_t& event, bool used) override {
        const bool pressed = (event.response_type & ~sentByAProgram) == XCB_KEY_PRESS;
        bool& pressUsed = usedPresses.at(event.detail);
        const bool kept = used || (!pressed && pressUsed);
        pressUsed = pressed && used;
        if (!kept && (event.response_type & sentByAProgram) == 0)
            sendToParent(event, pressed ? XCB_EVENT_MASK_KEY_PRESS : XCB_EVENT_MASK_KEY_RELEASE);
    }

    void onFocus(const xcb_focus_in_event_t& event) override {
        const auto found = std::ranges::find(windows, event.event, &WindowKeys::window);
        if (found != windows.end())
            (*found)->focusHasMoved();
    }

  private:
    std::vector<WindowKeys*> windows;
    std::array<bool, 256> usedPresses{}; // by key code
};

WindowKeys::WindowKeys(std::uint32_t window_, std::function<void()> lost_)
    : window(window_)
    , lost(std::move(lost_)) {
    Observer::instance().add(this);
}

WindowKeys::~WindowKeys() {
    giveBack();
    Observer::instance().remove(this);
}

bool WindowKeys::hasFocus() const {
    return focusedWindow() == window;
}

void WindowKeys::take() {
    if (taken)
        return;
    taken = true;
    previous = focusedWindow();
    setFocus(window);
}

void WindowKeys::giveBack() {
    if (!std::exchange(taken, false) || !toolkitConnectionAlive())
        return;
    if (hasFocus() && previous != window)
        setFocus(previous);
}

void WindowKeys::focusHasMoved() {
    // Word of an earlier loss may come late, and of a grab which leaves us the focus.
    if (!taken || hasFocus())
        return;
    taken = false;
    const auto tell = lost; // this object may end meanwhile
    tell();
}

} // namespace mirelon
