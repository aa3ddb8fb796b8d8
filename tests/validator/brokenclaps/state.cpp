#include "tests/validator/brokenclaps/state.h"

#include "tests/validator/brokenclaps/plugin.h"

#include <cstddef>
#include <cstdint>
#include <thread>

namespace mirelon::test::brokenclaps {

namespace {

struct State {
    std::uint32_t owner = 0x50414C43;
    std::uint32_t version = 1;
    Values values{};
    std::array<std::byte, 968> unused{};
};
static_assert(sizeof(State) == 1000);

bool save(const clap_plugin* plugin, const clap_ostream* stream) {
    transcript.note("save", 0);
    if (hasDefectNow("save-refused"))
        return false;
    State state;
    for (std::uint32_t place = 0; place < parameterCount; ++place)
        state.values.at(place) = of(plugin).at(place);
    thread_local int savings = 0;
    if (hasDefect("state-of-a-thread") && of(plugin).maker != std::this_thread::get_id())
        state.version = static_cast<std::uint32_t>(2 + savings);
    const auto* const bytes = reinterpret_cast<const std::byte*>(&state);
    for (std::size_t done = 0; done < sizeof state;) {
        const std::int64_t count = stream->write(stream, bytes + done, sizeof state - done);
        if (hasDefect("writes-once"))
            return count > 0;
        if (count <= 0)
            return hasDefect("write-errors-ignored");
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool load(const clap_plugin* plugin, const clap_istream* stream) {
    Plugin& self = of(plugin);
    State state;
    auto* const bytes = reinterpret_cast<std::byte*>(&state);
    std::size_t done = 0;
    while (done < sizeof state) {
        const std::int64_t count = stream->read(stream, bytes + done, sizeof state - done);
        if (count < 0 && hasDefect("read-errors-repeated"))
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
        if (hasDefect("reads-once"))
            break;
    }
    transcript.note("load", 0, Transcript::Bytes(bytes, done));
    const bool whole = done == sizeof state;
    if (hasDefectNow("load-refused"))
        return false;
    if (!whole && hasDefect("part-of-a-state-taken"))
        return true;
    if (!whole && !(hasDefect("state-applied-before-judged") && done >= 100))
        return false;
    self.values = state.values;
    if (hasDefect("state-for-all"))
        for (Plugin* const each : living)
            each->values = state.values;
    return whole;
}

} // namespace

const clap_plugin_state stateFunctions{save, load};

} // namespace mirelon::test::brokenclaps
