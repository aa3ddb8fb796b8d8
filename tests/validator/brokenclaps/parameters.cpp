#include "tests/validator/brokenclaps/parameters.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace mirelon::test::brokenclaps {

namespace {

int listings = 0;

double rangeOf(std::uint32_t place) {
    return highest.at(place) - lowest.at(place);
}
// Of the range: on either side of where the validator draws the line.
constexpr double justAnInaccuracy = 0.045;
constexpr double justAnotherValue = 0.055;

std::uint32_t placeOf(clap_id id) {
    if (hasDefect("identifier-wraps"))
        return id % parameterCount;
    return static_cast<std::uint32_t>(std::ranges::find(identifiers, id) - identifiers.begin());
}

std::uint32_t countParameters(const clap_plugin*) {
    return hasDefect("parameterless") ? 0 : parameterCount;
}

bool describeParameter(const clap_plugin* plugin, std::uint32_t index, clap_param_info* info) {
    transcript.note("get_info", 0, index);
    if (index >= parameterCount && !hasDefect("index-unchecked"))
        return false;
    const std::uint32_t place = std::min(index, parameterCount - 1);
    *info = {};
    info->id = identifiers.at(place);
    info->flags = CLAP_PARAM_IS_AUTOMATABLE | (place == mode ? CLAP_PARAM_IS_STEPPED : 0);
    info->min_value = lowest.at(place);
    info->max_value = highest.at(place);
    info->default_value = initial.at(place);
    constexpr std::array names{"Gain", "Mode", "Tone"};
    std::strncpy(info->name, names.at(place), sizeof info->name - 1);
    if (hasDefect("name-changes"))
        std::snprintf(info->name, sizeof info->name, "Name %d", listings++);
    if (hasDefect("identifiers-twice"))
        info->id = identifiers[gain];
    if (hasDefect("identifier-of-none") && place == tone)
        info->id = CLAP_INVALID_ID;
    if (hasDefect("identifiers-per-instance"))
        info->id += static_cast<clap_id>(of(plugin).number);
    if (hasDefect("infinite-range") && place == tone)
        info->max_value = std::numeric_limits<double>::infinity();
    if (hasDefect("inverted-range") && place == tone)
        std::swap(info->min_value, info->max_value);
    if (hasDefect("default-beyond-range") && place == tone)
        info->default_value = 13.0;
    if (hasDefect("fractional-steps") && place == mode)
        info->max_value = 3.5;
    return true;
}

bool value(const clap_plugin* plugin, clap_id id, double* result) {
    transcript.note("get_value", 0, id);
    Plugin& self = of(plugin);
    if (hasDefect("bound-to-thread") && self.maker != std::this_thread::get_id())
        std::abort();
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || (hasDefect("value-missing") && place == tone))
        return false;
    *result = hasDefect("value-beyond-range") ? highest.at(place) + 1.0 : self.at(place);
    if (hasDefectNow("value-moves"))
        *result = (lowest.at(place) + *result) / 2.0;
    return true;
}

bool textOf(const clap_plugin*, clap_id id, double number, char* text, std::uint32_t size) {
    transcript.note("value_to_text", 0, id, number, size);
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || hasDefect("text-missing"))
        return false;
    if (place == mode)
        number = std::round(number);
    if (hasDefect("text-overflows")) {
        std::sprintf(text, "%.4f", number);
        return true;
    }
    if (hasDefect("text-without-end")) {
        std::fill_n(text, size, '1');
        return true;
    }
    const int length = std::snprintf(text, size, "%.4f", number);
    return length >= 0 && static_cast<std::uint32_t>(length) < size;
}

bool valueOf(const clap_plugin*, clap_id id, const char* text, double* number) {
    transcript.note("text_to_value", 0, id, text);
    const std::uint32_t place = placeOf(id);
    if (place >= parameterCount || hasDefect("text-unread"))
        return false;
    *number = std::strtod(text, nullptr);
    const double range = rangeOf(place);
    if (hasDefect("text-misread"))
        *number += range / 2.0;
    if (hasDefect("text-read-roughly"))
        *number += range / 50.0;
    if (hasDefect("text-read-nearby"))
        *number += justAnInaccuracy * range;
    if (hasDefect("text-read-as-another"))
        *number += justAnotherValue * range;
    return true;
}

void setValue(Plugin& self, std::uint32_t place, double number) {
    if (place >= parameterCount) {
        if (!hasDefect("unknown-set"))
            return;
        place = gain;
    }
    number = std::clamp(number, lowest.at(place), highest.at(place));
    if (hasDefect("quantised") && place == tone)
        number = std::round(number);
    if (hasDefect("set-nearby"))
        number += justAnInaccuracy * rangeOf(place);
    if (hasDefect("set-to-another"))
        number += justAnotherValue * rangeOf(place);
    self.at(place) = place == mode ? std::round(number) : number;
}

void flush(const clap_plugin* plugin, const clap_input_events* in, const clap_output_events* out) {
    Plugin& self = of(plugin);
    transcript.note("flush", 0, in != nullptr);
    fill(out, self);
    allocateIf("flush-allocates");
    if ((hasDefect("flush-ignored") && !self.active) ||
        (hasDefect("flush-ignored-in-pauses") && self.active && !self.processing))
        return;
    Events(self, in, Way::flush).applyUntil(everyTime);
}

} // namespace

void fill(const clap_output_events* out, Plugin& self) {
    if (!transcript.isKept() || out == nullptr)
        return;
    const clap_event_param_value told{
        .header = {sizeof told, 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0},
        .param_id = identifiers[gain],
        .cookie = nullptr,
        .note_id = -1,
        .port_index = -1,
        .channel = -1,
        .key = -1,
        .value = self.at(gain)};
    for (int i = 0; i < 100; ++i)
        transcript.note("try_push", 0, out->try_push(out, &told.header));
}

Events::Events(Plugin& plugin, const clap_input_events* list, Way way)
    : self(plugin)
    , list(list)
    , way(way)
    , count(list != nullptr ? list->size(list) : 0) {}

void Events::applyUntil(std::uint32_t time) {
    for (; next < count && list->get(list, next)->time <= time; ++next)
        apply(*list->get(list, next));
}

void Events::apply(const clap_event_header& event) {
    transcript.note("event", event.type, event.space_id, event.time, event.flags, event.size);
    if (event.size >= sizeof(clap_event_param_value)) {
        const auto& set = reinterpret_cast<const clap_event_param_value&>(event);
        transcript.note("event's value", event.type, set.param_id, set.value);
    }
    const bool rightSpace =
        event.space_id == CLAP_CORE_EVENT_SPACE_ID || hasDefect("space-unchecked");
    const bool rightType = event.type == CLAP_EVENT_PARAM_VALUE || hasDefect("type-unchecked");
    if (!rightSpace || !rightType || event.size < sizeof(clap_event_param_value))
        return;
    if (way == Way::process && isLost(event))
        return;
    const auto& set = reinterpret_cast<const clap_event_param_value&>(event);
    last = event.time;
    applied = true;
    setValue(self, placeOf(set.param_id), set.value);
}

bool Events::isLost(const clap_event_header& event) const {
    return hasDefect("events-ignored") || (hasDefect("first-event-only") && applied) ||
           (hasDefect("one-event-a-frame") && applied && last == event.time) ||
           (hasDefect("last-frame-lost") && count == 1 && event.time == 63);
}

const clap_plugin_params params{countParameters, describeParameter, value, textOf, valueOf, flush};

} // namespace mirelon::test::brokenclaps
