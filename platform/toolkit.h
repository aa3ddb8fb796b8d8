// The one way by which the toolkit's headers come in: fenced, so that a third
// party's warnings do not drown our own.
#pragma once

#include "shell/audioeffectx.h"

#include "vstgui/lib/vstguibase.h"

#include "vstgui/lib/private/disabledeprecatedmessage.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "vstgui/lib/cfileselector.h"
#include "vstgui/lib/coffscreencontext.h"
#include "vstgui/lib/events.h"
#include "vstgui/lib/platform/iplatformfileselector.h"
#include "vstgui/lib/platform/platform_x11.h"
#include "vstgui/lib/platform/platformfactory.h"
#include "vstgui/lib/vstguiinit.h"
#include "vstgui/plugin-bindings/aeffguieditor.h"
#pragma GCC diagnostic pop
