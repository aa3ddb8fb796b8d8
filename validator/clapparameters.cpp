// What a CLAP plug-in says of its parameters, and the ways from value to text and back.
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <set>

namespace mirelon::validator {

namespace {

constexpr std::array fractions{0.0, 0.01, 0.1, 0.25, 0.4, 0.5, 0.66, 0.75, 0.9, 1.0};

// All of them, with those that cannot be set.
std::vector<clap_param_info> listOf(const hosting::ClapInstance& plugIn) {
    std::vector<clap_param_info> list;
    const std::uint32_t count = plugIn.parameterCount();
    list.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        doing("asking for parameter number ", i, " of ", count);
        const auto info = plugIn.parameterInfo(i);
        require(info.has_value(), "describes no parameter number ", i, " of the ", count,
                " that it counts");
        list.push_back(*info);
    }
    if (list.empty())
        throw Skipped("has no parameters");
    return list;
}

bool isSame(const clap_param_info& one, const clap_param_info& other) {
    return one.id == other.id && one.flags == other.flags &&
           std::strncmp(one.name, other.name, sizeof one.name) == 0 &&
           std::strncmp(one.module, other.module, sizeof one.module) == 0 &&
           one.min_value == other.min_value && one.max_value == other.max_value &&
           one.default_value == other.default_value;
}

void requireSame(const std::vector<clap_param_info>& before,
                 const std::vector<clap_param_info>& now, const char* when) {
    require(before.size() == now.size(), "has ", now.size(), " parameters ", when, ", ",
            before.size(), " before");
    for (std::size_t i = 0; i < before.size(); ++i)
        require(isSame(before[i], now[i]), "describes parameter number ", i, " as ", nameOf(now[i]),
                ' ', when, ", as ", nameOf(before[i]),
                " before, or with another range or other flags");
}

std::string identifiers(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    const auto list = listOf(plugIn.plugIn());
    std::set<clap_id> seen;
    for (const clap_param_info& parameter : list) {
        require(parameter.id != CLAP_INVALID_ID, nameOf(parameter),
                " has the identifier that stands for none");
        require(seen.insert(parameter.id).second, "has several parameters with the identifier ",
                parameter.id, ", one of them ", nameOf(parameter));
        require(std::ranges::find(parameter.name, '\0') != std::end(parameter.name), "parameter ",
                parameter.id, " has a name that does not end");
    }
    requireSame(list, listOf(plugIn.plugIn()), "when it is asked again");
    Noise noise(subject.seed);
    plugIn.scramble(noise);
    plugIn.activate(48000.0, 64);
    requireSame(list, listOf(plugIn.plugIn()), "once it is active and other values are set");
    ClapSubject second(library);
    requireSame(list, listOf(second.plugIn()), "in a second instance");
    return std::to_string(list.size()) + " parameters";
}

std::string ranges(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    std::string strange;
    for (const clap_param_info& parameter : listOf(plugIn.plugIn())) {
        doing("looking at the range of ", nameOf(parameter));
        const double low = parameter.min_value;
        const double high = parameter.max_value;
        require(std::isfinite(low) && std::isfinite(high), nameOf(parameter), " goes from ", low,
                " to ", high);
        require(low <= high, nameOf(parameter), " goes from ", low, " down to ", high);
        const auto within = [&](double value, const char* which) {
            require(value >= low && value <= high, nameOf(parameter), " has ", value, " for its ",
                    which, ", beyond its range from ", low, " to ", high);
        };
        within(parameter.default_value, "default");
        within(plugIn.value(parameter), "value");
        const bool isWhole = low == std::floor(low) && high == std::floor(high);
        if ((parameter.flags & CLAP_PARAM_IS_STEPPED) != 0 && !isWhole && strange.empty())
            strange = joined(nameOf(parameter), " takes whole numbers from ", low, " to ", high);
        if (low == high && strange.empty())
            strange = joined(nameOf(parameter), " has a single value, ", low);
    }
    expect(strange.empty(), strange);
    return {};
}

// Text into buffers of several sizes, as hosts have them.
void requireTextWithinBuffer(const hosting::ClapInstance& plugIn, const clap_param_info& parameter,
                             double value) {
    constexpr char untouched = '\x7f';
    constexpr std::size_t guard = 256;
    for (const std::uint32_t size : {256U, 128U, 32U, 16U, 8U, 2U, 1U}) {
        doing("asking for the text of ", nameOf(parameter), " at ", value, " in ", size, " bytes");
        std::vector<char> text(size + guard, untouched);
        const bool given = plugIn.parameters()->value_to_text(&plugIn.plugin(), parameter.id, value,
                                                              text.data(), size);
        const auto end = text.begin() + size;
        require(std::all_of(end, text.end(), [](char each) { return each == untouched; }),
                "writes the text of ", nameOf(parameter), " beyond the end of a buffer of ", size,
                " bytes");
        require(!given || std::find(text.begin(), end, '\0') != end, "gives a text of ",
                nameOf(parameter), " without an end in a buffer of ", size, " bytes");
    }
}

// Throws Failed for another value, and answers what is only odd.
std::string oddityOfText(const hosting::ClapInstance& plugIn, const clap_param_info& parameter,
                         double value) {
    doing("reading back the text of ", nameOf(parameter), " at ", value);
    const auto text = plugIn.text(parameter.id, value);
    if (!text)
        return joined("gives no text for ", nameOf(parameter), " at ", value);
    const auto read = plugIn.valueOf(parameter.id, *text);
    if (!read)
        return joined("does not read \"", *text, "\", its own text for ", nameOf(parameter), " at ",
                      value);
    constexpr double otherValue = 0.05; // of the range: no rounding
    constexpr double sameValue = 1e-3;
    const double apart = distance(parameter, *read, value);
    const auto again = plugIn.text(parameter.id, *read);
    if (apart <= sameValue || again == text)
        return {};
    std::string what = joined("reads \"", *text, "\", its own text for ", nameOf(parameter), " at ",
                              value, ", as ", *read, " (\"", again.value_or(""), "\")");
    require(apart <= otherValue, what);
    return what;
}

std::string textsReadBack(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    plugIn.needParameters();
    std::string odd;
    for (const clap_param_info& parameter : plugIn.parameters()) {
        requireTextWithinBuffer(plugIn.plugIn(), parameter, parameter.default_value);
        for (const double fraction : fractions) {
            const std::string found =
                oddityOfText(plugIn.plugIn(), parameter, valueAt(parameter, fraction));
            if (odd.empty())
                odd = found;
        }
    }
    expect(odd.empty(), odd);
    return {};
}

// As a host has them that thinks from 0 to 1: out to the plug-in's range and back.
std::string setAndRead(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    plugIn.needParameters();
    Noise noise(subject.seed);
    plugIn.activate(48000.0, 64);
    for (const clap_param_info& parameter : plugIn.parameters())
        for (const double fraction : fractions) {
            const double value = valueAt(parameter, fraction);
            doing("setting ", nameOf(parameter), " to ", value, " in a block");
            plugIn.add(0, parameter, value);
            plugIn.process(64, noise, "with ", nameOf(parameter), " at ", value);
            plugIn.requireValue(parameter, value, "at the start of a block");
        }
    return {};
}

std::string unknown(const Subject& subject) {
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    hosting::ClapInstance& instance = plugIn.plugIn();
    const auto list = listOf(instance);
    const auto count = static_cast<std::uint32_t>(list.size());
    for (const std::uint32_t number : {count, count + 1, count + 1000, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        doing("asking for parameter number ", number, " of ", count);
        require(!instance.parameterInfo(number), "describes a parameter number ", number,
                ", where it counts ", count, " from 0");
    }
    const auto values = plugIn.values();
    for (const clap_id id : {count, count + 1000, 0x7FFFFFFFU, 0xFFFFFFFEU, CLAP_INVALID_ID}) {
        if (std::ranges::find(list, id, &clap_param_info::id) != list.end())
            continue;
        doing("asking for the parameter ", id, ", which there is not");
        require(!instance.value(id), "gives a value for the parameter ", id,
                ", which there is not");
        require(!instance.text(id, 0.5), "gives a text for the parameter ", id,
                ", which there is not");
        instance.valueOf(id, "1");
        doing("setting the parameter ", id, ", which there is not");
        plugIn.nextEvents().add(hosting::clapValueEvent(0, id, 0.75));
        plugIn.flush();
        const auto now = plugIn.values();
        for (std::size_t i = 0; i < values.size(); ++i)
            require(now[i] == values[i], nameOf(plugIn.parameters()[i]), " moves from ", values[i],
                    " to ", now[i], " when the parameter ", id, " is set, which there is not");
    }
    return {};
}

constexpr std::array clapparametersTable{
    Check{"parameter-identifiers", 2, Formats::clap, identifiers, 30},
    Check{"parameter-ranges", 2, Formats::clap, ranges, 30},
    Check{"parameter-texts-read-back", 2, Formats::clap, textsReadBack, 60},
    Check{"parameter-set-and-read", 5, Formats::clap, setAndRead, 120},
    Check{"parameter-unknown", 8, Formats::clap, unknown, 30, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> clapParameterChecks() {
    return clapparametersTable;
}

} // namespace mirelon::validator
