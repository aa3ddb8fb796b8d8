#include "tools/effectsettings.h"

#include "tools/parametervalue.h"
#include "tools/presets.h"
#include "tools/warning.h"

namespace mirelon::tools {

std::string choosePreset(hosting::Effect& effect, const std::string& numberOrName) {
    Presets presets(effect);
    const std::size_t number = presets.find(numberOrName);
    presets.select(number);
    return "preset " + std::to_string(number) + " \"" + presets.names()[number] + '"';
}

std::string applySetting(hosting::Effect& effect, const TypedSetting& setting,
                         const Remark& remark) {
    const ParameterSetting parsed = parseSetting(effect, setting);
    if (!parsed.remark.empty())
        remark(parsed.remark);
    effect.setParameter(parsed.index, parsed.value);
    return parameterText(effect, parsed.index);
}

void applySettings(hosting::Effect& effect, const EffectSettings& wanted) {
    if (wanted.preset)
        choosePreset(effect, *wanted.preset);
    for (const TypedSetting& setting : wanted.settings)
        applySetting(effect, setting, warn);
}

} // namespace mirelon::tools
