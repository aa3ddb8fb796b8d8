#include "processor/editorfactory.h"

AEffEditor* createEditor(Mirelon& /*effect*/) {
    return nullptr;
}
