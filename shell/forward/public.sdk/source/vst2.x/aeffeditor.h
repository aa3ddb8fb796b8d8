// The include name by which the toolkit's editor binding asks for the editor
// base class.
#pragma once
#include "shell/aeffeditor.h"
