#include "tools/effectsettings.h"

#include "tools/parametervalue.h"
#include "tools/presets.h"

namespace mirelon::tools {

void applySettings(hosting::Effect& effect, const std::string& preset,
                   const std::vector<std::string>& settings) {
    if (!preset.empty()) {
        Presets presets(effect);
        presets.select(presets.find(preset));
    }
    for (const std::string& text : settings) {
        const ParameterSetting setting = parseSetting(effect, text);
        effect.setParameter(setting.index, setting.value);
    }
}

} // namespace mirelon::tools
