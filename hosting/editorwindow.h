// A plug-in's editor in a window of its own, kept alive as hosts do.
#pragma once

#include "hosting/effect.h"
#include "hosting/hostwindow.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace mirelon::hosting {

// What a host gives an open editor: its idle command, a running GLib main loop,
// or both. Editors must live with any of them.
enum class Drive { hostIdle, glib, both };

// One iteration of the host's loop. Without an effect nobody gets an idle command.
void iterateHostLoop(Drive drive, const Effect* effect);

// Width and height of the editor; nothing when the effect has none or says
// nothing useful of it.
struct EditorSize {
    int width;
    int height;
};
std::optional<EditorSize> editorSize(const Effect& effect);

// `effect` must outlive it. One thread: the one that hosts all editors.
class EditorWindow {
  public:
    // The window has the editor's size, or a usual one where that is not known
    // yet. Throws PluginError when the effect has no editor, and DisplayError
    // when there is no display.
    EditorWindow(Effect& effect, const std::string& title, WindowKind kind, Drive drive);
    ~EditorWindow(); // closes the editor
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    // Shows the window and opens the editor in it, any number of times. The window
    // takes the size that the editor tells of then. Answers whether the effect says
    // that it did.
    bool open();
    void close();
    bool isOpen() const { return opened; }

    // Serves window and editor until the user closes the window or `ended` says
    // so.
    void run(const std::function<bool()>& ended);
    void runFor(std::chrono::milliseconds time);

    const HostWindow& window() const { return host; }
    HostWindow& window() { return host; }

  private:
    Effect& effect;
    Drive drive;
    HostWindow host;
    bool opened = false;
};

} // namespace mirelon::hosting
