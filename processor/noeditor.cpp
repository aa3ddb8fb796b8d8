// The effect without a window, for programs and plug-ins that have none: linked
// in the place of the editor.
#include "processor/editorfactory.h"

AEffEditor* createEditor(Mirelon& /*effect*/) {
    return nullptr;
}
