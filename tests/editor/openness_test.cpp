// What the editor says of itself.
#include "tests/editor/openeditor.h"

namespace mirelon::test {
namespace {

TEST_F(OpenEditor, SaysThatItIsOpenUntilItIsClosed) {
    EXPECT_TRUE(effect->getEditor()->isOpen());
    dispatch(effEditClose);
    EXPECT_FALSE(effect->getEditor()->isOpen());
}

} // namespace
} // namespace mirelon::test
