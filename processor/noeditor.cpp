// An effect for the fuzzers: everything but the window.
#include "processor/editorfactory.h"

AEffEditor* createEditor(Mirelon& /*effect*/) {
    return nullptr;
}
