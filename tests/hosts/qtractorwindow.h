// Qtractor's window with a session open in it, for tests.
#pragma once

#include "tests/hosts/editorview.h"
#include "tests/hosts/jackserver.h"
#include "tests/hosts/qtractor.h"
#include "tests/hosts/screen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace mirelon::test {

class QtractorWindowTest : public ::testing::Test {
  protected:
    static constexpr SliderPlace balanceSlider = sliderPlaces[2];

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
    // As its window's close button does.
    void closeEditor();
    std::optional<Screen::WindowId> editor() const;
    // Where the handle of the balance slider stands, and whether it stands near
    // a value.
    std::optional<int> handle() const;
    bool standsAt(double value) const;
    // Saves as a user does.
    void save();
    // Leaves by the main window's close button; Qtractor has no key for it.
    void quit();

    HostHome home;
    std::filesystem::path session = home / "home/session.qtr";
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Program> host;
};

} // namespace mirelon::test
