// A plug-in's editor in a window of its own, kept alive as hosts do.
#pragma once

#include "hosting/effect.h"
#include "hosting/hostwindow.h"

#include <chrono>
#include <functional>
#include <string>

namespace mirelon::hosting {

// What a host gives an open editor: its idle command, a running GLib main loop,
// or both. Editors must live with any of them.
enum class Drive { hostIdle, glib, both };

// Open for as long as it exists. `effect` must outlive it.
class EditorWindow {
  public:
    // Throws PluginError when the effect has no editor or does not open it, and
    // DisplayError when there is no display.
    EditorWindow(Effect& effect, const std::string& title, WindowKind kind, Drive drive);
    ~EditorWindow();
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    // Serves window and editor until the user closes the window or `ended` says
    // so.
    void run(const std::function<bool()>& ended);
    void runFor(std::chrono::milliseconds time);

    Picture picture() const { return window.picture(); }

  private:
    struct Size {
        int width;
        int height;
    };
    static Size sizeOf(Effect& effect);

    Effect& effect;
    Drive drive;
    Size size;
    HostWindow window;
};

} // namespace mirelon::hosting
