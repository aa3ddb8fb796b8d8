// The plug-in as CLAP describes and makes it.
#pragma once

#include <clap/plugin.h>

namespace mirelon::clap {

// What hosts read of the plug-in before they make one.
extern const clap_plugin_descriptor pluginDescriptor;

// An instance, which its own function destroys. Null when there is no memory for
// it. `host` may be null.
const clap_plugin* createPlugin(const clap_host* host) noexcept;

} // namespace mirelon::clap
