#include "tools/presettable.h"

#include "tools/imagefile.h"
#include "tools/nearestname.h"
#include "tools/parametervalue.h"

#include <algorithm>
#include <cstdio>

namespace mirelon::tools {

namespace {

std::string shown(hosting::Effect& effect, VstInt32 index, float value) {
    if (!isNormalised(value)) {
        char text[32];
        std::snprintf(text, sizeof text, "%.4g!", static_cast<double>(value));
        return text;
    }
    effect.setParameter(index, value);
    const std::string unit(trimmed(effect.parameterLabel(index)));
    return effect.parameterDisplay(index) + (unit.empty() ? "" : ' ' + unit);
}

} // namespace

void printPresets(hosting::Effect& effect, std::span<const PresetRecord> presets) {
    std::vector<std::vector<std::string>> columns;
    for (VstInt32 index = 0; index < kNumPresetParams; ++index) {
        std::vector<std::string>& column = columns.emplace_back(1, effect.parameterName(index));
        for (const PresetRecord& preset : presets)
            column.push_back(shown(effect, index, preset.value(index)));
    }
    for (std::size_t row = 0; row <= presets.size(); ++row) {
        const std::string number = row == 0 ? "" : std::to_string(row - 1);
        if (presets.size() > 1)
            std::printf("%4s", number.c_str());
        std::printf("  %-24s", row == 0 ? "" : nameOf(presets[row - 1]).c_str());
        for (const std::vector<std::string>& column : columns) {
            std::size_t width = 0;
            for (const std::string& text : column)
                width = std::max(width, text.size());
            std::printf("  %*s", static_cast<int>(width), column[row].c_str());
        }
        std::printf("\n");
    }
}

} // namespace mirelon::tools
