// The plug-in in a new user's hands: installed into ~/.vst, loaded in Ardour,
// every control of its editor moved, the session saved and opened again.
#include "tests/editor/presetmenu.h"
#include "tests/hosts/ardourwindow.h"
#include "tests/hosts/presetnames.h"

#include <X11/keysym.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

constexpr SliderPlace widthSlider = sliderPlaces[0];
constexpr SliderPlace balanceSlider = sliderPlaces[2];
constexpr std::string_view firstName = "wide at the top 1";
constexpr std::string_view secondName = "narrow again 2";
// The preset that is chosen in the menu, and its balance.
constexpr int chosenPreset = 4;
constexpr double chosenBalance = 0.3;

class ArdourControls : public ArdourWindowTest {
  protected:
    ArdourControls()
        : ArdourWindowTest(MIRELON_PLUGIN_FILE) {}

    // What the editor shows; empty while its window is hidden.
    Pixels shown() const {
        const auto window = editor();
        Pixels pixels = window ? screen->pixels(*window) : Pixels{};
        return pixels.width == editorWidth && pixels.height == editorHeight ? pixels : Pixels{};
    }
    // The pixels around a control.
    Pixels around(Position at, int halfWidth, int halfHeight) const {
        const Pixels all = shown();
        return all.rgb.empty() ? all
                               : all.part(at.x - halfWidth, at.y - halfHeight, at.x + halfWidth,
                                          at.y + halfHeight);
    }
    Pixels name() const { return around(nameField, 50, 6); }
    // Everything between the top line, which says what has happened, and the preset
    // panel, whose buttons look different under the pointer.
    Pixels parameters() const {
        const Pixels all = shown();
        return all.rgb.empty() ? all : all.part(0, titleBottom, editorWidth, panelTop);
    }

    void click(Position at) const { screen->click(*editor(), at); }
    void doubleClick(Position at) const {
        screen->pointAt(*editor(), at);
        screen->doubleClick();
    }

    // Clicks until the name field shows another preset's name.
    void choose(Position at) const {
        const Pixels before = name();
        click(at);
        EXPECT_TRUE(eventually(seconds(10), [&] { return name() != before; }))
            << "no other preset at (" << at.x << ", " << at.y << ')';
    }

    void chooseInMenu(int preset) const {
        const Pixels closed = shown();
        click(menuButton);
        const auto open = atRest([&] { return shown(); },
                                 [&](const Pixels& now) {
                                     const auto [top, bottom] =
                                         changedRows(menuColumn(closed), menuColumn(now));
                                     return bottom - top > editorHeight / 3;
                                 });
        ASSERT_TRUE(open) << "the menu was not shown";
        choose(menuLine(preset, closed, *open));
    }

    void drag(const SliderPlace& slider, double from, double to) const {
        ASSERT_TRUE(eventually(seconds(10), [&] { return standsAt(slider, from); }))
            << slider.parameter;
        dragSlider(*screen, *editor(), slider, from, to);
        EXPECT_TRUE(eventually(seconds(10), [&] { return standsAt(slider, to); }))
            << slider.parameter;
    }

    void toggle(const SwitchPlace& place) const {
        const auto picture = [&] { return around(place.at, 10, 8); };
        const Pixels before = picture();
        click(place.at);
        EXPECT_TRUE(eventually(seconds(10), [&] { return picture() != before; }))
            << place.parameter;
    }

    void rename(std::string_view text) const {
        click(nameField);
        screen->key(XK_a, XK_Control_L);
        screen->type(text);
        screen->key(XK_Return);
    }

    // Ardour's own view of the saved session, in a new process.
    std::map<int, float> reloaded(const ArdourSession& saved) const {
        return ardour::parametersIn(
            ardour::runScript(home, "bounce.lua", {saved.path(), "1024", "after"}));
    }
};

TEST_F(ArdourControls, AreAllMovedSavedAndBackInANewProcess) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(eventually(seconds(20), [this] { return standsAt(widthSlider, 0.5); }));

    // Presets, one after another and from the menu.
    const Pixels init = name();
    choose(rockerRight);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(widthSlider, 0.625); }));
    choose(rockerLeft);
    EXPECT_TRUE(eventually(seconds(10), [&] { return name() == init; }));
    ASSERT_NO_FATAL_FAILURE(chooseInMenu(chosenPreset));
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(balanceSlider, chosenBalance); }));

    // Every parameter, then the preset's name.
    const std::map<VstInt32, double> sliders{{0, 0.75}, {1, 0.3}, {2, 0.6}, {3, 0.8}, {4, 0.2}};
    for (const SliderPlace& slider : sliderPlaces) {
        const bool balance = slider.parameter == balanceSlider.parameter;
        drag(slider, balance ? chosenBalance : 0.5, sliders.at(slider.parameter));
    }
    for (const SwitchPlace& place : switchPlaces)
        toggle(place);
    const std::map<VstInt32, float> switches{{5, 0.0F}, {6, 0.0F}, {7, 1.0F}, {8, 1.0F}};
    rename(firstName);

    // The memories: A keeps the preset, B one with another name and width.
    click(storeA);
    drag(widthSlider, 0.75, 0.25);
    const Pixels named = name();
    rename(secondName);
    click(storeB);
    click(recallA);
    EXPECT_TRUE(
        eventually(seconds(10), [&] { return standsAt(widthSlider, 0.75) && name() == named; }));
    choose(rockerRight);
    click(recallB);
    EXPECT_TRUE(eventually(seconds(10), [this] { return standsAt(widthSlider, 0.25); }));

    // What new instances start with, and the text about the plug-in.
    doubleClick(defaultBank);
    doubleClick(defaultPreset);
    const Pixels closed = parameters();
    const Pixels finalName = name();
    ASSERT_FALSE(closed.rgb.empty());
    click(aboutStrip);
    EXPECT_TRUE(eventually(seconds(10), [&] {
        const auto [top, bottom] = changedRows(closed, parameters());
        return bottom - top >= aboutHeight;
    })) << "the about text was not shown";
    click(aboutStrip);
    EXPECT_TRUE(eventually(seconds(10), [&] { return parameters() == closed; }));
    quit();

    const auto values = reloaded(session);
    ASSERT_EQ(values.size(), 9U);
    for (const auto& [parameter, value] : sliders)
        EXPECT_NEAR(values.at(parameter), parameter == 0 ? 0.25 : value, 0.01) << parameter;
    for (const auto& [parameter, value] : switches)
        EXPECT_EQ(values.at(parameter), value) << parameter;
    const auto names = presetNames(session.chunk());
    EXPECT_EQ(names[chosenPreset], firstName);
    EXPECT_EQ(names[chosenPreset + 1], secondName);
    EXPECT_EQ(names[0], "init");

    // The window shows it all again.
    ASSERT_NO_FATAL_FAILURE(launch());
    for (const SliderPlace& slider : sliderPlaces)
        EXPECT_TRUE(eventually(seconds(20), [&] {
            return standsAt(slider, slider.parameter == 0 ? 0.25 : sliders.at(slider.parameter));
        })) << slider.parameter;
    screen->pointAt(*editor(), nowhere);
    EXPECT_TRUE(
        eventually(seconds(10), [&] { return parameters() == closed && name() == finalName; }));
    quit();

    // A new instance of this user starts with the defaults that were stored.
    const ArdourSession other(home / "other/session");
    std::filesystem::create_directory(home / "other");
    ardour::runScript(home, "insert.lua", {other.path(), std::to_string(ArdourSession::rate)});
    const auto otherNames = presetNames(other.chunk());
    EXPECT_EQ(otherNames[0], secondName);
    EXPECT_EQ(otherNames[chosenPreset], firstName);
}

} // namespace
} // namespace mirelon::test
