// Events of a CLAP host: at every time of a block, and of kinds that are not the
// plug-in's.
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"

#include <array>

namespace mirelon::validator {

namespace {

constexpr int block = 64;

struct Playing {
    explicit Playing(const Subject& subject)
        : library(subject.plugin)
        , plugIn(library)
        , noise(subject.seed) {
        plugIn.needParameters();
        plugIn.activate(48000.0, block);
    }

    double anyValue(const clap_param_info& parameter) {
        return valueAt(parameter, static_cast<double>(noise.fraction()));
    }

    hosting::ClapLibrary library;
    ClapSubject plugIn;
    Noise noise;
};

std::string everyFrame(const Subject& subject) {
    Playing playing(subject);
    ClapSubject& plugIn = playing.plugIn;
    for (const clap_param_info& parameter : plugIn.parameters()) {
        // The last of them is what counts after the block.
        double last = 0.0;
        const auto add = [&](int time, double value) {
            plugIn.add(static_cast<std::uint32_t>(time), parameter, last = value);
        };
        const auto requireLast = [&](const std::string& which) {
            doing("processing ", block, " frames with ", which, " for ", nameOf(parameter));
            plugIn.process(block, playing.noise, "with ", which);
            plugIn.requireValue(parameter, last, "by the last of ", which);
        };
        for (int time = 0; time < block; ++time)
            add(time, playing.anyValue(parameter));
        requireLast("an event at every frame");
        for (const double fraction : {0.2, 0.9, 0.6, 0.0})
            add(20, valueAt(parameter, fraction));
        requireLast("four events at frame 20");
        add(block - 1, valueAt(parameter, 1.0));
        requireLast("one event at the last frame");
    }
    doing("processing with an event for each parameter at every frame");
    for (int i = 0; i < 5; ++i) {
        for (int time = 0; time < block; ++time)
            for (const clap_param_info& parameter : plugIn.parameters())
                plugIn.add(static_cast<std::uint32_t>(time), parameter,
                           playing.anyValue(parameter));
        plugIn.process(block, playing.noise, "with events for each parameter at every frame");
    }
    return {};
}

std::string beyondBlock(const Subject& subject) {
    Playing playing(subject);
    ClapSubject& plugIn = playing.plugIn;
    for (const clap_param_info& parameter : plugIn.parameters())
        for (const std::uint32_t time : {64U, 65U, 127U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            doing("processing ", block, " frames with an event for ", nameOf(parameter),
                  " at frame ", time);
            plugIn.add(time, parameter, playing.anyValue(parameter));
            plugIn.process(block, playing.noise, "with an event at frame ", time, " of ", block);
        }
    const clap_param_info& parameter = plugIn.parameters().front();
    const double value = valueAt(parameter, 0.5);
    plugIn.add(0, parameter, value);
    plugIn.process(block, playing.noise, "after events beyond the block");
    plugIn.requireValue(parameter, value, "after events beyond the block");
    return {};
}

// An event of this space and type with the body of one that sets a parameter, whole or
// down to its header. None of its kind may set anything.
void sendStrange(Playing& playing, std::uint16_t space, std::uint16_t type, bool headerOnly) {
    ClapSubject& plugIn = playing.plugIn;
    for (std::size_t i = 0; i < plugIn.parameters().size(); ++i) {
        const clap_param_info& parameter = plugIn.parameters()[i];
        const auto before = plugIn.values();
        // At the other end of the range.
        const double other = distance(parameter, before[i], parameter.max_value) > 0.5 ? 1.0 : 0.0;
        auto event = hosting::clapValueEvent(3, parameter.id, valueAt(parameter, other));
        event.header.space_id = space;
        event.header.type = type;
        if (headerOnly)
            event.header.size = sizeof event.header;
        doing("sending an event of space ", space, ", type ", type, " and ", event.header.size,
              " bytes");
        plugIn.nextEvents().add(event);
        plugIn.process(block, playing.noise, "with an event of space ", space, " and type ", type);
        plugIn.nextEvents().add(event);
        plugIn.flush();
        plugIn.plugIn().serve();
        const auto now = plugIn.values();
        for (std::size_t j = 0; j < now.size(); ++j)
            require(now[j] == before[j], nameOf(plugIn.parameters()[j]), " moves from ", before[j],
                    " to ", now[j], " with an event of space ", space, " and type ", type,
                    ", which sets no parameter");
    }
}

std::string unknownTypes(const Subject& subject) {
    Playing playing(subject);
    for (const std::uint16_t type : std::array<std::uint16_t, 5>{64, 100, 999, 0x7FFF, 0xFFFF})
        for (const bool headerOnly : {false, true})
            sendStrange(playing, CLAP_CORE_EVENT_SPACE_ID, type, headerOnly);
    return {};
}

std::string foreignSpaces(const Subject& subject) {
    Playing playing(subject);
    for (const std::uint16_t space : std::array<std::uint16_t, 4>{1, 0x4D49, 0x8000, 0xFFFF})
        for (const std::uint16_t type :
             std::array<std::uint16_t, 3>{CLAP_EVENT_PARAM_VALUE, CLAP_EVENT_PARAM_MOD, 999})
            for (const bool headerOnly : {false, true})
                sendStrange(playing, space, type, headerOnly);
    return {};
}

std::string withoutAudio(const Subject& subject) {
    Playing playing(subject);
    ClapSubject& plugIn = playing.plugIn;
    const auto flushAll = [&](const char* state) {
        for (const clap_param_info& parameter : plugIn.parameters())
            for (const double fraction : {0.3, 1.0, 0.0, 0.6}) {
                const double value = valueAt(parameter, fraction);
                doing("setting ", nameOf(parameter), " to ", value, " with flush() ", state);
                plugIn.set(parameter, value);
                plugIn.requireValue(parameter, value, joined("with flush() ", state));
            }
        doing("calling flush() without events ", state);
        plugIn.flush();
    };
    plugIn.plugIn().deactivate();
    flushAll("while it is not active");
    plugIn.activate(48000.0, block);
    plugIn.plugIn().stopProcessing();
    flushAll("while it is active and not processing");
    require(plugIn.plugIn().startProcessing(), "cannot be started again after flush()");
    plugIn.process(block, playing.noise, "after flush()");
    return {};
}

constexpr std::array clapeventsTable{
    Check{"events-every-frame", 5, Formats::clap, everyFrame, 120},
    Check{"events-unknown-types", 5, Formats::clap, unknownTypes, 60},
    Check{"flush-without-audio", 5, Formats::clap, withoutAudio, 60},
    Check{"events-foreign-spaces", 8, Formats::clap, foreignSpaces, 60, Guard::none,
          Severity::unusual},
    Check{"events-beyond-block", 8, Formats::clap, beyondBlock, 60, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> clapEventChecks() {
    return clapeventsTable;
}

} // namespace mirelon::validator
