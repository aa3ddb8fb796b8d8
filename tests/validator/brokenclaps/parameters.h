// The parameters of the test plug-in as its host sees them, and the events that set them.
#pragma once

#include "tests/validator/brokenclaps/plugin.h"

#include <clap/events.h>
#include <clap/ext/params.h>
#include <cstdint>
#include <limits>

namespace mirelon::test::brokenclaps {

enum class Way { process, flush };

constexpr std::uint32_t everyTime = std::numeric_limits<std::uint32_t>::max();

// The events of a cycle up to a time, from the one that is next.
class Events {
  public:
    // `list` may be null.
    Events(Plugin& plugin, const clap_input_events* list, Way way);

    void applyUntil(std::uint32_t time);

  private:
    void apply(const clap_event_header& event);
    bool isLost(const clap_event_header& event) const;

    Plugin& self;
    const clap_input_events* list;
    Way way;
    std::uint32_t count;
    std::uint32_t next = 0;
    std::uint32_t last = 0;
    bool applied = false;
};

// Where transcripts are kept: tells of a parameter so often that a list of events that its
// host does not empty between calls is full before long, and keeps the answers.
void fill(const clap_output_events* out, Plugin& self);

extern const clap_plugin_params params;

} // namespace mirelon::test::brokenclaps
