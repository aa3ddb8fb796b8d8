// Hosting a VST 2.4 effect (openPlugin in pluginfile.h takes other formats too):
//
//   Module module("effect.so");
//   RecordingHost host;
//   Effect effect(module, host);
//   effect.setParameter(0, 0.25F);
//   host.count(audioMasterUpdateDisplay);
#pragma once

#include "hosting/effect.h"        // IWYU pragma: export
#include "hosting/hostingerror.h"  // IWYU pragma: export
#include "hosting/module.h"        // IWYU pragma: export
#include "hosting/recordinghost.h" // IWYU pragma: export
