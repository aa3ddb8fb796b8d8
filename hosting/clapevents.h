// Lists of events, as a CLAP host hands them to a plug-in and takes them from it.
#pragma once

#include <clap/events.h>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace mirelon::hosting {

inline clap_event_param_value clapValueEvent(std::uint32_t time, clap_id parameter, double value) {
    clap_event_param_value event{};
    event.header = {sizeof event, time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
    event.param_id = parameter;
    event.note_id = event.port_index = event.channel = event.key = -1;
    event.value = value;
    return event;
}

// Events for one cycle, in the order in which they were added, which plug-ins
// may expect to be that of their times.
class ClapInputEvents {
  public:
    // So many are then added without allocating.
    void reserve(std::size_t count) { events.reserve(count); }
    void add(const clap_event_param_value& event) { events.push_back(event); }
    void clear() noexcept { events.clear(); }
    const clap_input_events* list() const noexcept { return &record; }

    ClapInputEvents() = default;
    ClapInputEvents(const ClapInputEvents&) = delete;
    ClapInputEvents& operator=(const ClapInputEvents&) = delete;

  private:
    static const ClapInputEvents& of(const clap_input_events* list) {
        return *static_cast<const ClapInputEvents*>(list->ctx);
    }

    std::vector<clap_event_param_value> events;
    clap_input_events record{this,
                             [](const clap_input_events* list) {
                                 return static_cast<std::uint32_t>(of(list).events.size());
                             },
                             [](const clap_input_events* list, std::uint32_t index) {
                                 const auto& all = of(list).events;
                                 return index < all.size() ? &all[index].header : nullptr;
                             }};
};

// What a plug-in has told of its parameters.
struct ClapTold {
    std::uint16_t type; // a value, or a gesture's begin or end
    clap_id parameter;
    double value; // of a value
    bool operator==(const ClapTold&) const = default;
};

// Takes up to `room` events, without allocating; other kinds are taken and
// forgotten.
class ClapOutputEvents {
  public:
    explicit ClapOutputEvents(std::size_t room_ = 4096)
        : room(room_) {
        events.reserve(room);
    }
    ClapOutputEvents(const ClapOutputEvents&) = delete;
    ClapOutputEvents& operator=(const ClapOutputEvents&) = delete;

    const std::vector<ClapTold>& told() const noexcept { return events; }
    void clear() noexcept { events.clear(); }
    const clap_output_events* list() const noexcept { return &record; }

  private:
    bool push(const clap_event_header& event) {
        if (events.size() == room)
            return false;
        if (event.space_id != CLAP_CORE_EVENT_SPACE_ID)
            return true;
        if (event.type == CLAP_EVENT_PARAM_VALUE) {
            const auto& set = reinterpret_cast<const clap_event_param_value&>(event);
            events.push_back({event.type, set.param_id, set.value});
        } else if (event.type == CLAP_EVENT_PARAM_GESTURE_BEGIN ||
                   event.type == CLAP_EVENT_PARAM_GESTURE_END) {
            const auto& gesture = reinterpret_cast<const clap_event_param_gesture&>(event);
            events.push_back({event.type, gesture.param_id, 0.0});
        }
        return true;
    }

    std::size_t room;
    std::vector<ClapTold> events;
    clap_output_events record{
        this, [](const clap_output_events* list, const clap_event_header* event) {
            return event != nullptr && static_cast<ClapOutputEvents*>(list->ctx)->push(*event);
        }};
};

} // namespace mirelon::hosting
