// Rendering many audio files at a time.
#pragma once

#include "tools/rendering.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

// Jobs for every input, which go into `folder` under their own names, with the
// requested kind's extension. Throws CommandError when two would get one name.
std::vector<RenderJob> jobsInto(const std::string& folder, const std::vector<std::string>& inputs,
                                const RenderJob& like);

// Renders each job in a process of its own, `parallel` at a time, so that neither a
// bad file nor a plug-in that crashes ends the others. Gives back one object for
// each job, in order: the report's, or "input", "output" and "error". `finished` is
// called for each as it ends. The caller's process must have one thread.
std::vector<nlohmann::ordered_json>
renderAll(std::span<const RenderJob> jobs, std::size_t parallel,
          const std::function<void(const nlohmann::ordered_json&)>& finished);

} // namespace mirelon::tools
