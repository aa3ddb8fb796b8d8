// What hosts do to the window around the editor while the user is in the middle of
// something there, and how often they look after it.
#include "processor/core/parametertext.h"
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/support/processes.h"

#include <X11/keysym.h>
#include <array>
#include <gtest/gtest.h>
#include <thread>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t hostGrey = 0x808080;
constexpr int readOutX = 268;

// What the user is in the middle of.
enum class Busy { nothing, withTheMenu, withAName, withAValue };
// What the host does to its window.
enum class Host { reparents, unmaps, destroys, closes, ends };

const char* nameOf(Busy busy) {
    constexpr std::array names{"Nothing", "TheMenu", "AName", "AValue"};
    return names[static_cast<std::size_t>(busy)];
}

const char* nameOf(Host host) {
    constexpr std::array names{"Reparents", "Unmaps", "Destroys", "Closes", "Ends"};
    return names[static_cast<std::size_t>(host)];
}

// Nothing that the instance has told its host so far counts.
void begin(EditorHost& editor, Busy busy) {
    editor.host.forgetCalls();
    switch (busy) {
    case Busy::nothing:
        return;
    case Busy::withTheMenu: {
        const Pixels closed = editor.pixels();
        editor.click(menuButton.x, menuButton.y);
        EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() != closed; }));
        return;
    }
    case Busy::withAName:
        editor.click(nameField.x, nameField.y);
        return editor.type("abc");
    case Busy::withAValue:
        editor.doubleClick(readOutX, sliderPlaces[0].y);
        return editor.type("150");
    }
}

class InTheMiddle : public testing::TestWithParam<std::tuple<Host, Busy>> {
  protected:
    static Busy busy() { return std::get<Busy>(GetParam()); }

    static void act(EditorHost& editor) {
        switch (std::get<Host>(GetParam())) {
        case Host::reparents:
            editor.window->reparent();
            break;
        case Host::unmaps:
            editor.window->hide();
            editor.run();
            editor.window->show();
            break;
        case Host::destroys:
            editor.window->destroy();
            break;
        case Host::closes:
            editor.close();
            break;
        case Host::ends:
            editor.effect.reset();
            break;
        }
        editor.run();
    }

    EditorHost editor;
};
INSTANTIATE_TEST_SUITE_P(EveryHost, InTheMiddle,
                         testing::Combine(testing::Values(Host::reparents, Host::unmaps,
                                                          Host::destroys, Host::closes, Host::ends),
                                          testing::Values(Busy::nothing, Busy::withTheMenu,
                                                          Busy::withAName, Busy::withAValue)),
                         [](const testing::TestParamInfo<std::tuple<Host, Busy>>& info) {
                             return std::string(nameOf(std::get<Host>(info.param))) + "WhileWith" +
                                    nameOf(std::get<Busy>(info.param));
                         });

TEST_P(InTheMiddle, NothingIsChangedAndTheNextWindowIsAsGood) {
    EditorHost editor;
    editor.open();
    begin(editor, busy());
    act(editor);
    EXPECT_EQ(editor.host.count(audioMasterBeginEdit), 0U);
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 0U);
    EXPECT_EQ(editor.host.count(audioMasterEndEdit), 0U);

    EditorHost next;
    EXPECT_EQ(next.open(), 1);
    begin(next, Busy::withAValue);
    next.key(XK_Return);
    EXPECT_EQ(next.touches(0), "bae");
}

TEST_P(InTheMiddle, NoFileStaysOpen) {
    const auto live = [] {
        EditorHost editor;
        editor.open();
        begin(editor, busy());
        act(editor);
    };
    live(); // makes what is made once
    const auto before = openFiles();
    live();
    EXPECT_EQ(openFiles(), before);
}

// --- Two windows ---

TEST(TwoWindows, KeepWhatIsTypedApart) {
    EditorHost first;
    first.open();
    begin(first, Busy::withAValue);
    EditorHost second; // above the first
    second.open();
    begin(second, Busy::withAValue);
    second.key(XK_Return);
    EXPECT_EQ(second.touches(0), "bae");
    EXPECT_EQ(first.touches(0), "");
    EXPECT_EQ(first.parameter(0), 0.5F);
    second.close();
    second.window->hide();
    first.doubleClick(readOutX, sliderPlaces[1].y);
    first.type("6");
    first.key(XK_Return);
    EXPECT_EQ(first.parameter(1), mirelon::parameterValueOf(1, "6"));
}

TEST(TwoWindows, MayBeOpenedTwoHundredTimesInTurn) {
    EditorHost first;
    EditorHost second;
    const auto openAndClose = [&](int times, Busy busy) {
        for (int i = 0; i < times; ++i)
            for (EditorHost* editor : {&first, &second}) {
                ASSERT_EQ(editor->effect->dispatch(effEditOpen, 0, 0, editor->window->asParent()),
                          1);
                editor->run(10ms);
                begin(*editor, busy);
                (editor == &first ? second : first).close();
            }
    };
    openAndClose(1, Busy::withAName);
    const auto before = openFiles();
    openAndClose(95, Busy::nothing);
    openAndClose(5, Busy::withAValue);
    EXPECT_EQ(openFiles(), before);
    second.close();
    EXPECT_TRUE(second.window->becomesEmpty());
    EXPECT_TRUE(first.window->becomesEmpty());
    first.open();
    EXPECT_NE(first.pixels().at(10, 10), hostGrey);
}

// --- Hosts that look after their editors more or less often ---

// As often as the host sends its idle command; never: only a GLib loop runs.
class IdleRate : public testing::TestWithParam<int> {
  protected:
    static constexpr int neverButGlib = 0;

    void idle() {
        const int rate = GetParam();
        if (rate == neverButGlib) {
            mirelon::hosting::iterateHostLoop(Drive::glib, editor.effect.get());
            std::this_thread::sleep_for(4ms);
            return;
        }
        editor.effect->dispatch(effEditIdle);
        std::this_thread::sleep_for(std::chrono::microseconds(1'000'000 / rate));
    }
    bool idleUntil(const std::function<bool()>& reached) {
        const auto end = std::chrono::steady_clock::now() + 20s;
        while (!reached()) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            idle();
        }
        return true;
    }
    Pixels settledPixels() {
        for (int i = 0; i < 4; ++i)
            idle();
        return editor.window->pixels();
    }

    EditorHost editor;
};
INSTANTIATE_TEST_SUITE_P(Hertz, IdleRate, testing::Values(0, 10, 30, 190),
                         testing::PrintToStringParamName());

TEST_P(IdleRate, IsEnoughToTypeAValue) {
    editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
    ASSERT_TRUE(idleUntil([&] { return editor.window->pixels().at(10, 10) != hostGrey; }));
    editor.host.forgetCalls();
    editor.window->moveTo(readOutX, sliderPlaces[0].y);
    const Pixels before = settledPixels();
    for (int i = 0; i < 2; ++i) {
        editor.window->press();
        editor.window->release();
    }
    EXPECT_TRUE(idleUntil([&] { return editor.window->pixels() != before; }));
    for (const char c : {'1', '5', '0'}) {
        editor.window->keyDown(static_cast<unsigned char>(c));
        editor.window->keyUp(static_cast<unsigned char>(c));
    }
    editor.window->keyDown(XK_Return);
    editor.window->keyUp(XK_Return);
    EXPECT_TRUE(idleUntil([&] { return editor.touches(0) == "bae"; }));
    EXPECT_EQ(editor.parameter(0), mirelon::parameterValueOf(0, "150"));
}

TEST(IdleNever, LeavesAWindowThatStillCloses) {
    EditorHost editor;
    editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent());
    editor.host.forgetCalls();
    std::this_thread::sleep_for(50ms); // its timers are due
    editor.window->moveTo(readOutX, sliderPlaces[0].y);
    editor.window->press();
    editor.window->release();
    editor.close();
    EXPECT_TRUE(editor.window->becomesEmpty());
    EXPECT_TRUE(editor.host.calls().empty());
    EXPECT_EQ(editor.open(), 1);
}

} // namespace
