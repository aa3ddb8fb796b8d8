// A CLAP state through streams as hosts have them: in parts, cut short, failing.
#include "hosting/clapstreams.h"
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"

#include <array>

namespace mirelon::validator {

namespace {

constexpr std::array<std::size_t, 3> steps{1, 7, 691};

// An instance with a state worth keeping, and what it was.
struct Saved {
    explicit Saved(const Subject& subject)
        : library(subject.plugin)
        , plugIn(library)
        , noise(subject.seed) {
        if (plugIn.plugIn().extension<clap_plugin_state>(CLAP_EXT_STATE) == nullptr)
            throw Skipped("keeps no state of its own");
        plugIn.scramble(noise);
        values = plugIn.values();
        doing("saving its state");
        const auto bytes = plugIn.plugIn().save();
        require(bytes.has_value(), "does not save its state");
        state = *bytes;
        require(!state.empty(), "saves an empty state");
    }

    // The first parameter whose value is another one, if there is any.
    std::optional<std::string> differenceTo(const std::vector<double>& wanted) {
        constexpr double rounding = 1e-4; // as of a state that is a text
        plugIn.plugIn().serve();
        const auto now = plugIn.values();
        for (std::size_t i = 0; i < now.size(); ++i)
            if (distance(plugIn.parameters()[i], now[i], wanted[i]) > rounding)
                return joined(nameOf(plugIn.parameters()[i]), " is ", now[i], ", not ", wanted[i]);
        return std::nullopt;
    }

    hosting::ClapLibrary library;
    ClapSubject plugIn;
    Noise noise;
    std::vector<double> values;
    std::vector<std::byte> state;
};

std::string inParts(const Subject& subject) {
    Saved saved(subject);
    hosting::ClapInstance& plugIn = saved.plugIn.plugIn();
    const bool repeats = plugIn.save() == saved.state;
    for (const std::size_t step : steps) {
        doing("saving its state through a stream that takes ", step, " bytes at a time");
        const auto parts = plugIn.save(step);
        require(parts.has_value(), "does not save its state through a stream that takes ", step,
                " bytes at a time");
        require(!repeats || *parts == saved.state, "saves ", parts->size(),
                " bytes through a stream that takes ", step, " bytes at a time, and ",
                saved.state.size(), " other ones at once");
        saved.plugIn.scramble(saved.noise);
        doing("loading its state of ", parts->size(), " bytes from a stream that gives ", step,
              " bytes at a time");
        require(plugIn.load(*parts, step), "refuses its own state of ", parts->size(),
                " bytes from a stream that gives ", step, " bytes at a time");
        const auto difference = saved.differenceTo(saved.values);
        require(!difference, difference.value_or(""),
                ", after its state came from a stream that "
                "gives ",
                step, " bytes at a time");
    }
    return std::to_string(saved.state.size()) + " bytes";
}

// The first `length` bytes of the state, then this end: taken whole or not at all.
void loadBeginning(Saved& saved, std::size_t length, hosting::StreamEnd end) {
    const char* const how = end == hosting::StreamEnd::failed ? " fails after " : " ends after ";
    const std::string what =
        joined("a stream that", how, length, " of ", saved.state.size(), " bytes");
    saved.plugIn.scramble(saved.noise);
    const auto before = saved.plugIn.values();
    doing("loading its state from ", what);
    const hosting::ClapInputStream stream(std::span(saved.state).first(length),
                                          hosting::anyNumberOfBytes, end);
    const bool taken = saved.plugIn.plugIn().load(*stream.stream());
    const auto difference = saved.differenceTo(taken ? saved.values : before);
    require(!difference, taken ? "takes " : "refuses ", what,
            taken ? " for a state, but " : ", but ", difference.value_or(""));
}

std::array<std::size_t, 5> lengthsWithin(std::size_t size) {
    return {0, std::min<std::size_t>(1, size), std::min<std::size_t>(7, size), size / 2, size - 1};
}

void requireWholeAgain(Saved& saved) {
    doing("loading its whole state afterwards");
    require(saved.plugIn.plugIn().load(saved.state),
            "refuses its own state after one that was cut short");
    const auto difference = saved.differenceTo(saved.values);
    require(!difference, difference.value_or(""), ", after a whole state followed one cut short");
}

std::string cutShort(const Subject& subject) {
    Saved saved(subject);
    for (const std::size_t length : lengthsWithin(saved.state.size()))
        loadBeginning(saved, length, hosting::StreamEnd::reached);
    requireWholeAgain(saved);
    return {};
}

std::string failing(const Subject& subject) {
    Saved saved(subject);
    const std::size_t size = saved.state.size();
    for (const std::size_t length : lengthsWithin(size)) {
        loadBeginning(saved, length, hosting::StreamEnd::failed);
        doing("saving its state into a stream that fails after ", length, " of ", size, " bytes");
        const hosting::ClapOutputStream stream(hosting::anyNumberOfBytes, length);
        require(!saved.plugIn.plugIn().save(*stream.stream()),
                "says that it has saved its state into a stream that failed after ", length, " of ",
                size, " bytes");
    }
    requireWholeAgain(saved);
    return {};
}

constexpr std::array clapstateTable{
    Check{"state-in-parts", 4, Formats::clap, inParts, 60},
    Check{"state-cut-short", 9, Formats::clap, cutShort, 30, Guard::none, Severity::unusual},
    Check{"state-stream-fails", 9, Formats::clap, failing, 30, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> clapStateChecks() {
    return clapstateTable;
}

} // namespace mirelon::validator
