// Where everything stands in the window: pixels at scale 1, from its top left
// corner. One table after another, so longer than other headers.
#pragma once

#include "platform/toolkit.h"
#include "processor/core/displaytext.h"
#include "processor/core/parameters.h"
#include "resources/resources.h"

#include <algorithm>
#include <array>

namespace mirelon::layout {

using VSTGUI::CPoint;
using VSTGUI::CRect;

using Converter = void (*)(float value, char* text) noexcept;

// A text field over the background picture. `back` is the point of that picture
// that shows at the field's corner; it lies a few pixels off the corner.
struct TextField {
    CRect rect;
    CPoint back;
};

struct Caption {
    TextField field;
    bool rightAligned;
    int text; // for parameterNameStringConvert
    // Whose slider it stands before; none of an end of a meter.
    ParameterIndex parameter = kNumParams;
};
inline constexpr float captionMaximum = 10.0F;
inline constexpr std::array<Caption, 9> captions{{
    {{{2, 25, 42, 42}, {2, 28}}, true, 0},
    {{{258, 25, 298, 42}, {258, 28}}, false, 1},
    {{{2, 55, 42, 72}, {2, 60}}, true, 4, kParamWidth},
    {{{2, 86, 42, 103}, {2, 91}}, true, 5, kParamGain},
    {{{2, 118, 42, 135}, {2, 123}}, true, 2},
    {{{258, 120, 298, 137}, {258, 123}}, false, 3},
    {{{2, 150, 42, 167}, {2, 155}}, true, 6, kParamBalance},
    {{{2, 181, 42, 198}, {2, 187}}, true, 7, kParamStability},
    {{{2, 212, 42, 229}, {2, 219}}, true, 8, kParamCenterPos},
}};

// --- The parameters, each in one row of one of two tables ---

// What a read-out shows of its parameter: the normalised value or that in the
// parameter's own unit, times a factor.
struct ReadOutText {
    bool inOwnUnit;
    float factor;
    float maximum;
    Converter converter;
};
inline constexpr ReadOutText percent{true, 2.0F, 4.0F, percentStringConvert};
inline constexpr ReadOutText decibels{true, 1.0F, 4.0F, dBStringConvert};
inline constexpr ReadOutText panorama{false, 1.0F, 1.0F, panoramaStringConvert};

// A slider and its read-out.
struct SliderRow {
    ParameterIndex parameter;
    int top;
    CPoint handleOffset;
    TextField readOut;
    ReadOutText text;
};
inline constexpr auto sliderRows = std::to_array<SliderRow>({
    {kParamWidth, 51, {0, 1}, {{258, 55, 322, 72}, {258, 60}}, percent},
    {kParamGain, 83, {0, 0}, {{258, 86, 322, 103}, {258, 91}}, decibels},
    {kParamBalance, 147, {0, 0}, {{258, 150, 322, 167}, {258, 155}}, panorama},
    {kParamStability, 179, {0, 0}, {{258, 181, 322, 198}, {258, 187}}, panorama},
    {kParamCenterPos, 211, {0, 0}, {{258, 212, 322, 229}, {258, 219}}, panorama},
});
inline constexpr int sliderLeft = 63;
inline constexpr int sliderRight = 239;
// The rows of the handle's picture that are not clear, and its rounding.
inline constexpr int handleTop = 2;
inline constexpr int handleBottom = 20;
inline constexpr double handleRadius = 2;
// The low end is at the left.
inline constexpr int sliderStyle = 16;

// The switches from left to right. The third is as wide as the picture of the
// second.
struct Switch {
    ParameterIndex parameter;
    PictureNumber picture;
    PictureNumber widthOf;
    int left;
};
inline constexpr auto switches = std::to_array<Switch>({
    {kParamProcess, kPictureProcess, kPictureProcess, 68},
    {kParamInvertL, kPictureInvertL, kPictureInvertL, 122},
    {kParamInvertR, kPictureInvertR, kPictureInvertL, 156},
    {kParamPhase, kPicturePhase, kPicturePhase, 190},
});
inline constexpr int switchTop = 247;
inline constexpr double switchRadius = 3;
inline constexpr double menuRadius = 2;
// All are half as high as this picture.
inline constexpr PictureNumber switchHeightOf = kPictureProcess;

// The row of a parameter; null where it has none.
constexpr const SliderRow* sliderOf(long parameter) {
    const auto* const row = std::ranges::find(sliderRows, parameter, &SliderRow::parameter);
    return row == sliderRows.end() ? nullptr : row;
}
constexpr const Switch* switchOf(long parameter) {
    const auto* const row = std::ranges::find(switches, parameter, &Switch::parameter);
    return row == switches.end() ? nullptr : row;
}

constexpr bool everyParameterHasOnePlace() {
    for (int parameter = 0; parameter < kNumParams; ++parameter) {
        const bool slides = parameterAt(parameter).kind == ParameterKind::continuous;
        if (std::ranges::count(sliderRows, parameter, &SliderRow::parameter) != (slides ? 1 : 0) ||
            std::ranges::count(switches, parameter, &Switch::parameter) != (slides ? 0 : 1))
            return false;
    }
    return true;
}
static_assert(everyParameterHasOnePlace(),
              "a continuous parameter needs one slider, any other one switch");

// --- The meters ---

enum class Reading { width, balance };
struct Meter {
    Reading reading;
    CPoint at;
    ParameterIndex above; // which slider it stands above, and is drawn before
};
inline constexpr auto meters = std::to_array<Meter>({
    {Reading::width, {60, 25}, kParamWidth},
    {Reading::balance, {60, 121}, kParamBalance},
});
// Counted, not looked up: with sanitizers gcc takes no pointer's truth for constant.
static_assert(std::ranges::all_of(meters, [](const Meter& meter) {
    return std::ranges::count(sliderRows, meter.above, &SliderRow::parameter) == 1;
}));
inline constexpr int meterSegments = 182;

inline constexpr CRect aboutStrip{70, 282, 225, 302};
// The drawn outline, which is smaller, and the rounding of its corners.
inline constexpr CRect aboutOutline{70, 283, 225, 299};
inline constexpr double aboutRadius = 8;
inline constexpr int aboutTag = 10;
static_assert(!isParameter(aboutTag), "a parameter's control has the parameter's index as tag");
// In the middle of this area the about picture is shown; its text starts at this
// point of it.
inline constexpr int aboutAreaWidth = 302;
inline constexpr int aboutAreaHeight = 311;
inline constexpr CPoint aboutTextOrigin{0, 8};

// --- The top line ---

inline constexpr CRect titleLine{0, 0, 324, 18};
// Right of the name: what is pointed at and what has happened is said here.
inline constexpr CRect titleText{82, 1, 320, 17};
// The line itself, and the menu that it opens.
inline constexpr int titleTag = 11;
inline constexpr int sizeMenuTag = 12;
static_assert(!isParameter(titleTag) && !isParameter(sizeMenuTag));

// --- The compare memories: their letters light up ---

struct MemoryLight {
    CRect rect;
    int picture; // of the strip
};
inline constexpr auto memoryLights = std::to_array<MemoryLight>({
    {{267, 312, 278, 326}, 0},
    {{267, 327, 278, 341}, 1},
});

} // namespace mirelon::layout
