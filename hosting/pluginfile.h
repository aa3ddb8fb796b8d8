// A plug-in of whatever format, by what a user calls it.
#pragma once

#include "hosting/pluginmodule.h"

#include <memory>
#include <string>

namespace mirelon::hosting {

// The format of what is called so: a URI or the folder of a bundle is LV2, a file
// that ends in ".clap" CLAP, any other file VST 2. Throws PluginError when there is no such file,
// and for a folder that is no bundle. Nothing is loaded.
PluginFormat formatOf(const std::string& given);

// Loads it; throws PluginError as `formatOf` does, and when it is no plug-in.
std::unique_ptr<const PluginModule> openPlugin(const std::string& given);

} // namespace mirelon::hosting
