// What the window says of its parts: which part stands where, the value in the
// text, and that it can be read.
#include "editor/explanations.h"
#include "editor/titleline.h"
#include "platform/toolkitconnection.h"
#include "presetsystem/bitmaps.h"
#include "resources/resources.h"

#include "tests/editor/offscreendrawing.h"
#include "tests/editor/standineffect.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using namespace VSTGUI;

namespace mirelon::test {
namespace {

using Part = Subject::Part;

TEST(Subjects, StandWhereTheirControlsDo) {
    EXPECT_EQ(subjectAt({150, 62}), (Subject{Part::parameter, kParamWidth}));
    EXPECT_EQ(subjectAt({270, 222}), (Subject{Part::readOut, kParamCenterPos}));
    EXPECT_EQ(subjectAt({171, 257}), (Subject{Part::parameter, kParamInvertR}));
    EXPECT_EQ(subjectAt({100, 30}), (Subject{Part::meter, 0}));
    EXPECT_EQ(subjectAt({100, 130}), (Subject{Part::meter, 1}));
    EXPECT_EQ(subjectAt({77, 334}), (Subject{Part::panelControl, panel::loadBankTag}));
    EXPECT_EQ(subjectAt({272, 319}), (Subject{Part::memoryLetter}));
    EXPECT_EQ(subjectAt({100, 290}), (Subject{Part::about}));
    EXPECT_EQ(subjectAt({100, 9}), (Subject{Part::title}));
    EXPECT_EQ(subjectAt({150, 305}), std::nullopt);
    EXPECT_EQ(subjectAt({-1, 9}), std::nullopt);
}

TEST(Explanations, HoldTheValueOfTheMoment) {
    StandInEffect effect;
    effect.inOwnUnit[kParamWidth] = 1.0F;
    EXPECT_EQ(explanationOf({Part::parameter, kParamWidth}, effect).substr(0, 5), "200%:");
    effect.normalised[kParamProcess] = 1.0F;
    EXPECT_EQ(explanationOf({Part::parameter, kParamProcess}, effect).substr(0, 3), "on:");
    effect.normalised[kParamProcess] = 0.0F;
    EXPECT_EQ(explanationOf({Part::parameter, kParamProcess}, effect).substr(0, 4), "off:");
    effect.balance = 0.25F;
    EXPECT_EQ(explanationOf({Part::meter, 1}, effect), "output: right over left +6 dB");
    effect.width = -0.5F;
    EXPECT_EQ(explanationOf({Part::meter, 0}, effect), "output: mid over side -12 dB");
}

TEST(Explanations, HoldTheWholeNameOfThePreset) {
    StandInEffect effect;
    effect.presets[0].setName("a name as long as can be");
    EXPECT_EQ(explanationOf({Part::panelControl, panel::nameTag}, effect),
              "a name as long as can be: click, type, Return");
}

std::vector<Subject> allSubjects() {
    std::vector<Subject> all{{Part::about}, {Part::title}, {Part::memoryLetter}};
    for (int parameter = 0; parameter < kNumParams; ++parameter)
        all.push_back({Part::parameter, parameter});
    for (const layout::SliderRow& row : layout::sliderRows)
        all.push_back({Part::readOut, row.parameter});
    for (const layout::Meter& meter : layout::meters)
        all.push_back({Part::meter, static_cast<int>(meter.reading)});
    for (const panel::Control& control : panel::controls)
        all.push_back({Part::panelControl, control.tag});
    return all;
}

TEST(Explanations, FitIntoTheLineWithTheirLongestValues) {
    setUpToolkit();
    const CRect line(0, 0, 238, 16);
    EXPECT_EQ(line.getWidth(), layout::titleText.getWidth());
    const auto context = COffscreenContext::create(line.getSize());
    context->setFont(kNormalFontVerySmall);
    for (const float value : {0.0F, 0.2F, 0.49F, 0.9F, 1.0F}) {
        StandInEffect effect;
        effect.normalised.fill(value);
        effect.inOwnUnit.fill(2.0F * value);
        effect.width = effect.balance = value - 0.5F;
        effect.presets[0].setName("a name as long as can be");
        for (const Subject& subject : allSubjects()) {
            const std::string text = explanationOf(subject, effect);
            EXPECT_FALSE(text.empty());
            EXPECT_LE(context->getStringWidth(UTF8String(text)), line.getWidth() - 4) << text;
        }
    }
}

// As the web's accessibility guidelines compute it.
double luminance(const CColor& colour) {
    const auto linear = [](uint8_t component) {
        const double c = component / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
           0.0722 * linear(colour.blue);
}
double contrast(const CColor& a, const CColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(TitleLineColours, StandOutFromTheStripAsTheBackgroundHasIt) {
    setUpToolkit();
    const auto picture = loadBitmap(kPictureBackground);
    const auto context = COffscreenContext::create(picture->getSize());
    context->beginDraw();
    picture->draw(context, CRect(CPoint(), picture->getSize()));
    context->endDraw();
    const auto pixels = owned(CBitmapPixelAccess::create(context->getBitmap()));
    CColor strip;
    ASSERT_TRUE(pixels->setPosition(100, 2));
    pixels->getColor(strip);
    EXPECT_EQ(strip, titleStripColor);
    for (const TextKind kind : {TextKind::explanation, TextKind::success, TextKind::failure})
        EXPECT_GE(contrast(textColor(kind), strip), 4.5) << static_cast<int>(kind);
}

} // namespace
} // namespace mirelon::test
