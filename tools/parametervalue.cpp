#include "tools/parametervalue.h"

#include "tools/commanderror.h"
#include "tools/nearestname.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace mirelon::tools {

namespace {

constexpr int searchSteps = 1000;
constexpr int bisections = 32;

// A display as a number and what follows it: "20L" is 20 and "L".
struct ShownNumber {
    double number;
    std::string unit;
};

std::optional<ShownNumber> shownNumber(std::string_view text) {
    text = trimmed(text);
    if (text.size() > 1 && text.front() == '+')
        text.remove_prefix(1);
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, failure] = std::from_chars(text.data(), end, number);
    if (failure != std::errc{} || !std::isfinite(number))
        return std::nullopt;
    return ShownNumber{number, std::string(trimmed({rest, static_cast<std::size_t>(end - rest)}))};
}

std::optional<float> normalisedNumber(std::string_view text) {
    const auto shown = shownNumber(text);
    if (!shown || !shown->unit.empty() || shown->number < 0.0 || shown->number > 1.0)
        return std::nullopt;
    return static_cast<float>(shown->number);
}

// Finds the value for which a parameter shows a text, by looking.
class DisplaySearch {
  public:
    DisplaySearch(hosting::Effect& effect_, VstInt32 index_)
        : effect(effect_)
        , index(index_)
        , original(effect.parameter(index)) {
        for (int step = 0; step <= searchSteps; ++step)
            shown.push_back(display(valueOf(step)));
    }
    ~DisplaySearch() { effect.setParameter(index, original); }
    DisplaySearch(const DisplaySearch&) = delete;
    DisplaySearch& operator=(const DisplaySearch&) = delete;

    // The middle of the values that show exactly `wanted`, or the end of the
    // range where they reach it.
    std::optional<float> exact(std::string_view wanted) const {
        int first = 0;
        while (first <= searchSteps && !sameName(at(first), wanted))
            ++first;
        if (first > searchSteps)
            return std::nullopt;
        int last = first;
        while (last < searchSteps && sameName(at(last + 1), wanted))
            ++last;
        if (first == 0 || last == searchSteps)
            return first == 0 ? 0.0F : 1.0F;
        return valueOf((first + last + 1) / 2);
    }

    // The middle of the values that show the wanted number, or the value around
    // which the display leaps over it; nothing when it lies outside of what is
    // shown.
    std::optional<float> between(const ShownNumber& wanted) const {
        for (int step = 0; step < searchSteps; ++step) {
            const auto low = distance(at(step), wanted);
            const auto high = distance(at(step + 1), wanted);
            if (!low || !high || *low == *high || *low * *high > 0.0)
                continue;
            const bool rising = *low < *high;
            const float first = edge(std::max(step - 1, 0), rising, false, wanted);
            const float last = edge(std::max(step - 1, 0), rising, true, wanted);
            return (first + last) / 2.0F;
        }
        return std::nullopt;
    }

    std::string range() const { return '"' + shown.front() + "\" to \"" + shown.back() + '"'; }

  private:
    static float valueOf(int step) {
        return static_cast<float>(step) / static_cast<float>(searchSteps);
    }

    const std::string& at(int step) const { return shown[static_cast<std::size_t>(step)]; }

    std::string display(float value) const {
        effect.setParameter(index, value);
        return effect.parameterDisplay(index);
    }

    // How far a display lies above the wanted number, if it has the same unit.
    static std::optional<double> distance(std::string_view text, const ShownNumber& wanted) {
        const auto number = shownNumber(text);
        if (!number || !sameName(number->unit, wanted.unit))
            return std::nullopt;
        return number->number - wanted.number;
    }

    // Where, from `step` on, the display reaches the wanted number, or where it
    // goes past it.
    float edge(int step, bool rising, bool past, const ShownNumber& wanted) const {
        float low = valueOf(step);
        float high = valueOf(std::min(step + 3, searchSteps));
        for (int i = 0; i < bisections; ++i) {
            const float middle = (low + high) / 2.0F;
            const double above = distance(display(middle), wanted).value_or(0.0);
            const double ahead = rising ? above : -above;
            ((past ? ahead > 0.0 : ahead >= 0.0) ? high : low) = middle;
        }
        return high;
    }

    hosting::Effect& effect;
    VstInt32 index;
    float original;
    std::vector<std::string> shown;
};

// "-6 dB" without the parameter's label.
std::string_view withoutLabel(std::string_view text, std::string_view label) {
    text = trimmed(text);
    label = trimmed(label);
    if (!label.empty() && text.size() > label.size() &&
        sameName(text.substr(text.size() - label.size()), label))
        text.remove_suffix(label.size());
    return trimmed(text);
}

float parseValue(hosting::Effect& effect, VstInt32 index, const std::string& text) {
    if (const auto number = normalisedNumber(text))
        return *number;
    const float before = effect.parameter(index);
    if (effect.setParameterText(index, text)) {
        const float converted = effect.parameter(index);
        effect.setParameter(index, before);
        return converted;
    }
    const std::string_view wanted = withoutLabel(text, effect.parameterLabel(index));
    const DisplaySearch search(effect, index);
    if (const auto value = search.exact(wanted))
        return *value;
    if (const auto number = shownNumber(wanted)) {
        if (const auto value = search.between(*number))
            return *value;
    }
    throw CommandError("\"" + text + "\" is no value of " + effect.parameterName(index) +
                       ": give a number from 0 to 1, or what it shows, " + search.range());
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

ParameterSetting parseSetting(hosting::Effect& effect, const std::string& text) {
    const auto [name, value] = splitAt(text, '=', "NAME=VALUE");
    const VstInt32 index = findParameter(effect, name);
    return {index, parseValue(effect, index, value)};
}

ParameterRamp parseRamp(hosting::Effect& effect, const std::string& text) {
    const char* const form = "NAME=FIRST:LAST";
    const auto [name, values] = splitAt(text, '=', form);
    const auto [first, last] = splitAt(values, ':', form);
    const VstInt32 index = findParameter(effect, name);
    return {index, parseValue(effect, index, first), parseValue(effect, index, last)};
}

std::string parameterText(const hosting::Effect& effect, VstInt32 index) {
    const std::string label{trimmed(effect.parameterLabel(index))};
    return effect.parameterName(index) + ' ' + effect.parameterDisplay(index) +
           (label.empty() ? "" : ' ' + label);
}

} // namespace mirelon::tools
