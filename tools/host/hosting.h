// Hosting a VST 2.4 effect:
//
//   Module module("effect.so");
//   RecordingHost host;
//   Effect effect(module, host);
//   effect.setParameter(0, 0.25F);
//   host.count(audioMasterUpdateDisplay);
#pragma once

#include "tools/host/effect.h"        // IWYU pragma: export
#include "tools/host/module.h"        // IWYU pragma: export
#include "tools/host/pluginerror.h"   // IWYU pragma: export
#include "tools/host/recordinghost.h" // IWYU pragma: export
