// Qtractor's window with a session open in it, for tests.
#pragma once

#include "tests/hosts/editorview.h"
#include "tests/hosts/jackserver.h"
#include "tests/hosts/qtractor.h"
#include "tests/hosts/screen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace mirelon::test {

class QtractorWindowTest : public ::testing::Test {
  protected:
    static constexpr SliderPlace balanceSlider = sliderPlaces[2];
    // Buttons of the main window.
    static constexpr Position undo{144, 38};
    static constexpr Position toTheStart{29, 77};

    // `plugin` is what the user has installed.
    explicit QtractorWindowTest(const std::filesystem::path& plugin)
        : home(plugin) {}

    // A JACK server and a screen; the session is still to be written.
    void SetUp() override;
    // Starts Qtractor with the session and waits for its main window.
    void launch();
    // Shows the mixer and, by a double click on the plug-in's name in the master
    // bus's strip, the editor.
    void openEditor();
    // The same in the list of tracks, where the plug-in stands on a track.
    void openEditorOfTrack();
    // Clicks on the host's switch of the plug-in on a track.
    void switchPluginOfTrack();
    // As its window's close button does.
    void closeEditor();
    std::optional<Screen::WindowId> editor() const { return editorAt(percent); }
    std::optional<Screen::WindowId> editorAt(int shownPercent) const;
    // Chooses 150 % and 100 % in the editor's menu; what is shown is the whole
    // editor in that size, at once and, the larger one, when it is opened again.
    void changeSize();
    // Whether the host's window comes to be as large as the editor.
    bool comesToFillItsWindow() const;
    // Where the handle of the balance slider stands, and whether it stands near
    // a value.
    std::optional<int> handle() const;
    bool standsAt(double value) const;
    // The third preset is "balanse to the left", which puts the slider to 0.7.
    void chooseTheThirdPreset();
    // The window's panel with the preset's name, below the meters.
    Pixels presetPanel() const;
    // A click or a key for the main window; the editor, if it is open, is on top
    // afterwards.
    void clickMain(Position at);
    void press(unsigned long keysym, unsigned long modifier = 0);
    // Starts the transport; `plays` is what shows that it runs.
    void startTransport(const std::function<bool()>& plays);
    // The host knows of something that is not saved.
    bool countsAsChanged() const;
    // Saves as a user does.
    void save();
    // Leaves by the main window's close button, for which Qtractor has no key; what
    // is not saved yet is saved.
    void quit();

    HostHome home;
    std::filesystem::path session = home / "home/session.qtr";
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
    int percent = 100; // the editor's size

  private:
    void raiseEditor();
    void openEditorAt(const std::string& title, const Position& entry);
};

} // namespace mirelon::test
