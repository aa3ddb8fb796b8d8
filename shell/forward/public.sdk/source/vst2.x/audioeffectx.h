// The include name by which the toolkit's editor binding asks for the effect
// classes.
#pragma once
#include "shell/audioeffectx.h"
