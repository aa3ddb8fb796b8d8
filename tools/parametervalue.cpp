#include "tools/parametervalue.h"

#include "processor/core/parameters.h"
#include "tools/commanderror.h"
#include "tools/displaysearch.h"
#include "tools/nearestname.h"

#include <cmath>
#include <optional>
#include <utility>

namespace mirelon::tools {

namespace {

// Whether its parameters are Mirelon's, in whatever format, whose texts have an
// exact way back.
bool hasOwnParameters(const hosting::Effect& effect) {
    return effect.record().uniqueID == effectId && effect.record().numParams == kNumParams;
}

// The effect's own conversion. Some claim to have one and do nothing: what counts
// is that it leads to the same value from both ends of the range.
std::optional<float> convertedByEffect(hosting::Effect& effect, VstInt32 index,
                                       const std::string& text) {
    const float before = effect.parameter(index);
    const auto from = [&](float start) -> std::optional<float> {
        effect.setParameter(index, start);
        if (!effect.setParameterText(index, text))
            return std::nullopt;
        return effect.parameter(index);
    };
    const auto fromLowest = from(0.0F);
    const auto fromHighest = fromLowest ? from(1.0F) : std::nullopt;
    effect.setParameter(index, before);
    if (!fromHighest || *fromLowest != *fromHighest || !(*fromLowest >= 0.0F) || *fromLowest > 1.0F)
        return std::nullopt;
    return fromLowest;
}

float shownValue(hosting::Effect& effect, VstInt32 index, const std::string& text) {
    if (hasOwnParameters(effect)) {
        if (const auto value = parameterValueOf(index, text))
            return *value;
    } else if (const auto converted = convertedByEffect(effect, index, text)) {
        return *converted;
    }
    const DisplaySearch search(effect, index);
    if (!hasOwnParameters(effect)) {
        if (const auto value = search.find(text))
            return *value;
    }
    throw CommandError("\"" + text + "\" is no value of " + effect.parameterName(index) +
                       ": give what it shows, " + search.range() +
                       ", or a number from 0 to 1 with --set-normalised");
}

float normalisedValue(const hosting::Effect& effect, VstInt32 index, const std::string& text) {
    const auto number = shownNumber(text);
    if (!number || !number->unit.empty() || number->number < 0.0 || number->number > 1.0)
        throw CommandError("\"" + text + "\" is no normalised value of " +
                           effect.parameterName(index) + ": give a number from 0 to 1");
    return static_cast<float>(number->number);
}

// Says so where the end of the range was taken for a number beyond it.
std::string remarkOn(hosting::Effect& effect, VstInt32 index, float value,
                     const std::string& text) {
    const std::string label = effect.parameterLabel(index);
    const auto wanted = shownNumber(withoutLabel(text, label));
    if (!wanted || (value != 0.0F && value != 1.0F))
        return {};
    const float before = effect.parameter(index);
    effect.setParameter(index, value);
    const auto shown = shownNumber(withoutLabel(effect.parameterDisplay(index), label));
    const std::string taken = parameterText(effect, index);
    effect.setParameter(index, before);
    if (!shown || std::fabs(wanted->number) < std::fabs(shown->number) + shown->step)
        return {};
    return "\"" + text + "\" is beyond the range of " + effect.parameterName(index) +
           ", taken as " + taken;
}

ParameterSetting parseValue(hosting::Effect& effect, VstInt32 index, const std::string& text,
                            Scale scale) {
    if (scale == Scale::normalised)
        return {index, normalisedValue(effect, index, text), {}};
    const float value = shownValue(effect, index, text);
    return {index, value, remarkOn(effect, index, value, text)};
}

std::pair<std::string, std::string> splitAt(const std::string& text, char separator,
                                            const char* form) {
    const auto place = text.find(separator);
    if (place == std::string::npos)
        throw CommandError("\"" + text + "\" is not " + form);
    return {text.substr(0, place), text.substr(place + 1)};
}

VstInt32 findParameter(const hosting::Effect& effect, const std::string& name) {
    const std::vector<std::string> names = parameterNames(effect);
    const auto found = findName(name, names);
    if (!found)
        throw CommandError(unknownName("parameter", name, names));
    return static_cast<VstInt32>(*found);
}

} // namespace

std::vector<std::string> parameterNames(const hosting::Effect& effect) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(effect.record().numParams));
    for (VstInt32 index = 0; index < effect.record().numParams; ++index)
        names.push_back(effect.parameterName(index));
    return names;
}

ParameterSetting parseSetting(hosting::Effect& effect, const TypedSetting& setting) {
    const auto [name, value] = splitAt(setting.text, '=', "NAME=VALUE");
    return parseValue(effect, findParameter(effect, name), value, setting.scale);
}

ParameterRamp parseRamp(hosting::Effect& effect, const TypedSetting& setting) {
    const char* const form = "NAME=FIRST:LAST";
    const auto [name, values] = splitAt(setting.text, '=', form);
    const auto [first, last] = splitAt(values, ':', form);
    const VstInt32 index = findParameter(effect, name);
    return {parseValue(effect, index, first, setting.scale),
            parseValue(effect, index, last, setting.scale)};
}

std::string parameterText(const hosting::Effect& effect, VstInt32 index) {
    const std::string label{trimmed(effect.parameterLabel(index))};
    return effect.parameterName(index) + ' ' + effect.parameterDisplay(index) +
           (label.empty() ? "" : ' ' + label);
}

} // namespace mirelon::tools
