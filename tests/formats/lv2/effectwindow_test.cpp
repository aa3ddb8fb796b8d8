// The window of the LV2 plug-in in the shape of an effect.
#include "tests/formats/effectwindow.h"

namespace mirelon::test {

std::string EffectWindow::file() {
    return MIRELON_LV2_BUNDLE;
}
INSTANTIATE_TEST_SUITE_P(Lv2, EffectWindow, testing::Values("lv2"));

} // namespace mirelon::test
