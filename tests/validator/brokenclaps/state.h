// How the test plug-in saves its state and loads one.
#pragma once

#include <clap/ext/state.h>

namespace mirelon::test::brokenclaps {

extern const clap_plugin_state stateFunctions;

} // namespace mirelon::test::brokenclaps
