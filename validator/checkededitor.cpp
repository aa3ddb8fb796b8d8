#include "validator/checkededitor.h"

#include "hosting/hostingerror.h"
#include "validator/check.h"
#include "validator/xerrors.h"

#include <X11/Xlib.h>
#include <thread>

namespace mirelon::validator {

using namespace std::chrono_literals;

CheckedEditor::CheckedEditor(hosting::Effect& effect_)
    : effect(effect_) {
    XInitThreads();
    noteXErrors();
    try {
        editor = std::make_unique<hosting::EditorWindow>(
            effect, effect.name(), hosting::WindowKind::ordinary, hosting::Drive::hostIdle);
    } catch (const hosting::PluginError&) {
        throw Skipped("has no editor");
    } catch (const hosting::DisplayError&) {
        throw Skipped("there is no X display");
    }
}

// An editor may make and take away its window within the next idles.
bool CheckedEditor::waitForChildren(bool some) {
    for (int i = 0; i < 100; ++i) {
        if (!editor->window().children().empty() == some)
            return true;
        if (editor->isOpen())
            effect.dispatch(effEditIdle);
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

void CheckedEditor::open() {
    doing("opening the editor");
    editor->open(); // the answer says little: what counts is the window
    require(hosting::editorSize(effect).has_value(), "gives no rectangle for its open editor");
    require(waitForChildren(true), "opens no window in the host's");
}

void CheckedEditor::close() {
    doing("closing the editor");
    editor->close();
    require(waitForChildren(false), "leaves its window behind when it is closed");
}

void CheckedEditor::idle(std::chrono::milliseconds time) {
    doing("sending the editor its idle command");
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        effect.dispatch(effEditIdle);
        std::this_thread::sleep_for(5ms);
    }
}

} // namespace mirelon::validator
