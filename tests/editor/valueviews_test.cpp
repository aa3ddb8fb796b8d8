// What the window shows of the effect's values, without a display.
#include "editor/meterviews.h"
#include "editor/parameterviews.h"
#include "platform/toolkitconnection.h"

#include "tests/editor/standineffect.h"

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace VSTGUI;

namespace mirelon::test {
namespace {

struct Listener : IControlListener {
    void valueChanged(CControl* /*control*/) override { ++heard; }
    int heard = 0;
};

// Views in a frame that is on no screen.
class ValueViews : public testing::Test {
  protected:
    ValueViews() {
        setUpToolkit();
        frame = makeOwned<CFrame>(CRect(0, 0, 10, 10), nullptr);
        pictures.background();
        pictures.load();
    }

    template <typename View>
    std::vector<View*> all() const {
        std::vector<View*> found;
        frame->forEachChild([&](CView* view) {
            if (auto* wanted = dynamic_cast<View*>(view))
                found.push_back(wanted);
        });
        return found;
    }
    // The control that a user moves.
    CControl& control(int parameter) const {
        CControl* found = nullptr;
        for (CControl* candidate : all<CControl>())
            if (candidate->getTag() == parameter && candidate->getListener() == &listener)
                found = candidate;
        return *found;
    }

    WindowPictures pictures;
    mutable Listener listener;
    StandInEffect effect;
    SharedPointer<CFrame> frame;
};

class ParameterViewsTest : public ValueViews {
  protected:
    ParameterViewsTest() {
        for (const layout::SliderRow& row : layout::sliderRows)
            views.addSlider(row);
        for (const layout::Switch& row : layout::switches)
            views.addSwitch(row);
    }
    float readOut(std::size_t slider) const { return all<CParamDisplay>().at(slider)->getValue(); }

    ParameterViews views{*frame, listener, pictures, effect};
};

TEST_F(ParameterViewsTest, EveryParameterHasOneControlWithItsIndexAsTag) {
    std::map<int, int> tags;
    for (const CControl* control : all<CControl>())
        if (control->getListener() == &listener)
            ++tags[control->getTag()];
    EXPECT_EQ(tags, (std::map<int, int>{
                        {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 1}, {8, 1}}));
}

TEST_F(ParameterViewsTest, ShowsAParameterOnlyWhenAsked) {
    effect.normalised.fill(0.75F);
    views.show(3);
    EXPECT_EQ(control(3).getValue(), 0.75F);
    EXPECT_EQ(control(2).getValue(), 0.0F);
    EXPECT_EQ(listener.heard, 0);
}

TEST_F(ParameterViewsTest, ReadsOutTheWidthTwofoldTheGainAsItIsAndThePositionsNormalised) {
    effect.normalised.fill(0.25F);
    effect.inOwnUnit.fill(0.625F);
    for (long i = 0; i < 5; ++i)
        views.show(i);
    EXPECT_EQ(readOut(0), 1.25F);
    EXPECT_EQ(readOut(1), 0.625F);
    for (std::size_t i = 2; i < 5; ++i)
        EXPECT_EQ(readOut(i), 0.25F) << i;
}

TEST_F(ParameterViewsTest, ASwitchIsPressedFromOneHalfOn) {
    effect.normalised[6] = 0.5F;
    views.show(6);
    EXPECT_EQ(control(6).getValue(), 1.0F);
    effect.normalised[6] = 0.499F;
    views.show(6);
    EXPECT_EQ(control(6).getValue(), 0.0F);
}

TEST_F(ParameterViewsTest, AnyOtherIndexShowsNothing) {
    effect.normalised.fill(1.0F);
    for (const long index : {-1L, 9L, 1L << 32})
        views.show(index);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(control(i).getValue(), 0.0F) << i;
}

TEST_F(ParameterViewsTest, ASwitchOfTheThirdPlaceIsAsWideAsTheSecond) {
    EXPECT_EQ(control(8).getWidth(), control(7).getWidth());
    EXPECT_EQ(control(8).getHeight(), control(5).getHeight());
}

class MeterViewsTest : public ValueViews {
  protected:
    void addBoth() {
        for (const layout::Meter& meter : layout::meters)
            meters.add(*frame, pictures, meter);
    }
    float shown(std::size_t meter) const { return all<CVuMeter1>().at(meter)->getValue(); }

    MeterViews meters;
};

TEST_F(MeterViewsTest, ShowTheReadingsAroundTheirMiddle) {
    addBoth();
    EXPECT_EQ(shown(0), 0.5F);
    effect.width = -0.25F;
    effect.balance = 0.5F;
    meters.show(effect);
    EXPECT_EQ(shown(0), 0.25F);
    EXPECT_EQ(shown(1), 1.0F);
    meters.centre();
    EXPECT_EQ(shown(0), 0.5F);
    EXPECT_EQ(shown(1), 0.5F);
}

TEST_F(MeterViewsTest, DoNothingWithoutAWindow) {
    meters.show(effect);
    meters.centre();
    addBoth();
    meters.forget();
    effect.width = 0.25F;
    meters.show(effect);
    EXPECT_EQ(shown(0), 0.5F);
}

TEST(WindowPicturesTest, HoldWhatTheWindowShowsUntilReleased) {
    setUpToolkit();
    WindowPictures pictures;
    EXPECT_EQ(pictures[kPictureAbout], nullptr);
    pictures.load();
    for (const PictureNumber number :
         {kPictureSliderHandle, kPictureMark, kPictureMeterUnlit, kPictureMeterLit, kPictureProcess,
          kPicturePhase, kPictureInvertL, kPictureInvertR, kPictureAbout})
        EXPECT_EQ(pictures[number]->getWidth(), pictureSize(number).width) << number;
    EXPECT_EQ(pictures[kPictureRocker], nullptr);
    pictures.release();
    EXPECT_EQ(pictures[kPictureAbout], nullptr);
}

TEST(WindowPicturesTest, KeepTheBackgroundWhenTheRestIsReleased) {
    setUpToolkit();
    WindowPictures pictures;
    const SharedPointer<CBitmap> first = shared(pictures.background());
    pictures.release();
    EXPECT_EQ(pictures.background(), first.get());
}

} // namespace
} // namespace mirelon::test
