#include "presetsystem/presetpanel.h"

#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace mirelon::test {
namespace {

using VSTGUI::CControl;

struct Listener : VSTGUI::IControlListener {
    void valueChanged(CControl* /*control*/) override { ++heard; }
    int heard = 0;
};

// A panel in a frame that is on no screen.
class PresetPanelTest : public testing::Test {
  protected:
    PresetPanelTest() {
        setUpToolkit();
        frame = new VSTGUI::CFrame(VSTGUI::CRect(0, 0, 10, 10), nullptr);
        for (int i = 0; i < kNumPresets; ++i)
            bank[static_cast<std::size_t>(i)].setName("preset " + std::to_string(i));
    }
    ~PresetPanelTest() override { frame->forget(); }

    void show(int current = 0) {
        panel.build(*frame, &listener);
        panel.showBank(bank, current);
    }
    std::vector<CControl*> controls() const {
        std::vector<CControl*> found;
        frame->forEachChild([&](VSTGUI::CView* view) {
            if (auto* control = dynamic_cast<CControl*>(view))
                found.push_back(control);
        });
        return found;
    }
    template <typename Control>
    Control& find() const {
        Control* found = nullptr;
        for (CControl* control : controls())
            if (auto* candidate = dynamic_cast<Control*>(control))
                found = candidate;
        return *found;
    }
    VSTGUI::COptionMenu& menu() const { return find<VSTGUI::COptionMenu>(); }
    std::string field() const { return find<VSTGUI::CTextEdit>().getText().getString(); }
    std::string title(int entry) const { return menu().getEntry(entry)->getTitle().getString(); }
    static PresetName name(std::string_view text) { return presetName(std::string(text).c_str()); }

    VSTGUI::CFrame* frame = nullptr;
    PresetBank bank{};
    Listener listener;
    PresetPanel panel;
};

TEST_F(PresetPanelTest, HasThirteenControlsInDrawingOrder) {
    show();
    std::vector<int> tags;
    for (const CControl* control : controls())
        tags.push_back(control->getTag());
    EXPECT_EQ(tags, (std::vector<int>{1000, 1012, 1001, 1002, 1003, 1013, 1004, 1005, 1014, 1017,
                                      1015, 1018, 1016}));
}

TEST_F(PresetPanelTest, PutsEveryControlIntoItsPlace) {
    show();
    for (const CControl* control : controls())
        if (control->getTag() == 1014) {
            EXPECT_EQ(control->getViewSize(), VSTGUI::CRect(22, 314, 69, 324));
        } else if (control->getTag() == 1018) {
            EXPECT_EQ(control->getViewSize(), VSTGUI::CRect(279, 327, 291, 341));
        }
}

TEST_F(PresetPanelTest, ShowsABankWithoutTellingTheListener) {
    show(4);
    EXPECT_EQ(menu().getNbEntries(), kNumPresets);
    EXPECT_EQ(title(10), "preset 10");
    EXPECT_EQ(menu().getCurrentIndex(), 4);
    EXPECT_EQ(field(), "preset 4");
    EXPECT_EQ(listener.heard, 0);
}

TEST_F(PresetPanelTest, ShowsAnotherBankInTheSameEntries) {
    show();
    const auto* entry = menu().getEntry(3);
    bank[3].setName("-");
    panel.showBank(bank, 3);
    EXPECT_EQ(menu().getEntry(3), entry);
    EXPECT_EQ(menu().getNbEntries(), kNumPresets);
    EXPECT_EQ(title(3), "-");
    EXPECT_FALSE(menu().getEntry(3)->isSeparator());
}

TEST_F(PresetPanelTest, ShowsTheCurrentNameInFieldAndEntry) {
    show(2);
    panel.showCurrentName(name("mine"));
    EXPECT_EQ(title(2), "mine");
    EXPECT_EQ(field(), "mine");
    EXPECT_EQ(title(1), "preset 1");
}

TEST_F(PresetPanelTest, ShowsTheFirstNamesAndNothingElse) {
    show(7);
    const std::vector<PresetName> names{name("one"), name("other")};
    panel.showFirstNames(names);
    EXPECT_EQ(title(0), "one");
    EXPECT_EQ(title(1), "other");
    EXPECT_EQ(title(2), "preset 2");
    EXPECT_EQ(menu().getCurrentIndex(), 7);
    EXPECT_EQ(field(), "preset 7");
}

TEST_F(PresetPanelTest, SelectsEntriesThatThereAre) {
    show();
    EXPECT_TRUE(panel.select(10));
    EXPECT_EQ(menu().getCurrentIndex(), 10);
    EXPECT_FALSE(panel.select(11));
    EXPECT_FALSE(panel.select(-1));
    EXPECT_EQ(menu().getCurrentIndex(), 10);
}

TEST_F(PresetPanelTest, CutsATypedNameAt24Bytes) {
    show();
    find<VSTGUI::CTextEdit>().setText("abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(panel.typedName(), name("abcdefghijklmnopqrstuvwx"));
}

TEST_F(PresetPanelTest, NamesAPresetByTheTitleOfItsEntry) {
    show();
    EXPECT_EQ(panel.nameOf(3, name("stored meanwhile")), name("preset 3"));
}

TEST_F(PresetPanelTest, KeepsTheBytesOfANameThatCannotBeShown) {
    bank[3].setName("caf\xE9");
    show();
    EXPECT_EQ(title(3), "caf\xEF\xBF\xBD");
    EXPECT_EQ(panel.nameOf(3, name("caf\xE9")), name("caf\xE9"));
}

TEST_F(PresetPanelTest, DoesNothingBeforeItIsBuiltAndAfterItIsForgotten) {
    const auto useAll = [&] {
        panel.showBank(bank, 3);
        panel.showFirstNames(std::vector<PresetName>{name("one")});
        panel.showCurrentName(name("mine"));
        panel.showInField(name("mine"));
        EXPECT_FALSE(panel.select(0));
        EXPECT_EQ(panel.typedName(), std::nullopt);
        EXPECT_EQ(panel.nameOf(0, name("stored")), name("stored"));
    };
    useAll();
    show();
    panel.forget();
    useAll();
    EXPECT_EQ(title(0), "preset 0");
    EXPECT_EQ(field(), "preset 0");
}

} // namespace
} // namespace mirelon::test
