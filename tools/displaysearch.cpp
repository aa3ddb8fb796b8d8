#include "tools/displaysearch.h"

#include "tools/nearestname.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace mirelon::tools {

namespace {

constexpr int searchSteps = 1000;
constexpr int bisections = 32;

float valueOf(int step) {
    return static_cast<float>(step) / static_cast<float>(searchSteps);
}

// How far a text lies above the wanted number, if it has the same unit.
std::optional<double> distance(std::string_view text, const ShownNumber& wanted) {
    const auto number = shownNumber(text);
    if (!number || !sameName(number->unit, wanted.unit))
        return std::nullopt;
    return number->number - wanted.number;
}

bool shows(std::string_view text, const ShownNumber& wanted) {
    return distance(text, wanted) == 0.0;
}

} // namespace

std::optional<ShownNumber> shownNumber(std::string_view text) {
    std::string plain{trimmed(text)};
    std::ranges::replace(plain, ',', '.');
    const bool plus = plain.size() > 1 && plain[0] == '+' && plain[1] != '-';
    const char* const begin = plain.data() + (plus ? 1 : 0);
    const char* const end = plain.data() + plain.size();
    double number = 0.0;
    const auto [rest, failure] = std::from_chars(begin, end, number, std::chars_format::fixed);
    if (failure != std::errc{} || !std::isfinite(number))
        return std::nullopt;
    const char* const point = std::find(begin, rest, '.');
    const auto decimals = point == rest ? 0 : rest - point - 1;
    return ShownNumber{number, std::string(trimmed({rest, static_cast<std::size_t>(end - rest)})),
                       std::pow(10.0, -static_cast<double>(decimals))};
}

std::string_view withoutLabel(std::string_view text, std::string_view label) {
    text = trimmed(text);
    label = trimmed(label);
    if (!label.empty() && text.size() > label.size() &&
        sameName(text.substr(text.size() - label.size()), label))
        text.remove_suffix(label.size());
    return trimmed(text);
}

DisplaySearch::DisplaySearch(hosting::Effect& effect_, VstInt32 index_)
    : effect(effect_)
    , index(index_)
    , original(effect.parameter(index))
    , label(effect.parameterLabel(index))
    , shownAtFirst(withoutLabel(effect.parameterDisplay(index), label)) {
    for (int step = 0; step <= searchSteps; ++step)
        shown.push_back(display(valueOf(step)));
}

DisplaySearch::~DisplaySearch() {
    effect.setParameter(index, original);
}

std::string DisplaySearch::display(float value) const {
    effect.setParameter(index, value);
    return std::string(withoutLabel(effect.parameterDisplay(index), label));
}

std::optional<float> DisplaySearch::find(std::string_view wanted) const {
    wanted = withoutLabel(wanted, label);
    if (const auto value = sameText(wanted))
        return value;
    if (const auto number = shownNumber(wanted))
        return sameNumber(*number);
    return std::nullopt;
}

std::string DisplaySearch::range() const {
    return '"' + shown.front() + "\" to \"" + shown.back() + '"';
}

std::optional<float> DisplaySearch::sameText(std::string_view wanted) const {
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
    if (sameName(shownAtFirst, wanted))
        return original;
    return valueOf((first + last + 1) / 2);
}

// The middle of the values that show the wanted number, or the value around which
// the display leaps over it.
std::optional<float> DisplaySearch::sameNumber(ShownNumber wanted) const {
    if (wanted.unit.empty())
        wanted.unit = commonUnit();
    if (shows(shown.front(), wanted))
        return 0.0F;
    if (shows(shown.back(), wanted))
        return 1.0F;
    if (shows(shownAtFirst, wanted))
        return original;
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
    return beyondTheEnds(wanted);
}

std::optional<float> DisplaySearch::beyondTheEnds(const ShownNumber& wanted) const {
    const auto first = distance(shown.front(), wanted);
    const auto last = distance(shown.back(), wanted);
    if (!first || !last || *first == *last || *first * *last < 0.0)
        return std::nullopt;
    return std::fabs(*first) < std::fabs(*last) ? 0.0F : 1.0F;
}

// Empty where there are several, or none.
std::string DisplaySearch::commonUnit() const {
    std::optional<std::string> common;
    for (const std::string& text : shown) {
        const auto number = shownNumber(text);
        if (!number)
            continue;
        if (common && !sameName(*common, number->unit))
            return {};
        common = number->unit;
    }
    return common.value_or("");
}

// Where, from `step` on, the display reaches the wanted number, or where it goes
// past it.
float DisplaySearch::edge(int step, bool rising, bool past, const ShownNumber& wanted) const {
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

} // namespace mirelon::tools
