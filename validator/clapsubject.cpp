#include "validator/clapsubject.h"

#include <chrono>
#include <cmath>
#include <thread>

namespace mirelon::validator {

namespace {

constexpr std::size_t mostParameters = 64;

} // namespace

std::string nameOf(const clap_param_info& parameter) {
    const auto* const end = std::ranges::find(parameter.name, '\0');
    return joined("parameter ", parameter.id, " (", std::string(parameter.name, end), ')');
}

double valueAt(const clap_param_info& parameter, double fraction) {
    const double value =
        parameter.min_value + fraction * (parameter.max_value - parameter.min_value);
    return (parameter.flags & CLAP_PARAM_IS_STEPPED) != 0 ? std::round(value) : value;
}

double distance(const clap_param_info& parameter, double one, double other) {
    const double range = parameter.max_value - parameter.min_value;
    return range > 0.0 ? std::fabs(one - other) / range : 0.0;
}

ClapSubject::ClapSubject(const hosting::ClapLibrary& library, hosting::ClapExtensions offered)
    : host(offered)
    , instance(library, host, library.firstId()) {
    listParameters();
}

ClapSubject::ClapSubject(const hosting::ClapLibrary& library, std::string_view missing)
    : host(missing)
    , instance(library, host, library.firstId()) {
    listParameters();
}

void ClapSubject::listParameters() {
    for (std::uint32_t i = 0; i < instance.parameterCount() && settable.size() < mostParameters;
         ++i)
        if (const auto info = instance.parameterInfo(i))
            if ((info->flags & CLAP_PARAM_IS_READONLY) == 0)
                settable.push_back(*info);
}

void ClapSubject::needParameters() const {
    if (settable.empty())
        throw Skipped("has no parameters that a host can set");
}

double ClapSubject::value(const clap_param_info& parameter) const {
    const auto value = instance.value(parameter.id);
    require(value.has_value(), "gives no value for ", nameOf(parameter), ", which it lists");
    return *value;
}

std::vector<double> ClapSubject::values() const {
    std::vector<double> all;
    all.reserve(settable.size());
    for (const clap_param_info& parameter : settable)
        all.push_back(value(parameter));
    return all;
}

void ClapSubject::set(const clap_param_info& parameter, double value) {
    add(0, parameter, value);
    flush();
}

void ClapSubject::scramble(Noise& noise) {
    addForAll(1, noise);
    flush();
}

void ClapSubject::judgeValue(const clap_param_info& parameter, double wanted,
                             const std::string& when) {
    constexpr double otherValue = 0.05; // of the range: no rounding
    constexpr double sameValue = 1e-4;
    double apart = distance(parameter, value(parameter), wanted);
    for (int i = 0; i < 50 && apart > sameValue; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        instance.serve();
        apart = distance(parameter, value(parameter), wanted);
    }
    if (apart <= sameValue)
        return;
    const std::string what = joined("has ", value(parameter), " for ", nameOf(parameter),
                                    ", which was set to ", wanted, ' ', when);
    require(apart <= otherValue, what);
    throw Unusual(what);
}

void ClapSubject::activate(double rate, int block) {
    require(instance.activate(rate, static_cast<std::uint32_t>(block)),
            "cannot be activated or started at ", rate, " Hz with blocks of ", block, " frames");
}

void ClapSubject::add(std::uint32_t time, const clap_param_info& parameter, double value) {
    clap_event_param_value event = hosting::clapValueEvent(time, parameter.id, value);
    event.cookie = parameter.cookie;
    events.add(event);
}

void ClapSubject::addForAll(int frames, Noise& noise) {
    const std::size_t count = settable.size();
    for (std::size_t i = 0; i < count; ++i)
        add(static_cast<std::uint32_t>(i * static_cast<std::size_t>(frames) / count), settable[i],
            valueAt(settable[i], static_cast<double>(noise.fraction())));
}

void ClapSubject::flush() {
    told.clear();
    instance.flush(events.list(), told.list());
    events.clear();
}

} // namespace mirelon::validator
