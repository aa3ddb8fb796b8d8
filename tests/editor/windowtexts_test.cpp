// What the window says while nobody touches it: every text where it belongs, as the
// toolkit sets it in the font, the colour and the alignment that belong to it.
#include "tests/editor/offscreendrawing.h"
#include "tests/editor/openeditor.h"

#include "presetsystem/bitmaps.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace mirelon::test {
namespace {

using VSTGUI::CColor;
using VSTGUI::CPoint;
using VSTGUI::CRect;

std::uint32_t rgb(const CColor& colour) {
    return static_cast<std::uint32_t>(colour.red << 16U | colour.green << 8U | colour.blue);
}

std::vector<std::uint32_t> coloursOf(VSTGUI::CBitmap& bitmap) {
    const auto pixels = owned(VSTGUI::CBitmapPixelAccess::create(&bitmap));
    std::vector<std::uint32_t> all;
    CColor colour;
    do {
        pixels->getColor(colour);
        all.push_back(rgb(colour));
    } while (++*pixels);
    return all;
}

struct Place {
    CRect rect;
    CPoint back; // the point of the background picture that shows at its corner
    bool rightAligned;
};

class WindowTexts : public OpenEditor {
  protected:
    // The text at its place, black on the background picture.
    std::vector<std::uint32_t> pictureOf(const Place& place, const std::string& text) const {
        const CRect area(CPoint(0, 0), place.rect.getSize());
        const auto label = VSTGUI::makeOwned<VSTGUI::CTextLabel>(area, text.c_str(), background,
                                                                 VSTGUI::CParamDisplay::kNoFrame);
        label->setBackOffset(place.back);
        label->setFont(VSTGUI::kNormalFontSmall);
        label->setFontColor(VSTGUI::kBlackCColor);
        label->setHoriAlign(place.rightAligned ? VSTGUI::kRightText : VSTGUI::kLeftText);
        std::vector<std::uint32_t> colours;
        for (const CColor& colour : drawn(*label))
            colours.push_back(rgb(colour));
        return colours;
    }
    Pixels shown(const CRect& rect) const {
        return window->pixels().part(static_cast<int>(rect.left), static_cast<int>(rect.top),
                                     static_cast<int>(rect.right), static_cast<int>(rect.bottom));
    }
    // Whether the text comes to stand there.
    bool comesToSay(const Place& place, const std::string& text) const {
        const auto expected = pictureOf(place, text);
        return pumpUntilShown([&] { return shown(place.rect).rgb == expected; });
    }
    static bool pumpUntilShown(const std::function<bool()>& reached) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!reached()) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            RunLoop::instance().pump();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

    const VSTGUI::SharedPointer<VSTGUI::CBitmap> background = loadBitmap(kPictureBackground);
};

TEST_F(WindowTexts, CaptionsNameWhatStandsBesideThem) {
    const std::pair<Place, const char*> captions[] = {
        {{{2, 25, 42, 42}, {2, 28}, true}, "S"},
        {{{258, 25, 298, 42}, {258, 28}, false}, "M"},
        {{{2, 55, 42, 72}, {2, 60}, true}, "width"},
        {{{2, 86, 42, 103}, {2, 91}, true}, "gain"},
        {{{2, 118, 42, 135}, {2, 123}, true}, "L"},
        {{{258, 120, 298, 137}, {258, 123}, false}, "R"},
        {{{2, 150, 42, 167}, {2, 155}, true}, "balan"},
        {{{2, 181, 42, 198}, {2, 187}, true}, "stabil"},
        {{{2, 212, 42, 229}, {2, 219}, true}, "center"},
    };
    for (const auto& [place, text] : captions)
        EXPECT_TRUE(comesToSay(place, text)) << text;
}

struct ReadOut {
    VstInt32 parameter;
    Place place;
    std::array<const char*, 4> texts; // at 0, at 1, in the middle, one quarter up
};

TEST_F(WindowTexts, ReadOutsSayTheValueInItsUnit) {
    const ReadOut readOuts[] = {
        {0, {{258, 55, 322, 72}, {258, 60}, false}, {"0%", "400%", "100%", "25%"}},
        {1, {{258, 86, 322, 103}, {258, 91}, false}, {"-12 dB", "12 dB", "0 dB", "-6 dB"}},
        {2, {{258, 150, 322, 167}, {258, 155}, false}, {"R50", "L50", "C", "R25"}},
        {3, {{258, 181, 322, 198}, {258, 187}, false}, {"R50", "L50", "C", "R25"}},
        {4, {{258, 212, 322, 229}, {258, 219}, false}, {"R50", "L50", "C", "R25"}},
    };
    constexpr std::array values{0.0F, 1.0F, 0.5F, 0.25F};
    for (const ReadOut& readOut : readOuts) {
        EXPECT_TRUE(comesToSay(readOut.place, readOut.texts[2])) << "at first";
        for (std::size_t i = 0; i < values.size(); ++i) {
            effect->setParameter(readOut.parameter, values[i]);
            EXPECT_TRUE(comesToSay(readOut.place, readOut.texts[i]))
                << readOut.parameter << " at " << values[i];
        }
    }
}

// Of a picture of the field: the columns without ink at either side, and how far its
// colours are from the pure mixtures of field and ink.
struct Setting {
    int left = 0;
    int right = 0;
    int colourError = 0;
};

TEST_F(WindowTexts, TheNameStandsInTheMiddleOfItsFieldInItsColours) {
    constexpr CRect field(92, 321, 200, 333);
    constexpr std::array<int, 3> fieldColour{189, 207, 218};
    constexpr std::array<int, 3> inkColour{36, 36, 32};
    std::string name = "mmmmmmmm";
    dispatch(effSetProgramName, 0, name.data());
    Setting setting;
    const auto look = [&] {
        const Pixels picture = shown(field);
        setting = {picture.width, picture.width, 0};
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x) {
                const std::uint32_t pixel = picture.at(x, y);
                const std::array<int, 3> colour{static_cast<int>(pixel >> 16U & 0xFFU),
                                                static_cast<int>(pixel >> 8U & 0xFFU),
                                                static_cast<int>(pixel & 0xFFU)};
                const double ink = static_cast<double>(fieldColour[0] - colour[0]) /
                                   (fieldColour[0] - inkColour[0]);
                for (std::size_t c = 0; c < 3; ++c) {
                    const double mixed = fieldColour[c] + ink * (inkColour[c] - fieldColour[c]);
                    setting.colourError = std::max(setting.colourError,
                                                   static_cast<int>(std::fabs(mixed - colour[c])));
                }
                if (ink > 0.3) {
                    setting.left = std::min(setting.left, x);
                    setting.right = std::min(setting.right, picture.width - 1 - x);
                }
            }
        return setting.colourError <= 3 && setting.left < picture.width / 2 &&
               std::abs(setting.left - setting.right) <= 2;
    };
    EXPECT_TRUE(pumpUntilShown(look)) << setting.left << " columns at the left, " << setting.right
                                      << " at the right, colours off by " << setting.colourError;
    EXPECT_GT(setting.left, 10);
}

// The picture in the middle of the window's upper part, and four lines in two fonts
// and colours around its middle.
TEST_F(WindowTexts, TheAboutPictureSaysWhatThisIsAndWhoMadeIt) {
    constexpr CColor darkBlue(45, 45, 120, 255);
    constexpr CColor darkGrey(60, 60, 60, 255);
    const auto picture = loadBitmap(kPictureAbout);
    const CPoint size(picture->getWidth(), picture->getHeight());
    const CRect place(CPoint((302 - size.x) / 2, (311 - size.y) / 2), size);

    // On the background, as far as the picture is not opaque.
    const auto context = VSTGUI::COffscreenContext::create(size);
    context->beginDraw();
    const CRect area(CPoint(0, 0), size);
    background->draw(context, area, place.getTopLeft());
    picture->draw(context, area);
    const auto write = [&](const char* text, double top, const VSTGUI::CFontRef font,
                           const CColor& colour) {
        context->setFont(font);
        context->setFontColor(colour);
        context->drawString(text, CRect(0, top, size.x, top + 15), VSTGUI::kCenterText, true);
    };
    write("Dravik Mirelon   v.1.9.8", 8, VSTGUI::kNormalFontSmaller, darkBlue);
    write("made by Dravik", 25, VSTGUI::kNormalFontSmaller, darkBlue);
    write("dravik.example", 42, VSTGUI::kNormalFontSmaller, darkBlue);
    write("VST PlugIn Technology by Steinberg", 79, VSTGUI::kNormalFontVerySmall, darkGrey);
    context->endDraw();
    const auto expected = coloursOf(*context->getBitmap());

    window->moveTo(150, 290);
    window->press();
    window->release();
    EXPECT_TRUE(pumpUntilShown([&] { return shown(place).rgb == expected; }));
}

} // namespace
} // namespace mirelon::test
