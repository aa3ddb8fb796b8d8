// Who has the keys while the pointer or the input focus is in an editor's window.
#pragma once

#include <cstdint>
#include <functional>

namespace mirelon {

// The keys of one open window. A key that the window's frame does not use goes on
// to the window around it, as if this one had never asked for keys, so that the
// host's shortcuts work wherever the pointer is. A release goes the way of its
// press. What another program has sent here on purpose is not sent back.
//
// The editors' thread.
class WindowKeys final {
  public:
    // `lost` is called when another window takes the input focus from this one.
    WindowKeys(std::uint32_t window, std::function<void()> lost);
    // Gives the input focus back.
    ~WindowKeys();
    WindowKeys(const WindowKeys&) = delete;
    WindowKeys& operator=(const WindowKeys&) = delete;

    // The input focus, from whatever window has it, and back to that one if
    // nobody else has taken it meanwhile. Each does nothing the second time.
    void take();
    void giveBack();

  private:
    class Observer;

    bool hasFocus() const;
    void focusHasMoved();

    std::uint32_t window;
    std::function<void()> lost;
    bool taken = false;
    std::uint32_t previous = 0; // while taken
};

} // namespace mirelon
