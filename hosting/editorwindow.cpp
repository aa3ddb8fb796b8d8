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
constexpr auto iterationInterval = 4ms;

constexpr EditorSize usualSize{400, 300};

EditorSize sizeOfWindow(const Effect& effect) {
    if (!effect.hasFlag(effFlagsHasEditor))
        throw PluginError("the plug-in has no editor");
    return editorSize(effect).value_or(usualSize);
}

HostWindow windowFor(const std::string& title, EditorSize size, WindowKind kind) {
    return {title, size.width, size.height, kind};
}

} // namespace

void iterateHostLoop(Drive drive, const Effect* effect) {
    if (drive != Drive::hostIdle)
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    if (drive != Drive::glib && effect != nullptr)
        effect->dispatch(effEditIdle);
}

std::optional<EditorSize> editorSize(const Effect& effect) {
    ERect* rect = nullptr;
    if (!effect.hasFlag(effFlagsHasEditor))
        return std::nullopt;
    effect.dispatch(effEditGetRect, 0, 0, &rect); // some answer 0 and give one
    if (rect == nullptr || rect->right <= rect->left || rect->bottom <= rect->top)
        return std::nullopt;
    return EditorSize{rect->right - rect->left, rect->bottom - rect->top};
}

EditorWindow::EditorWindow(Effect& effect, const std::string& title, WindowKind kind, Drive drive)
    : effect(effect)
    , drive(drive)
    , host(windowFor(title, sizeOfWindow(effect), kind)) {}

EditorWindow::~EditorWindow() {
    if (opened)
        close();
}

bool EditorWindow::open() {
    host.show();
    opened = true; // whatever it says: some open it and answer 0
    // Some editors take the host's connection from the value.
    const bool agreed =
        effect.dispatch(effEditOpen, 0, reinterpret_cast<VstIntPtr>(host.connection()),
                        host.asParent()) != 0;
    if (const auto size = editorSize(effect))
        host.resize(size->width, size->height);
    return agreed;
}

void EditorWindow::close() {
    effect.dispatch(effEditClose);
    opened = false;
}

void EditorWindow::run(const std::function<bool()>& ended) {
    auto nextIdle = Clock::now();
    while (host.serve() && !ended()) {
        const bool due = Clock::now() >= nextIdle;
        if (due)
            nextIdle = Clock::now() + idleInterval;
        iterateHostLoop(drive, due ? &effect : nullptr);
        std::this_thread::sleep_for(iterationInterval);
    }
}

void EditorWindow::runFor(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    run([end] { return Clock::now() >= end; });
}

} // namespace mirelon::hosting
