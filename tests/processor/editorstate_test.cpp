// What an effect knows of its editor.
#include "processor/mirelon.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

TEST(EditorState, IsAsTheEditorSays) {
    const mirelon::test::TemporaryFolder preferences;
    setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1);
    Mirelon effect(nullptr);
    EXPECT_FALSE(effect.isEditorOpen());
    effect.setEditorOpen(true);
    EXPECT_TRUE(effect.isEditorOpen());
    effect.setEditorOpen(false);
    EXPECT_FALSE(effect.isEditorOpen());
}

} // namespace
