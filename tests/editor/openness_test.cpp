// What the editor says of itself, and what the effect knows of it.
#include "tests/editor/openeditor.h"

namespace mirelon::test {
namespace {

TEST_F(OpenEditor, SaysThatItIsOpenUntilItIsClosed) {
    EXPECT_TRUE(effect->getEditor()->isOpen());
    dispatch(effEditClose);
    EXPECT_FALSE(effect->getEditor()->isOpen());
}

TEST_F(OpenEditor, IsKnownToTheEffectUntilItIsClosed) {
    EXPECT_TRUE(effect->isEditorOpen());
    dispatch(effEditClose);
    EXPECT_FALSE(effect->isEditorOpen());
}

} // namespace
} // namespace mirelon::test
