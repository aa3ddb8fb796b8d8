// The plug-in in Qtractor, with its window.
#include "tests/hosts/gesture.h"
#include "tests/hosts/observations.h"
#include "tests/hosts/qtractorwindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using Kind = Observation::Kind;

constexpr double draggedTo = 0.7;

class QtractorWindow : public QtractorWindowTest {
  protected:
    QtractorWindow()
        : QtractorWindowTest(observer()) {}

    void SetUp() override {
        home.addEnvironment(observing(record));
        QtractorWindowTest::SetUp();
        qtractor::writeSession(qtractor::vst(home), session);
    }

    // Starts Qtractor with the session and waits until the plug-in plays.
    void start() {
        std::filesystem::remove(record);
        ASSERT_NO_FATAL_FAILURE(launch());
        ASSERT_TRUE(eventually(seconds(60), [this] { return !blocks(calls()).empty(); }))
            << contentsOf(home / "qtractor.log");
    }

    Observations calls() const { return observationsIn(record); }

    static Observations blocks(const Observations& all) {
        Observations blocks;
        std::copy_if(all.begin(), all.end(), std::back_inserter(blocks),
                     [](const Observation& call) { return call.kind == Kind::plays; });
        return blocks;
    }

    static Observations asked(VstInt32 opcode, const Observations& all) {
        Observations asked;
        std::copy_if(all.begin(), all.end(), std::back_inserter(asked),
                     [=](const Observation& call) { return call.is(Kind::asks, opcode); });
        return asked;
    }

    std::filesystem::path record = home / "observations";
};

TEST_F(QtractorWindow, PlaysBlockAfterBlockOnTheAudioThread) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(eventually(seconds(60), [this] { return blocks(calls()).size() >= 100; }));
    quit();
    const Observations all = calls();
    std::set<std::string> threads;
    for (const Observation& block : blocks(all)) {
        EXPECT_EQ(block.value, JackServer::blockFrames);
        threads.insert(block.thread);
    }
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains("main"));
    const Observations rates = asked(effSetSampleRate, all);
    ASSERT_FALSE(rates.empty());
    EXPECT_EQ(rates.back().opt, static_cast<float>(JackServer::rate));
    EXPECT_TRUE(all.back().is(Kind::asks, effClose));
}

TEST_F(QtractorWindow, DragOnASliderIsOneGestureAndIsBackAfterSavingAndReloading) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    const Observations opened = calls();
    const std::size_t before = opened.size();
    const std::string editorThread = asked(effEditOpen, opened).back().thread;
    EXPECT_EQ(editorThread, "main");
    dragSlider(*screen, *editor(), balanceSlider, 0.5, draggedTo);

    const float last = lastOfRisingGesture(
        finishedGestureOn(balanceSlider.parameter, record, before), editorThread);
    EXPECT_NEAR(last, draggedTo, 0.01);
    const auto shown = [this] { return standsAt(draggedTo); };
    EXPECT_TRUE(eventually(seconds(10), shown)) << "the handle did not follow";

    ASSERT_NO_FATAL_FAILURE(save());
    const auto saved = qtractor::parametersIn(session);
    ASSERT_EQ(saved.size(), 9U);
    EXPECT_NEAR(saved.at("balance"), last, 1e-5F);
    quit();
    const Observations first = calls();
    EXPECT_EQ(asked(effEditOpen, first).size(), asked(effEditClose, first).size());
    const Observations chunks = asked(effGetChunk, first);
    ASSERT_FALSE(chunks.empty());

    // In a new process the chunk comes first, then each parameter.
    ASSERT_NO_FATAL_FAILURE(start());
    const Observations second = calls();
    const auto loaded = std::find_if(second.begin(), second.end(), [](const Observation& call) {
        return call.is(Kind::asks, effSetChunk);
    });
    ASSERT_NE(loaded, second.end()) << "no chunk was given back";
    EXPECT_EQ(loaded->value, chunks.back().result);
    std::map<VstInt32, float> set;
    for (auto call = loaded; call != second.end(); ++call)
        if (call->kind == Kind::sets)
            set[call->index] = call->opt;
    EXPECT_EQ(set.size(), 9U);
    EXPECT_NEAR(set[balanceSlider.parameter], last, 1e-5F);
    ASSERT_NO_FATAL_FAILURE(openEditor());
    EXPECT_TRUE(eventually(seconds(10), shown)) << "the handle does not stand where it was left";
    quit();
}

TEST_F(QtractorWindow, TakesAnotherSizeAtOnceAndHasItWhenItIsOpenedAgain) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openEditor());
    ASSERT_NO_FATAL_FAILURE(changeSize());
    EXPECT_TRUE(comesToFillItsWindow());
    quit();
}

} // namespace
} // namespace mirelon::test
