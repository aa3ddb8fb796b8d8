#include "tests/support/windowdamage.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <algorithm>
#include <stdexcept>

namespace mirelon::test {

namespace {

using namespace std::chrono_literals;

// Pictures are further apart, and the parts of one closer together.
constexpr auto atOnce = 9ms;

} // namespace

WindowDamage::WindowDamage(const XWindow& host_)
    : host(host_) {
    int errorBase = 0;
    if (XDamageQueryExtension(host.connection(), &eventBase, &errorBase) == 0)
        throw std::runtime_error("the X server does not report damage");
    damage = XDamageCreate(host.connection(), host.children().at(0), XDamageReportRawRectangles);
    XSync(host.connection(), True); // of all that was drawn before, it tells at first
}

WindowDamage::~WindowDamage() {
    XDamageDestroy(host.connection(), damage);
}

void WindowDamage::look() {
    while (XPending(host.connection()) > 0) {
        XEvent event{};
        XNextEvent(host.connection(), &event);
        if (event.type != eventBase + XDamageNotify)
            continue;
        const XRectangle& drawn = reinterpret_cast<const XDamageNotifyEvent&>(event).area;
        const int under = drawn.y + drawn.height;
        first = area == 0 ? drawn.y : std::min(first, static_cast<int>(drawn.y));
        end = std::max(end, under);
        area += static_cast<long>(drawn.width) * drawn.height;
        const auto now = std::chrono::steady_clock::now();
        count += now - last > atOnce ? 1 : 0;
        last = now;
    }
}

} // namespace mirelon::test
