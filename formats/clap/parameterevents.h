// The events of a CLAP host that set parameters, and those that tell a host of
// changes.
#pragma once

#include "processor/core/parameters.h"

#include <clap/events.h>
#include <cstdint>
#include <optional>

namespace mirelon::clap {

struct ParameterEvent {
    std::uint32_t time; // frames from the start of the cycle
    int index;          // 0 to 8
    double value;       // whatever the host has sent
};

// Nothing for null and for events of other kinds, spaces, sizes and parameters.
// There are no notes here: for which of them an event is meant does not count.
inline std::optional<ParameterEvent> parameterEventIn(const clap_event_header* event) noexcept {
    if (event == nullptr || event->space_id != CLAP_CORE_EVENT_SPACE_ID ||
        event->type != CLAP_EVENT_PARAM_VALUE || event->size < sizeof(clap_event_param_value))
        return std::nullopt;
    const auto& set = *reinterpret_cast<const clap_event_param_value*>(event);
    if (set.param_id >= kNumParams)
        return std::nullopt;
    return ParameterEvent{event->time, static_cast<int>(set.param_id), set.value};
}

// Calls `take` with each of them, in the host's order. No list is an empty one.
template <typename Take>
void forEachParameterEvent(const clap_input_events* events, Take take) {
    if (events == nullptr || events->size == nullptr || events->get == nullptr)
        return;
    const std::uint32_t count = events->size(events);
    for (std::uint32_t i = 0; i < count; ++i)
        if (const auto event = parameterEventIn(events->get(events, i)))
            take(*event);
}

// False when the host has no room for the event.
template <typename Event>
bool pushEvent(const clap_output_events* events, Event event, std::uint16_t type) noexcept {
    event.header = {sizeof event, 0, CLAP_CORE_EVENT_SPACE_ID, type, CLAP_EVENT_IS_LIVE};
    return events->try_push(events, &event.header);
}

inline bool pushValue(const clap_output_events* events, int index, double value) noexcept {
    constexpr std::int16_t every = -1;
    clap_event_param_value event{};
    event.param_id = static_cast<clap_id>(index);
    event.note_id = every;
    event.port_index = event.channel = event.key = every;
    event.value = value;
    return pushEvent(events, event, CLAP_EVENT_PARAM_VALUE);
}

enum class GestureEdge { begin, end };

inline bool pushGesture(const clap_output_events* events, int index, GestureEdge edge) noexcept {
    clap_event_param_gesture event{};
    event.param_id = static_cast<clap_id>(index);
    return pushEvent(events, event,
                     edge == GestureEdge::begin ? CLAP_EVENT_PARAM_GESTURE_BEGIN
                                                : CLAP_EVENT_PARAM_GESTURE_END);
}

} // namespace mirelon::clap
