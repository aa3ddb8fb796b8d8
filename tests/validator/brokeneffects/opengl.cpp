// Stands in for OpenGL's library, by whose name the validator knows it.
#include "tests/validator/brokeneffects/wrongpicture.h"

extern "C" __attribute__((visibility("default"))) void drawWithOpenGl(Display* display,
                                                                      Window window) {
    mirelon::test::brokeneffects::putWrongPicture(display, window);
}
