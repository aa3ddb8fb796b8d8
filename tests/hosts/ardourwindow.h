// Ardour's window with a session open in it, for tests.
#pragma once

#include "tests/hosts/ardour.h"
#include "tests/hosts/ardoursession.h"
#include "tests/hosts/editorview.h"
#include "tests/hosts/screen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace mirelon::test {

class ArdourWindowTest : public ::testing::Test {
  protected:
    static constexpr auto pluginTitle = "stereo: Dravik Mirelon";
    static constexpr auto mainTitle = "session - Ardour";

    // `plugin` is what the user has installed.
    explicit ArdourWindowTest(const std::filesystem::path& plugin)
        : home(plugin) {}

    // Makes a session with the plug-in on its track.
    void SetUp() override;
    // What is particular to the plug-in's format: it is put on the track, and
    // the session's name of its type; the editor's size in Ardour's
    // window, chosen at so many percent.
    virtual void insertPlugin();
    virtual std::string pluginType() const { return "lxvst"; }
    virtual std::string shownSize(int percent) const { return editorSize(percent); }
    // Starts Ardour for the first time, the plug-in's window open.
    void start();
    // Starts Ardour with the session as it is, and waits for the plug-in's window.
    void launch();
    // The editor's own window in the host's; none while it is hidden.
    std::optional<Screen::WindowId> editor() const { return editorAt(percent); }
    std::optional<Screen::WindowId> editorAt(int shownPercent) const;
    // Where a slider's handle stands, and whether it stands near a value.
    std::optional<int> handle(const SliderPlace& slider) const;
    bool standsAt(const SliderPlace& slider, double value) const;
    void showMixer(Screen::WindowId main);
    // Hides the plug-in's window, and shows it with a double click on the
    // plug-in's name in the mixer; false when that does not come about.
    bool hideEditor() const;
    bool showEditor();
    // Both of them so many times; what is shown is the editor each time.
    void hideAndShowEditor(int times);
    // Chooses 150 % and 100 % in the editor's menu; what is shown is the whole
    // editor in that size, at once and, the larger one, when it is shown again.
    void changeSize();
    // The transport's key in the main window.
    void pressSpace();
    // Fails the running test unless the slider is beyond this value before long.
    void expectToRise(const SliderPlace& slider, double value) const;
    // Saves and leaves as a user does.
    void quit();

    HostHome home;
    ArdourSession session{home / "session"};
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
    int percent = 100; // the editor's size

  private:
    std::size_t line = 0; // where in the track's strip the name has been found
};

} // namespace mirelon::test
