// When the top line says what.
#include "editor/titletext.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

constexpr Subject slider{Subject::Part::parameter, 0};
constexpr Subject about{Subject::Part::about};

class TitleTextTest : public testing::Test {
  protected:
    TitleText::Time start = std::chrono::steady_clock::now();
    TitleText text;

    void advance(std::chrono::milliseconds time) { text.advance(start + time); }
};

TEST_F(TitleTextTest, SaysNothingAtFirst) {
    advance(1h);
    EXPECT_EQ(text.message(), nullptr);
    EXPECT_EQ(text.explained(), std::nullopt);
}

TEST_F(TitleTextTest, ExplainsWhatHasBeenPointedAtForHalfASecond) {
    text.pointAt(slider, start);
    advance(499ms);
    EXPECT_EQ(text.explained(), std::nullopt);
    text.pointAt(slider, start + 499ms);
    advance(500ms);
    EXPECT_EQ(text.explained(), slider);
}

TEST_F(TitleTextTest, BeginsAnewForSomethingElse) {
    text.pointAt(slider, start);
    advance(600ms);
    text.pointAt(about, start + 600ms);
    advance(601ms);
    EXPECT_EQ(text.explained(), std::nullopt);
    advance(1100ms);
    EXPECT_EQ(text.explained(), about);
}

TEST_F(TitleTextTest, TakesAMessageBackAfterFiveSeconds) {
    text.tell({"saved", false}, start);
    advance(0ms);
    ASSERT_NE(text.message(), nullptr);
    EXPECT_EQ(text.message()->text, "saved");
    advance(4999ms);
    EXPECT_NE(text.message(), nullptr);
    advance(5000ms);
    EXPECT_EQ(text.message(), nullptr);
}

TEST_F(TitleTextTest, DoesNotExplainWhatHasCausedTheMessage) {
    text.pointAt(slider, start);
    text.tell({"saved", false}, start + 100ms);
    advance(4s);
    EXPECT_NE(text.message(), nullptr);
    advance(10s);
    EXPECT_EQ(text.message(), nullptr);
    EXPECT_EQ(text.explained(), std::nullopt);
}

TEST_F(TitleTextTest, PrefersTheNextExplanationToAMessageForGood) {
    text.tell({"saved", false}, start);
    text.pointAt(slider, start + 100ms);
    advance(300ms);
    EXPECT_NE(text.message(), nullptr);
    advance(600ms);
    EXPECT_EQ(text.message(), nullptr);
    EXPECT_EQ(text.explained(), slider);
    text.pointAt(std::nullopt, start + 700ms);
    advance(701ms);
    EXPECT_EQ(text.message(), nullptr);
    EXPECT_EQ(text.explained(), std::nullopt);
}

TEST_F(TitleTextTest, ShowsALaterMessageInPlaceOfAnExplanation) {
    text.pointAt(slider, start);
    advance(600ms);
    text.tell({"saved", true}, start + 600ms);
    advance(600ms);
    EXPECT_EQ(text.explained(), std::nullopt);
    EXPECT_TRUE(text.message()->failed);
}

} // namespace
} // namespace mirelon::test
