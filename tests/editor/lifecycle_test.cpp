// Opening and closing the editor, in order and out of it.
#include "tests/editor/editorhost.h"

#include <gtest/gtest.h>

using namespace mirelon;
using namespace mirelon::test;

namespace {

class EditorLife : public testing::TestWithParam<Drive> {};

TEST_P(EditorLife, AWindowOpensDrawsAndCloses) {
    EditorHost editor(GetParam());
    EXPECT_EQ(editor.open(), 1);
    EXPECT_EQ(editor.window->children().size(), 1U);
    const Pixels picture = editor.pixels();
    if (const char* file = std::getenv("MIRELON_TEST_PICTURE"))
        savePng(picture, file);
    EXPECT_NE(picture.at(10, 10), 0x808080U);
    editor.close();
    EXPECT_TRUE(editor.window->children().empty());
}

INSTANTIATE_TEST_SUITE_P(EveryDrive, EditorLife,
                         testing::Values(Drive::hostIdle, Drive::glib, Drive::both),
                         testing::PrintToStringParamName());

} // namespace
