// The file dialog keeps nobody waiting: what goes on while it is open, and how it ends.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/editor/standindialog.h"
#include "tests/support/plugin.h"
#include "tests/support/processes.h"

#include <X11/keysym.h>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Script = StandInDialog::Script;

// What single calls take; on a machine that does other things as well, the middle
// one of many tells.
class Durations {
  public:
    template <typename Call>
    void of(Call call) {
        const auto begin = Clock::now();
        call();
        all.push_back(Clock::now() - begin);
    }
    double medianMilliseconds() {
        std::ranges::nth_element(all, all.begin() + std::ssize(all) / 2);
        return std::chrono::duration<double, std::milli>(all[all.size() / 2]).count();
    }

  private:
    std::vector<Clock::duration> all;
};

// Whether a process has ended and not been collected.
bool hasEnded(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    std::string state;
    status >> number >> name >> state;
    return state == "Z";
}

class FileDialogs : public testing::TestWithParam<Drive> {
  protected:
    FileDialogs() {
        editor.open();
        editor.host.forgetCalls();
    }

    void click(Position at) { editor.click(at.x, at.y); }
    // Clicks at what opens a dialog that stays open.
    void ask(const StandInDialog& dialog, Position at) {
        click(at);
        ASSERT_TRUE(editor.runUntil([&] { return dialog.starts() == 1; }));
        ASSERT_TRUE(dialog.isOpen());
    }
    bool ends(const StandInDialog& dialog) {
        return editor.runUntil([&] { return dialog.isOver(); });
    }
    // Whether the pointer works the window's controls.
    bool takesInput() {
        const std::string before = editor.effect->programName();
        click(before == "init" ? rockerRight : rockerLeft);
        return editor.effect->programName() != before;
    }

    const TemporaryFolder folder;
    EditorHost editor{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(BothDrives, FileDialogs, testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

// --- What goes on meanwhile ---

TEST_P(FileDialogs, LeaveTheHostsIdleAlone) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    Durations idle;
    for (int i = 0; i < 200; ++i) {
        idle.of([&] { editor.effect->dispatch(effEditIdle); });
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_LT(idle.medianMilliseconds(), 5.0);
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LeaveOtherInstancesAloneOnTheSameThread) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    EditorHost other(GetParam());
    Durations calls;
    for (int i = 0; i < 20; ++i) {
        calls.of([&] { other.rect(); });
        calls.of([&] { other.effect->dispatch(effEditOpen, 0, 0, other.window->asParent()); });
        calls.of([&] { other.close(); });
    }
    EXPECT_LT(calls.medianMilliseconds(), 20.0);
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LeaveEveryCallFromAnotherThreadAlone) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    Durations calls;
    std::atomic<bool> done{false};
    std::thread host([&] {
        for (int i = 0; i < 10; ++i) {
            PluginInstance other; // one that never has a window
            ERect* rect = nullptr;
            calls.of([&] { other.effect.dispatch(effEditGetRect, 0, 0, &rect); });
            calls.of([&] { other.effect.dispatch(effEditOpen, 0, 0, editor.window->asParent()); });
            calls.of([&] { other.effect.dispatch(effEditIdle); });
            calls.of([&] { other.effect.dispatch(effEditClose); });
            calls.of([&] { editor.rect(); });
            calls.of([&] { editor.effect->dispatch(effEditIdle); });
            calls.of([&] { editor.effect->chunk(); });
        }
        done = true;
    });
    EXPECT_TRUE(editor.runUntil([&] { return done.load(); }));
    host.join();
    EXPECT_LT(calls.medianMilliseconds(), 20.0);
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LeaveAnInstanceWithoutAWindowToClose) {
    const StandInDialog dialog;
    auto other = std::make_unique<PluginInstance>();
    ask(dialog, savePreset);
    std::thread([&] { other.reset(); }).join();
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LetAutomationShow) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    const Pixels before = editor.pixels();
    editor.effect->setParameter(0, 1.0F);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() != before; }));
    const Pixels shown = editor.pixels();
    std::thread([&] { editor.effect->setParameter(1, 1.0F); }).join();
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() != shown; }));
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LetTheMetersMove) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    editor.effect->setBlockSize(4096);
    editor.effect->resume();
    const Pixels before = editor.pixels();
    processed(*editor.effect,
              StereoBuffer<float>(std::vector<float>(4096, 0.9F), std::vector<float>(4096, 0.0F)));
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() != before; }));
    EXPECT_TRUE(dialog.isOpen());
}

TEST_P(FileDialogs, LetAudioAndStateGoOn) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    std::atomic<int> blocks{0};
    std::thread host([&] {
        editor.effect->resume();
        for (int i = 0; i < 50; ++i) {
            editor.effect->setParameter(0, static_cast<float>(i % 2));
            processed(*editor.effect, StereoBuffer<float>(64));
            blocks += editor.effect->chunk().empty() ? 0 : 1;
        }
    });
    EXPECT_TRUE(editor.runUntil([&] { return blocks == 50; }));
    host.join();
    EXPECT_TRUE(dialog.isOpen());
}

// --- Input ---

TEST_P(FileDialogs, KeepPointerAndKeysFromTheWindowUntilTheyAreOver) {
    editor.moveTo(150, 305);
    const Pixels before = editor.pixels();
    const StandInDialog dialog;
    ask(dialog, savePreset);
    for (const Position place :
         {rockerRight, storeA, recallA, menuButton, nameField, aboutStrip, Position{93, 257}})
        click(place);
    editor.type("abc");
    for (const int key : {XK_Tab, XK_Up, XK_Return, XK_space})
        editor.key(static_cast<unsigned long>(key));
    editor.drag(100, 62, 200, 62);
    editor.wheel(100, 62, 4);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->pixels() == before; }));
    EXPECT_TRUE(editor.host.calls().empty());
    EXPECT_EQ(editor.effect->programName(), "init");
    dialog.answer("");
    ASSERT_TRUE(ends(dialog));
    EXPECT_TRUE(takesInput());
}

TEST_P(FileDialogs, AreOpenOneAtATimeForAnEditor) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    for (const Position place : {savePreset, saveBank, loadPreset, loadBank})
        click(place);
    dialog.answer(folder / "one.dvp");
    EXPECT_TRUE(ends(dialog));
    EXPECT_EQ(dialog.starts(), 1U);
    EXPECT_EQ(contentsOf(folder / "one.dvp").size(), 65U);
}

TEST_P(FileDialogs, KeepANameThatIsBeingTyped) {
    const StandInDialog dialog;
    click(nameField);
    editor.type("abc");
    ask(dialog, savePreset);
    dialog.answer(folder / "one.dvp");
    ASSERT_TRUE(ends(dialog));
    EXPECT_EQ(contentsOf(folder / "one.dvp").substr(5, 4), std::string("abc") + '\0');
}

TEST_P(FileDialogs, BelongToTheWindowThatAsks) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    EXPECT_TRUE(
        dialog.argumentsContain("--attach=" + std::to_string(editor.window->children().at(0))));
}

TEST_P(FileDialogs, BelongToTheHostsWindowWhereADesktopManagesIt) {
    editor.window->markAsManaged();
    const StandInDialog dialog;
    ask(dialog, savePreset);
    EXPECT_TRUE(dialog.argumentsContain("--attach=" + std::to_string(editor.window->id())));
}

TEST_P(FileDialogs, OfTwoEditorsAreAnsweredInAnyOrder) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    EditorHost other(GetParam()); // its window is above the first one
    other.open();
    other.effect->setProgramName("other");
    other.click(savePreset.x, savePreset.y);
    ASSERT_TRUE(editor.runUntil([&] { return dialog.starts() == 2; }));
    const auto saves = [&](std::size_t start, const char* name) {
        dialog.answer(folder / name, start);
        return editor.runUntil([&] { return contentsOf(folder / name).size() == 65; });
    };
    EXPECT_TRUE(saves(1, "second.dvp"));
    EXPECT_EQ(contentsOf(folder / "second.dvp").substr(5, 5), "other");
    EXPECT_TRUE(dialog.isOpen());
    EXPECT_TRUE(saves(0, "first.dvp"));
    EXPECT_EQ(contentsOf(folder / "first.dvp").substr(5, 4), "init");
}

// --- The end ---

TEST_P(FileDialogs, EndWithTheirWindowAndWriteNothing) {
    for (const bool elsewhere : {false, true}) {
        const StandInDialog dialog;
        ask(dialog, savePreset);
        if (elsewhere)
            std::thread([&] { editor.close(); }).join();
        else
            editor.close();
        dialog.answer(folder / "one.dvp");
        EXPECT_TRUE(ends(dialog));
        EXPECT_FALSE(exists(folder / "one.dvp"));
        EXPECT_TRUE(editor.window->becomesEmpty());
        EXPECT_EQ(editor.open(), 1);
        EXPECT_TRUE(takesInput());
    }
}

TEST_P(FileDialogs, EndWithTheirInstanceAndWriteNothing) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    editor.effect.reset();
    dialog.answer(folder / "one.dvp");
    EXPECT_TRUE(ends(dialog));
    EXPECT_FALSE(exists(folder / "one.dvp"));
}

TEST_P(FileDialogs, WhoseAnswerComesTooLateForTheInstanceWriteNothing) {
    const StandInDialog dialog;
    ask(dialog, savePreset);
    dialog.answer(folder / "one.dvp");
    while (!hasEnded(dialog.processes().at(0))) // the answer is there, and nobody has looked
        std::this_thread::sleep_for(2ms);
    editor.effect.reset();
    EXPECT_TRUE(ends(dialog)) << "the program has not been collected";
    EXPECT_FALSE(exists(folder / "one.dvp"));
}

TEST_P(FileDialogs, AreAnsweredThoughAProgramLeftBehindKeepsTheirOutputOpen) {
    const StandInDialog dialog(
        Script{"sleep 1000 & echo $! > left\necho '" + (folder / "one.dvp").string() + "'"});
    click(savePreset);
    EXPECT_TRUE(ends(dialog));
    EXPECT_EQ(contentsOf(folder / "one.dvp").size(), 65U);
    const auto left = numberIn(dialog.folder / "left");
    ASSERT_TRUE(left);
    ASSERT_TRUE(processExists(*left));
    kill(*left, SIGKILL);
}

TEST_P(FileDialogs, ThatGoWrongChangeNothing) {
    const auto before = editor.effect->chunk();
    for (const char* text : {"kill -SEGV $$", "exit 0", "exit 1", "echo /a/b.dvp; exit 3",
                             "head -c 1048576 /dev/zero | tr '\\0' /"}) {
        const StandInDialog dialog(Script{text});
        click(loadPreset);
        EXPECT_TRUE(ends(dialog)) << text;
        editor.moveTo(150, 305);
        EXPECT_EQ(editor.effect->chunk(), before) << text;
    }
    EXPECT_TRUE(takesInput());
}

TEST_P(FileDialogs, WhoseProgramIsMissingLeaveTheWindowAsItWas) {
    for (const Position place : {savePreset, loadPreset, saveBank, loadBank})
        click(place);
    EXPECT_TRUE(takesInput());
}

TEST_P(FileDialogs, TakeFolderAndNameWithLineEndsWhole) {
    writeFile(folder / "a.dvp", "precious");
    create_directory(folder / "d\nd");
    const StandInDialog dialog;
    ask(dialog, savePreset);
    dialog.answer((folder / "a.dvp\nb.dvp").string() + '\n');
    ASSERT_TRUE(ends(dialog));
    EXPECT_EQ(contentsOf(folder / "a.dvp"), "precious");
    EXPECT_EQ(contentsOf(folder / "a.dvp\nb.dvp").size(), 65U);
    const StandInDialog next((folder / "d\nd" / "c.dvp").string() + '\n');
    click(savePreset);
    ASSERT_TRUE(ends(next));
    EXPECT_EQ(contentsOf(folder / "d\nd" / "c.dvp").size(), 65U);
}

TEST_P(FileDialogs, AskOnceMoreBeforeTheyReplaceWhatWasNotNamed) {
    writeFile(folder / "name.dvp", "precious");
    const StandInDialog dialog;
    ask(dialog, savePreset);
    dialog.answer(folder / "name");
    ASSERT_TRUE(editor.runUntil([&] { return dialog.starts() == 2; }));
    EXPECT_EQ(contentsOf(folder / "name.dvp"), "precious");
    EXPECT_FALSE(takesInput());
    dialog.answer(folder / "name.dvp", 1);
    EXPECT_TRUE(editor.runUntil([&] { return dialog.isOver(2); }));
    EXPECT_EQ(contentsOf(folder / "name.dvp").size(), 65U);
    EXPECT_TRUE(takesInput());
}

} // namespace
