// The plug-in that a command works with.
#pragma once

#include "hosting/hosting.h"
#include "hosting/pluginfile.h"

#include <memory>
#include <string>

namespace mirelon::tools {

// What `given` names (a file, an LV2 bundle or a URI), or, when it is empty, the first mirelon.so
// found beside this program (build folder, then installation), in ~/.vst, in the folders of
// VST_PATH, in /usr/lib/vst and in /usr/local/lib/vst. Throws CommandError when there is none.
std::string pluginFile(const std::string& given);

// Loaded and open for as long as the object lives.
struct LoadedPlugin {
    // `given` as for pluginFile. Throws CommandError or hosting::HostingError.
    explicit LoadedPlugin(const std::string& given);

    // What the host says from now on to an effect that asks: the rate in Hz and the block
    // size that the effect is to be told next.
    void announce(int rate, VstIntPtr blockFrames);

    std::unique_ptr<const hosting::PluginModule> module;
    hosting::RecordingHost host;
    hosting::Effect effect;
};

} // namespace mirelon::tools
