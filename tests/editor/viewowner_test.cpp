// The toolkit's views belong to the thread that has opened them: whatever another
// thread does to the effect leaves every one as it is, until that thread's next idle.
#include "tests/editor/openeditor.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace mirelon::test {
namespace {

// What one view holds.
struct ViewState {
    std::int32_t tag = 0;
    float value = 0.0F;
    bool dirty = false;
    std::vector<std::string> texts; // its own, and a menu's entries

    bool operator==(const ViewState&) const = default;
};

void PrintTo(const ViewState& state, std::ostream* out) {
    *out << "control " << state.tag << ": " << state.value << (state.dirty ? ", dirty" : "");
    for (const std::string& text : state.texts)
        *out << ", \"" << text << '"';
}

ViewState stateOf(const VSTGUI::CControl& control) {
    ViewState state{control.getTag(), control.getValue(), control.isDirty(), {}};
    if (const auto* label = dynamic_cast<const VSTGUI::CTextLabel*>(&control))
        state.texts.push_back(label->getText().getString());
    if (const auto* menu = dynamic_cast<const VSTGUI::COptionMenu*>(&control))
        for (int i = 0; i < menu->getNbEntries(); ++i)
            state.texts.push_back(menu->getEntry(i)->getTitle().getString());
    return state;
}

class EditorViews : public OpenEditor {
  protected:
    EditorViews() { settle(); }

    std::vector<ViewState> views() const {
        std::vector<ViewState> all;
        for (const VSTGUI::CControl* control : controls())
            all.push_back(stateOf(*control));
        return all;
    }
    // Serves the loop until nothing waits to be drawn.
    void settle() {
        EXPECT_TRUE(pumpUntil([&] {
            const auto all = views();
            return std::ranges::none_of(all, &ViewState::dirty);
        }));
    }
    // Does the work on another thread and looks at the views before this one's next
    // turn; then takes that turn. Answers whether it has changed them.
    template <typename Work>
    bool untouchedUntilIdle(Work work) {
        const auto before = views();
        std::thread(work).join();
        EXPECT_EQ(views(), before) << "another thread has touched the views";
        return pumpUntil([&] { return views() != before; });
    }
};

TEST_F(EditorViews, AreLeftAloneByParametersSetElsewhere) {
    for (VstInt32 parameter = 0; parameter < kNumParams; ++parameter)
        EXPECT_TRUE(untouchedUntilIdle([&] {
            effect->setParameter(parameter, parameter == kParamProcess ? 0.0F : 1.0F);
        })) << parameter;
}

TEST_F(EditorViews, AreLeftAloneByNamesAndBanksGivenElsewhere) {
    std::string name = "mine";
    EXPECT_TRUE(untouchedUntilIdle([&] { dispatch(effSetProgramName, 0, name.data()); }));

    void* chunk = nullptr;
    const VstIntPtr size = dispatch(effGetChunk, 0, &chunk);
    const std::string bank(static_cast<const char*>(chunk), static_cast<std::size_t>(size));
    std::string other = "other";
    dispatch(effSetProgramName, 0, other.data());
    settle();
    EXPECT_TRUE(untouchedUntilIdle([&] {
        std::string copy = bank;
        dispatch(effSetChunk, static_cast<VstIntPtr>(copy.size()), copy.data());
    }));
}

TEST_F(EditorViews, AreLeftAloneByProcessingAndItsEndElsewhere) {
    const auto before = views();
    std::thread([&] {
        float left[] = {0.5F, 0.25F};
        float right[] = {0.25F, -0.5F};
        float* channels[] = {left, right};
        dispatch(effMainsChanged, 1);
        effect->processReplacing(channels, channels, 2);
        dispatch(effMainsChanged, 0);
        dispatch(effEditIdle);
    }).join();
    EXPECT_EQ(views(), before);
}

TEST_F(EditorViews, AreLeftAloneByParametersThatThereAreNot) {
    const auto before = views();
    for (const VstInt32 index :
         {-1, +kNumParams, 31, 32, 1000, std::numeric_limits<VstInt32>::max(),
          std::numeric_limits<VstInt32>::min()}) {
        effect->setParameter(index, 1.0F);
        std::thread([&] { effect->setParameter(index, 1.0F); }).join();
    }
    EXPECT_EQ(views(), before);
    for (int i = 0; i < 5; ++i)
        RunLoop::instance().pump();
    settle();
    EXPECT_EQ(views(), before);
}

} // namespace
} // namespace mirelon::test
