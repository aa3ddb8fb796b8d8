// Where the effect gets its editor from, without knowing what an editor is.
#pragma once

class AEffEditor;
class Mirelon;

// Builds the product's editor and attaches it to `effect`, which owns it from
// then on. Needs no display. Implemented by the editor.
AEffEditor* createEditor(Mirelon& effect);
