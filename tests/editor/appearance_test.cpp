// How the whole window looks, at every scale: as its reference pictures.
//
// With MIRELON_KEEP_PICTURES in the environment, a folder, nothing is compared: what is
// found is kept there as a reference. scripts/pictures window makes all of them so.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/support/fontsettings.h"
#include "tests/support/referencepictures.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <tuple>
#include <utility>
#include <vector>

using namespace mirelon::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// Where type is set; what is written in the drawings is no type any more.
constexpr auto captionsAndValues = std::to_array<TypeArea>({
    {2, 25, 42, 42},
    {258, 25, 298, 42},
    {2, 55, 42, 72},
    {2, 86, 42, 103},
    {2, 118, 42, 135},
    {258, 120, 298, 137},
    {2, 150, 42, 167},
    {2, 181, 42, 198},
    {2, 212, 42, 229},
    {258, 55, 322, 72},
    {258, 86, 322, 103},
    {258, 150, 322, 167},
    {258, 181, 322, 198},
    {258, 212, 322, 229},
    {92, 321, 200, 333}, // the name
});
// Above and below the drawing in the middle.
constexpr std::array<TypeArea, 2> aboutText{{{60, 106, 242, 157}, {60, 178, 242, 196}}};
constexpr std::array<TypeArea, 1> menuText{{{64, 124, 205, 342}}};

void showValues(EditorHost& editor) {
    constexpr std::array values{0.8F, 0.3F, 0.7F, 0.2F, 0.9F, 1.0F, 1.0F, 1.0F, 1.0F};
    for (std::size_t i = 0; i < values.size(); ++i)
        editor.effect->setParameter(static_cast<VstInt32>(i), values.at(i));
    editor.effect->setProgramName("off the middle");
}
// The last letters are selected: a caret would blink.
void selectLastLetters(EditorHost& editor) {
    editor.hold(XK_Shift_L);
    editor.key(XK_Left);
    editor.key(XK_Left);
    editor.letGo(XK_Shift_L);
    editor.moveTo(nowhere.x, nowhere.y);
}

struct Look {
    const char* name;
    void (*bringAbout)(EditorHost& editor);
    std::span<const TypeArea> moreType{};
};
constexpr auto looks = std::to_array<Look>({
    {"rest", [](EditorHost&) {}},
    {"values", &showValues},
    {"off", [](EditorHost& editor) { editor.effect->setParameter(5, 0.0F); }},
    {"ring", [](EditorHost& editor) { editor.key(XK_Tab); }},
    {"name",
     [](EditorHost& editor) {
         editor.click(nameField.x, nameField.y);
         editor.type("my own preset");
         selectLastLetters(editor);
     }},
    {"value",
     [](EditorHost& editor) {
         editor.doubleClick(270, sliderPlaces[1].y);
         editor.type("3 db");
         selectLastLetters(editor);
     }},
    {"about", [](EditorHost& editor) { editor.click(aboutStrip.x, aboutStrip.y); }, aboutText},
    {"menu", [](EditorHost& editor) { editor.click(menuButton.x, menuButton.y); }, menuText},
});

fs::path referenceOf(const char* look, const std::string& scale) {
    return fs::path(MIRELON_REFERENCES) / (std::string(look) + "-" + scale + ".png");
}

class Appearance : public testing::TestWithParam<std::tuple<const char*, Look>> {
  protected:
    Appearance() {
        pinFontSettings();
        VirtualDisplay::start();
        setenv("MIRELON_SCALE", scale.c_str(), 1);
        editor = std::make_unique<EditorHost>();
        editor->open();
        unsetenv("MIRELON_SCALE");
        editor->moveTo(nowhere.x, nowhere.y);
    }
    static void pinFontSettings() {
        static const TemporaryFolder folder;
        setenv("FONTCONFIG_FILE", writeFontSettings(folder.path).c_str(), 1);
    }
    // To look closely takes time: each picture that stands still is looked at once.
    bool comesToShow(const Pixels& reference) const {
        Pixels last;
        Pixels judged;
        return editor->runUntil([&] {
            Pixels now = editor->window->pixels();
            if (now == reference)
                return true;
            if (now != last || now == judged) {
                last = std::move(now);
                return false;
            }
            judged = now;
            return differencesBetween(now, reference, type, editor->scale).none();
        });
    }
    // What has stood still for a second.
    Pixels still() const {
        Pixels last = editor->window->pixels();
        auto since = std::chrono::steady_clock::now();
        editor->runUntil([&] {
            Pixels now = editor->window->pixels();
            if (now == last)
                return std::chrono::steady_clock::now() - since > 1s;
            last = std::move(now);
            since = std::chrono::steady_clock::now();
            return false;
        });
        return last;
    }
    void makeReference(const fs::path& folder) const {
        const Pixels atRest = still();
        look.bringAbout(*editor);
        ASSERT_TRUE(writePicture(still(), folder / referenceOf(look.name, scale).filename(),
                                 look.name == looks[0].name ? nullptr : &atRest));
    }
    std::string kept(const Pixels& reference) const {
        const Pixels found = editor->window->pixels();
        return keepDifferences(found, differencesBetween(found, reference, type, editor->scale),
                               MIRELON_FOUND_PICTURES, referenceOf(look.name, scale).stem());
    }

    const std::string scale = std::get<0>(GetParam());
    const Look look = std::get<1>(GetParam());
    const std::vector<TypeArea> type = [this] {
        std::vector<TypeArea> all(captionsAndValues.begin(), captionsAndValues.end());
        all.insert(all.end(), look.moreType.begin(), look.moreType.end());
        return all;
    }();
    std::unique_ptr<EditorHost> editor;
};
INSTANTIATE_TEST_SUITE_P(OfTheWindow, Appearance,
                         testing::Combine(testing::Values("1", "1.25", "1.5", "1.75", "2", "2.5",
                                                          "3"),
                                          testing::ValuesIn(looks)),
                         [](const auto& info) {
                             std::string name = std::string(std::get<1>(info.param).name) + "_" +
                                                std::get<0>(info.param);
                             std::ranges::replace(name, '.', '_');
                             return name;
                         });

void PrintTo(const Look& look, std::ostream* out) {
    *out << look.name;
}

TEST_P(Appearance, IsAsItsReference) {
    if (const auto* const folder = std::getenv("MIRELON_KEEP_PICTURES"))
        return makeReference(folder);
    look.bringAbout(*editor);
    const auto rest = readPicture(referenceOf(looks[0].name, scale));
    ASSERT_TRUE(rest) << "no reference " << referenceOf(looks[0].name, scale);
    const auto reference = readPicture(referenceOf(look.name, scale), &*rest);
    ASSERT_TRUE(reference) << "no reference " << referenceOf(look.name, scale);
    const Pixels shown = editor->window->pixels();
    ASSERT_EQ(shown.width, reference->width);
    ASSERT_EQ(shown.height, reference->height);
    EXPECT_TRUE(comesToShow(*reference)) << kept(*reference);
}

} // namespace
