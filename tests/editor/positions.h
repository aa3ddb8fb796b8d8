// Where a user finds the editor's controls: pixels at scale 1, from its top left
// corner. Measured on the window, not taken from the editor's own layout.
#pragma once

#include "shell/vst24.h"

namespace mirelon::test {

struct Position {
    int x;
    int y;
};

constexpr int editorWidth = 324;
constexpr int editorHeight = 348;

// The sliders' handle is 12 pixels wide and runs from 63 to 239; its sixth pixel
// counts as its middle.
constexpr int sliderLeft = 63;
constexpr int sliderRight = 239;
constexpr int handlePosition(double value) {
    return static_cast<int>(68.5 + 164 * value);
}

struct SliderPlace {
    VstInt32 parameter;
    int y;
};
constexpr SliderPlace sliderPlaces[] = {{0, 62}, {1, 94}, {2, 158}, {3, 190}, {4, 222}};

struct SwitchPlace {
    VstInt32 parameter;
    Position at;
};
constexpr SwitchPlace switchPlaces[] = {
    {5, {93, 257}}, {7, {137, 257}}, {8, {171, 257}}, {6, {215, 257}}};

// The top line: a right click opens a menu there, and on its right words appear.
constexpr Position title{60, 9};
constexpr int titleTextLeft = 82;
constexpr int titleTextRight = 320;
constexpr int titleHeight = 18;

// No control is here.
constexpr Position nowhere{150, 305};

// The letters between store and recall.
constexpr Position letterA{272, 319};
constexpr Position letterB{272, 334};

// Opens the picture about the plug-in, and closes it.
constexpr Position aboutStrip{150, 290};
constexpr int aboutHeight = 100; // at least

// The preset panel.
constexpr int panelTop = 305;
// Above it stands the line that says what has happened.
constexpr int titleBottom = 19;
constexpr Position nameField{146, 327};
constexpr Position menuButton{212, 326};
constexpr int menuButtonLeft = 207;
constexpr Position rockerLeft{226, 326};
constexpr Position rockerRight{243, 326};
constexpr Position savePreset{14, 319};
constexpr Position loadPreset{77, 319};
constexpr Position saveBank{14, 334};
constexpr Position loadBank{77, 334};
constexpr Position defaultPreset{45, 319};
constexpr Position defaultBank{45, 334};
constexpr Position storeA{260, 319};
constexpr Position storeB{260, 334};
constexpr Position recallA{285, 319};
constexpr Position recallB{285, 334};

} // namespace mirelon::test
