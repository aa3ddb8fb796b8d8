// The controls of the preset panel and where they stand in the window, in pixels
// at scale 1.
#pragma once

#include "platform/toolkit.h"
#include "resources/resources.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace mirelon::panel {

// By its tag a control says what it is for. A new one comes last. The gap is
// kept free.
enum Tag : std::int32_t {
    firstTag = 1000,
    nameTag = firstTag,
    rockerTag,
    loadBankTag,
    saveBankTag,
    loadPresetTag,
    savePresetTag,
    menuTag = 1012,
    defaultBankTag,
    defaultPresetTag,
    storeATag,
    storeBTag,
    recallATag,
    recallBTag,
    lastTag = recallBTag
};
constexpr bool isReserved(std::int32_t tag) {
    return tag > savePresetTag && tag < menuTag;
}

enum class Kind {
    nameField,
    presetMenu,
    rocker,            // sends -1 or +1
    saveLoadButton,    // sends 1, or 0.5 for a right click
    button,            // sends 1
    doubleClickButton, // sends 1, or 0.5 with the control key
};

struct Control {
    Tag tag;
    Kind kind;
    VSTGUI::CRect rect;
    PictureNumber picture;
};

// In drawing order: later ones lie above earlier ones. Field and menu show the
// part of the window's background that they cover. What is stored as a default
// is too dear for a single click.
inline constexpr auto controls = std::to_array<Control>({
    {nameTag, Kind::nameField, {91, 320, 201, 334}, kPictureBackground},
    {menuTag, Kind::presetMenu, {207, 319, 217, 333}, kPictureBackground},
    {rockerTag, Kind::rocker, {219, 319, 250, 333}, kPictureRocker},
    {loadBankTag, Kind::saveLoadButton, {71, 327, 83, 341}, kPictureSquareButton},
    {saveBankTag, Kind::saveLoadButton, {8, 327, 20, 341}, kPictureSquareButton},
    {defaultBankTag, Kind::doubleClickButton, {26, 329, 63, 339}, kPictureDefaultBank},
    {loadPresetTag, Kind::saveLoadButton, {71, 312, 83, 326}, kPictureSquareButton},
    {savePresetTag, Kind::saveLoadButton, {8, 312, 20, 326}, kPictureSquareButton},
    {defaultPresetTag, Kind::doubleClickButton, {22, 314, 69, 324}, kPictureDefaultPreset},
    {recallATag, Kind::button, {279, 312, 291, 326}, kPictureSquareButton},
    {storeATag, Kind::button, {254, 312, 266, 326}, kPictureSquareButton},
    {recallBTag, Kind::button, {279, 327, 291, 341}, kPictureSquareButton},
    {storeBTag, Kind::button, {254, 327, 266, 341}, kPictureSquareButton},
});

constexpr bool everyTagHasOneControl() {
    for (std::int32_t tag = firstTag; tag <= lastTag; ++tag)
        if (std::ranges::count(controls, tag, &Control::tag) != (isReserved(tag) ? 0 : 1))
            return false;
    return std::ranges::all_of(controls, [](const Control& control) {
        return control.tag >= firstTag && control.tag <= lastTag;
    });
}
static_assert(everyTagHasOneControl(), "each tag needs a control, each control a tag of its own");

} // namespace mirelon::panel
