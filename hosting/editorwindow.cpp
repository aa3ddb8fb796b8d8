#include "hosting/editorwindow.h"

#include "hosting/hostingerror.h"

#include <glib.h>
#include <thread>

namespace mirelon::hosting {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// As often as a slow host sends its idle command.
constexpr auto idleInterval = 40ms;
constexpr auto turnInterval = 4ms;

} // namespace

EditorWindow::Size EditorWindow::sizeOf(Effect& effect) {
    ERect* rect = nullptr;
    if (!effect.hasFlag(effFlagsHasEditor) || effect.dispatch(effEditGetRect, 0, 0, &rect) == 0 ||
        rect == nullptr || rect->right <= rect->left || rect->bottom <= rect->top)
        throw PluginError("the plug-in has no editor");
    return {rect->right - rect->left, rect->bottom - rect->top};
}

EditorWindow::EditorWindow(Effect& effect, const std::string& title, WindowKind kind, Drive drive)
    : effect(effect)
    , drive(drive)
    , size(sizeOf(effect))
    , window(title, size.width, size.height, kind) {
    window.show();
    if (effect.dispatch(effEditOpen, 0, 0, window.asParent()) == 0)
        throw PluginError("the plug-in did not open its editor");
}

EditorWindow::~EditorWindow() {
    effect.dispatch(effEditClose);
}

void EditorWindow::run(const std::function<bool()>& ended) {
    auto nextIdle = Clock::now();
    while (window.serve() && !ended()) {
        if (drive != Drive::hostIdle)
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
        if (drive != Drive::glib && Clock::now() >= nextIdle) {
            effect.dispatch(effEditIdle);
            nextIdle = Clock::now() + idleInterval;
        }
        std::this_thread::sleep_for(turnInterval);
    }
}

void EditorWindow::runFor(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    run([end] { return Clock::now() >= end; });
}

} // namespace mirelon::hosting
