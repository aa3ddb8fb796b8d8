// Where everything stands in the window: pixels at scale 1, from its top left
// corner.
#pragma once

#include "platform/toolkit.h"
#include "processor/core/displaytext.h"
#include "processor/core/parameters.h"
#include "resources/resources.h"

#include <array>

namespace mirelon::layout {

struct Rect {
    int left, top, right, bottom;
    operator VSTGUI::CRect() const { return VSTGUI::CRect(left, top, right, bottom); }
};
struct Point {
    int x, y;
    operator VSTGUI::CPoint() const { return VSTGUI::CPoint(x, y); }
};

using Converter = void (*)(float value, char* text) noexcept;

// A text field over the background picture. `back` is the point of that picture
// that shows at the field's corner; it lies a few pixels off the corner.
struct TextField {
    Rect rect;
    Point back;
};

struct Caption {
    TextField field;
    bool rightAligned;
    int text; // for parameterNameStringConvert
};
inline constexpr float captionMaximum = 10.0F;
inline constexpr std::array<Caption, 9> captions{{
    {{{2, 25, 42, 42}, {2, 28}}, true, 0},
    {{{258, 25, 298, 42}, {258, 28}}, false, 1},
    {{{2, 55, 42, 72}, {2, 60}}, true, 4},
    {{{2, 86, 42, 103}, {2, 91}}, true, 5},
    {{{2, 118, 42, 135}, {2, 123}}, true, 2},
    {{{258, 120, 298, 137}, {258, 123}}, false, 3},
    {{{2, 150, 42, 167}, {2, 155}}, true, 6},
    {{{2, 181, 42, 198}, {2, 187}}, true, 7},
    {{{2, 212, 42, 229}, {2, 219}}, true, 8},
}};

// A parameter's slider and the read-out of its value, by parameter.
struct SliderRow {
    int top;
    Point handleOffset;
    TextField readOut;
    float maximum; // of the read-out
    Converter converter;
};
inline constexpr std::array<SliderRow, 5> sliderRows{{
    {51, {0, 1}, {{258, 55, 322, 72}, {258, 60}}, 4.0F, percentStringConvert},
    {83, {0, 0}, {{258, 86, 322, 103}, {258, 91}}, 4.0F, dBStringConvert},
    {147, {0, 0}, {{258, 150, 322, 167}, {258, 155}}, 1.0F, panoramaStringConvert},
    {179, {0, 0}, {{258, 181, 322, 198}, {258, 187}}, 1.0F, panoramaStringConvert},
    {211, {0, 0}, {{258, 212, 322, 229}, {258, 219}}, 1.0F, panoramaStringConvert},
}};
inline constexpr int sliderLeft = 63;
inline constexpr int sliderRight = 239;
// The low end is at the left.
inline constexpr int sliderStyle = 16;

inline constexpr Point widthMeterAt{60, 25};
inline constexpr Point balanceMeterAt{60, 121};
inline constexpr int meterSegments = 182;

// The switches from left to right. The third takes its width from the picture
// of the second.
struct Switch {
    ParameterIndex parameter;
    PictureNumber picture;
    ParameterIndex widthFrom; // of whose picture
    int left;
};
inline constexpr int switchTop = 247;
inline constexpr std::array<Switch, 4> switches{{
    {kParamProcess, kPictureProcess, kParamProcess, 68},
    {kParamInvertL, kPictureInvertL, kParamInvertL, 122},
    {kParamInvertR, kPictureInvertR, kParamInvertL, 156},
    {kParamPhase, kPicturePhase, kParamPhase, 190},
}};

inline constexpr Rect aboutStrip{70, 282, 225, 302};
inline constexpr int aboutTag = 10;
// The about picture is centred in this area; its text starts at this point of it.
inline constexpr int aboutAreaWidth = 302;
inline constexpr int aboutAreaHeight = 311;
inline constexpr Point aboutTextOrigin{0, 8};

} // namespace mirelon::layout
