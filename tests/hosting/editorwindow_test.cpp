#include "hosting/editorwindow.h"

#include "hosting/hostingerror.h"
#include "hosting/module.h"
#include "tests/support/virtualdisplay.h"

#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

TEST(EditorWindow, OfAnEffectWithoutAnEditorIsRefused) {
    test::VirtualDisplay::start();
    const Module module(MIRELON_TEST_PLUGINS "gain.so");
    RecordingHost host;
    Effect effect(module, host);
    ASSERT_FALSE(effect.hasFlag(effFlagsHasEditor));
    EXPECT_THROW(EditorWindow(effect, "title", WindowKind::ordinary, Drive::both), PluginError);
}

} // namespace
} // namespace mirelon::hosting
