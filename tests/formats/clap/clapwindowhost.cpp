#include "tests/formats/clap/clapwindowhost.h"

#include "tests/editor/positions.h"

#include <algorithm>
#include <iterator>
#include <thread>

namespace mirelon::test {

using namespace std::chrono_literals;

ClapWindowHost::ClapWindowHost(hosting::ClapExtensions offered)
    : plugIn(offered) {
    VirtualDisplay::start();
    parent = std::make_unique<XWindow>(editorWidth, editorHeight);
}

ClapWindowHost::~ClapWindowHost() {
    close();
}

bool ClapWindowHost::open(double scale) {
    clap_window window{CLAP_WINDOW_API_X11, {}};
    window.x11 = parent->id();
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    return gui().create(plugin(), CLAP_WINDOW_API_X11, false) && gui().set_scale(plugin(), scale) &&
           gui().get_size(plugin(), &width, &height) && gui().set_parent(plugin(), &window) &&
           gui().show(plugin());
}

void ClapWindowHost::close() {
    gui().hide(plugin());
    gui().destroy(plugin());
}

void ClapWindowHost::play() {
    playing = plugIn.instance.activate(48000.0, 64);
}

void ClapWindowHost::turn() {
    plugIn.instance.serve();
    if (!playing)
        return;
    float silence[2][64] = {};
    float* const channels[] = {silence[0], silence[1]};
    const hosting::ClapInputEvents none;
    hosting::ClapOutputEvents events;
    plugIn.instance.process(channels, channels, 64, none.list(), events.list());
    told.insert(told.end(), events.told().begin(), events.told().end());
}

void ClapWindowHost::run(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
        turn();
        std::this_thread::sleep_for(4ms);
    } while (std::chrono::steady_clock::now() < end);
}

bool ClapWindowHost::runUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        run(4ms);
    }
    return true;
}

void ClapWindowHost::moveTo(int x, int y) {
    parent->moveTo(x, y);
    run();
}

void ClapWindowHost::click(int x, int y) {
    moveTo(x, y);
    parent->press();
    run();
    parent->release();
    run();
}

void ClapWindowHost::drag(int fromX, int toX, int y) {
    moveTo(fromX, y);
    parent->press();
    run();
    moveTo((fromX + toX) / 2, y);
    moveTo(toX, y);
    parent->release();
    run();
}

Pixels ClapWindowHost::pixels() {
    run();
    return parent->pixels();
}

std::vector<hosting::ClapTold> ClapWindowHost::toldOf(int parameter) const {
    std::vector<hosting::ClapTold> chosen;
    std::ranges::copy_if(told, std::back_inserter(chosen), [parameter](const auto& each) {
        return each.parameter == static_cast<clap_id>(parameter);
    });
    return chosen;
}

} // namespace mirelon::test
