// What is wrong with a preset or bank file, and where.
#pragma once

#include "shell/vst24.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

struct ImageProblem {
    std::size_t offset; // of the first byte that is meant
    std::string text;
};

struct ImageReport {
    std::vector<ImageProblem> problems; // the plug-in does not load it as meant
    std::vector<std::string> notes;     // worth knowing, nothing wrong
};

// `file` is where the bytes come from: its extension tells what it claims to
// be. `parameters` are the names of the nine parameters.
ImageReport examine(const std::filesystem::path& file, std::span<const std::byte> bytes,
                    VstInt32 ownerId, std::span<const std::string> parameters);

} // namespace mirelon::tools
