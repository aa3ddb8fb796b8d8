// The one way by which the toolkit's headers come in: fenced, so that a third
// party's warnings do not drown our own.
#pragma once

#include "vstgui/lib/vstguibase.h"

#include "vstgui/lib/private/disabledeprecatedmessage.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
// First: the binding knows the host's key codes, which the others would declare
// a second time.
#include "vstgui/plugin-bindings/aeffguieditor.h"

#include "vstgui/lib/cfileselector.h"
#include "vstgui/lib/coffscreencontext.h"
#include "vstgui/lib/events.h"
#include "vstgui/lib/finally.h"
#include "vstgui/lib/platform/common/genericoptionmenu.h"
#include "vstgui/lib/platform/iplatformfileselector.h"
#include "vstgui/lib/platform/iplatformfont.h"
#include "vstgui/lib/platform/iplatformframe.h"
#include "vstgui/lib/platform/platform_x11.h"
#include "vstgui/lib/platform/platformfactory.h"
#include "vstgui/lib/vstguiinit.h"
#pragma GCC diagnostic pop
