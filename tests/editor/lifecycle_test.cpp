// Opening and closing the editor, in order and out of it.
#include "tests/editor/editorhost.h"
#include "tests/support/plugin.h"
#include "tests/support/processes.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace hosting = mirelon::hosting;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t hostGrey = 0x808080;

// Positions in the window.
constexpr double aboutX = 150;
constexpr double aboutY = 290;

std::string driveName(const testing::TestParamInfo<Drive>& info) {
    return testing::PrintToString(info.param);
}

class EditorLife : public testing::TestWithParam<Drive> {};
INSTANTIATE_TEST_SUITE_P(EveryDrive, EditorLife,
                         testing::Values(Drive::hostIdle, Drive::glib, Drive::both), driveName);

TEST_P(EditorLife, AnOpenWindowIsMappedDrawnAndAnnouncedAsMapped) {
    EditorHost editor(GetParam());
    EXPECT_EQ(editor.open(), 1);
    const auto children = editor.window->children();
    ASSERT_EQ(children.size(), 1U);
    EXPECT_TRUE(editor.window->isMapped(children[0]));
    EXPECT_EQ(editor.window->embedInfo(children[0]), (std::vector<std::uint32_t>{0, 1}));
    const Pixels picture = editor.pixels();
    for (const auto& [x, y] : {std::pair{0, 0}, {picture.width - 1, picture.height - 1}})
        EXPECT_NE(picture.at(x, y), hostGrey);
}

TEST_P(EditorLife, ClosingTakesTheWindowAway) {
    EditorHost editor(GetParam());
    editor.open();
    editor.close();
    EXPECT_TRUE(editor.window->becomesEmpty());
    EXPECT_EQ(editor.pixels().at(10, 10), hostGrey);
}

TEST_P(EditorLife, FiftyOpeningsLeaveNoWindowAndNoFileBehind) {
    EditorHost editor(GetParam());
    editor.open();
    editor.close();
    const auto before = openFiles();
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(editor.effect->dispatch(effEditOpen, 0, 0, editor.window->asParent()), 1);
        editor.run(30ms);
        editor.close();
        ASSERT_TRUE(editor.window->becomesEmpty());
    }
    EXPECT_EQ(openFiles(), before);
    editor.open();
    EXPECT_NE(editor.pixels().at(10, 10), hostGrey);
}

TEST_P(EditorLife, OpeningTwiceClosesTheFirstWindow) {
    EditorHost editor(GetParam());
    editor.open();
    const auto first = editor.window->children();
    EXPECT_EQ(editor.open(), 1);
    const auto second = editor.window->children();
    ASSERT_EQ(second.size(), 1U);
    EXPECT_NE(first, second);
    EXPECT_NE(editor.pixels().at(10, 10), hostGrey);
}

TEST_P(EditorLife, SeveralEditorsAreOpenAtATime) {
    EditorHost first(GetParam());
    EditorHost second(GetParam());
    EditorHost third(GetParam());
    EXPECT_EQ(first.open(), 1);
    EXPECT_EQ(second.open(), 1);
    second.close();
    EXPECT_EQ(third.open(), 1);
    first.effect->setParameter(0, 1.0F);
    EXPECT_NE(first.pixels(), third.pixels());
    third.close();
    EXPECT_NE(first.pixels().at(10, 10), hostGrey);
}

TEST_P(EditorLife, AHostsWindowMayGoBeforeTheEditorCloses) {
    EditorHost editor(GetParam());
    editor.open();
    editor.window->destroy();
    editor.run(60ms);
    editor.effect->setParameter(0, 0.2F);
    editor.run(60ms);
    editor.close();
    editor.window = std::make_unique<XWindow>(324, 348);
    EXPECT_EQ(editor.open(), 1);
    EXPECT_NE(editor.pixels().at(10, 10), hostGrey);
}

TEST_P(EditorLife, AnInstanceMayGoWithItsEditorOpen) {
    EditorHost editor(GetParam());
    editor.open();
    editor.effect.reset();
    EXPECT_TRUE(editor.window->becomesEmpty());
    editor.run(60ms);
}

TEST_P(EditorLife, TheAboutPictureMayBeOnShowWhileClosing) {
    EditorHost editor(GetParam());
    for (int i = 0; i < 3; ++i) {
        editor.open();
        const Pixels before = editor.pixels();
        editor.click(aboutX, aboutY);
        ASSERT_TRUE(editor.runUntilStill(before));
        editor.close();
    }
}

TEST_P(EditorLife, TheMenuMayBeOnShowWhileClosing) {
    EditorHost editor(GetParam());
    for (int i = 0; i < 3; ++i) {
        editor.open();
        const Pixels before = editor.pixels();
        editor.click(212, 326);
        ASSERT_TRUE(editor.runUntilStill(before));
        editor.close();
    }
}

TEST_P(EditorLife, ANameThatIsBeingTypedCountsWhenTheEditorCloses) {
    EditorHost editor(GetParam());
    editor.open();
    editor.click(146, 327);
    editor.type("abc");
    editor.close();
    EXPECT_EQ(editor.effect->programName(), "abc");
}

TEST_P(EditorLife, AHostMayCloseTheEditorFromInsideAControl) {
    EditorHost editor(GetParam());
    editor.host.answer(audioMasterAutomate, [&](const hosting::HostCall&) -> VstIntPtr {
        editor.close();
        return 0;
    });
    editor.open();
    editor.click(93, 257); // the process switch
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 1U);
    EXPECT_TRUE(editor.runUntil([&] { return editor.window->children().empty(); }));
    editor.host.answer(audioMasterAutomate, 0);
    EXPECT_EQ(editor.open(), 1);
}

TEST(EditorLifeAlone, WithoutAParentWindowTheEditorDoesNotOpen) {
    EditorHost editor;
    EXPECT_EQ(editor.effect->dispatch(effEditOpen, 0, 0, nullptr), 0);
    editor.window->destroy();
    EXPECT_EQ(editor.effect->dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(0x7FFFFFUL)), 0);
}

TEST(EditorLifeAlone, WithoutADisplayTheEditorDoesNotOpenAndStillHasASize) {
    VirtualDisplay::start();
    const std::string display = std::getenv("DISPLAY");
    unsetenv("DISPLAY");
    hosting::RecordingHost host;
    hosting::Effect effect(mirelon::test::pluginModule(), host);
    ERect* rect = nullptr;
    EXPECT_EQ(effect.dispatch(effEditGetRect, 0, 0, &rect), 1);
    ASSERT_NE(rect, nullptr);
    EXPECT_GE(rect->right, 324);
    EXPECT_GE(rect->bottom, 346);
    EXPECT_EQ(effect.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(1UL)), 0);
    effect.dispatch(effEditIdle);
    effect.dispatch(effEditClose);
    // The display may come later.
    setenv("DISPLAY", display.c_str(), 1);
    XWindow window(324, 348);
    EXPECT_EQ(effect.dispatch(effEditOpen, 0, 0, window.asParent()), 1);
}

TEST(EditorLifeAlone, CommandsToAClosedEditorDoNothing) {
    EditorHost editor;
    const auto sendAll = [&] {
        editor.effect->dispatch(effEditIdle);
        editor.effect->dispatch(effEditClose);
        for (const VstInt32 opcode : {effEditTop, effEditSleep, effEditDraw, effEditMouse,
                                      effEditKey, effEditKeyDown, effEditKeyUp})
            EXPECT_EQ(editor.effect->dispatch(opcode), 0);
        editor.effect->setParameter(0, 0.3F);
        editor.effect->setProgramName("closed");
    };
    sendAll();
    editor.open();
    editor.close();
    sendAll();
    EXPECT_EQ(editor.host.count(audioMasterAutomate), 0U);
}

TEST(EditorLifeAlone, AnotherThreadMayCloseTheEditor) {
    EditorHost editor;
    editor.open();
    std::thread([&] { editor.close(); }).join();
    EXPECT_TRUE(editor.window->becomesEmpty());
    EXPECT_EQ(editor.open(), 1);
    std::thread([&] { editor.effect.reset(); }).join();
    EXPECT_TRUE(editor.window->becomesEmpty());
}

TEST(EditorLifeAlone, EditorsOpenOnOneThreadAtATime) {
    EditorHost first;
    EditorHost second;
    first.open();
    VstIntPtr answer = -1;
    std::thread([&] {
        answer = second.effect->dispatch(effEditOpen, 0, 0, second.window->asParent());
    }).join();
    EXPECT_EQ(answer, 0);
    first.close();
    std::thread([&] {
        answer = second.effect->dispatch(effEditOpen, 0, 0, second.window->asParent());
        second.run(60ms);
        second.close();
    }).join();
    EXPECT_EQ(answer, 1);
}

} // namespace
