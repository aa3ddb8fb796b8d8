#include "processor/editorfactory.h"

#include "editor/adeditor.h"
#include "processor/mirelon.h"

AEffEditor* createEditor(Mirelon& effect) {
    return new ADEditor(&effect);
}
