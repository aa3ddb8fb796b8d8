#include "tools/audio/material.h"

#include "tools/audio/audioreader.h"
#include "tools/commanderror.h"
#include "tools/warning.h"

namespace mirelon::tools {

Material readMaterial(const std::filesystem::path& file) {
    constexpr std::size_t blockFrames = 4096;
    AudioReader reader(file);
    Material material;
    material.rate = reader.sampleRate();
    std::vector<double> left(blockFrames);
    std::vector<double> right(blockFrames);
    while (const std::size_t count = reader.read(left, right)) {
        for (std::size_t i = 0; i < count; ++i) {
            material.channels[0].push_back(static_cast<float>(left[i]));
            material.channels[1].push_back(static_cast<float>(right[i]));
        }
    }
    if (reader.missingFrames() > 0)
        warn(reader.shortfall());
    if (material.frames() == 0)
        throw CommandError(file.string() + ": there is no sound in it");
    return material;
}

} // namespace mirelon::tools
