#include "hosting/lv2parameter.h"

#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "hosting/lv2nodes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <lv2/core/lv2.h>
#include <lv2/port-props/port-props.h>
#include <lv2/units/units.h>
#include <string_view>
#include <utility>

namespace mirelon::hosting {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

bool sameWord(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

// The units of the LV2 specification, whose own data files need not be there.
constexpr std::array<std::pair<std::string_view, const char*>, 14> units{{
    {LV2_UNITS__pc, "%"},
    {LV2_UNITS__db, "dB"},
    {LV2_UNITS__hz, "Hz"},
    {LV2_UNITS__khz, "kHz"},
    {LV2_UNITS__mhz, "MHz"},
    {LV2_UNITS__ms, "ms"},
    {LV2_UNITS__s, "s"},
    {LV2_UNITS__min, "min"},
    {LV2_UNITS__bpm, "BPM"},
    {LV2_UNITS__cent, "ct"},
    {LV2_UNITS__semitone12TET, "semi"},
    {LV2_UNITS__oct, "oct"},
    {LV2_UNITS__degree, "deg"},
    {LV2_UNITS__frame, "frames"},
}};

// The text of a port's unit; a data file may bring one of its own.
std::string unitOf(const Lv2Bundle& bundle, const LilvPort* port) {
    LilvWorld* const world = bundle.world();
    const Lv2Node unit(lilv_port_get(bundle.plugin(), port, lv2Uri(world, LV2_UNITS__unit).get()));
    if (unit == nullptr)
        return {};
    const std::string uri = lv2Text(unit.get());
    for (const auto& [known, text] : units)
        if (uri == known)
            return text;
    const Lv2Node symbol(
        lilv_world_get(world, unit.get(), lv2Uri(world, LV2_UNITS__symbol).get(), nullptr));
    return lv2Text(symbol.get());
}

std::vector<Lv2ScalePoint> pointsOf(const Lv2Bundle& bundle, const LilvPort* port) {
    std::vector<Lv2ScalePoint> points;
    LilvScalePoints* const all = lilv_port_get_scale_points(bundle.plugin(), port);
    LILV_FOREACH(scale_points, i, all) {
        const LilvScalePoint* const point = lilv_scale_points_get(all, i);
        points.push_back({lv2Text(lilv_scale_point_get_label(point)),
                          lilv_node_as_float(lilv_scale_point_get_value(point))});
    }
    lilv_scale_points_free(all);
    std::ranges::sort(points, {}, &Lv2ScalePoint::number);
    return points;
}

Lv2Parameter::Kind kindOf(const Lv2Bundle& bundle, const LilvPort* port,
                          const Lv2Parameter& parameter) {
    const auto has = [&](const char* property) {
        return lilv_port_has_property(bundle.plugin(), port,
                                      lv2Uri(bundle.world(), property).get());
    };
    if (has(LV2_CORE__toggled))
        return Lv2Parameter::Kind::toggle;
    if (has(LV2_CORE__enumeration) && parameter.points.size() > 1)
        return Lv2Parameter::Kind::enumeration;
    if (has(LV2_CORE__integer))
        return Lv2Parameter::Kind::integer;
    if (has(LV2_PORT_PROPS__logarithmic) && parameter.minimum > 0.0F &&
        parameter.maximum > parameter.minimum)
        return Lv2Parameter::Kind::logarithmic;
    return Lv2Parameter::Kind::continuous;
}

} // namespace

float Lv2Parameter::numberOf(float value) const noexcept {
    // What is no value goes beyond the range as far, for the plug-in to judge.
    if (!(value >= 0.0F && value <= 1.0F))
        return minimum + value * (maximum - minimum);
    if (mirelonIndex)
        return lv2::portValueOf(*mirelonIndex, value);
    switch (kind) {
    case Kind::toggle:
        return value >= 0.5F ? maximum : minimum;
    case Kind::enumeration: {
        const auto last = static_cast<float>(points.size() - 1);
        return points[static_cast<std::size_t>(std::round(value * last))].number;
    }
    case Kind::integer:
        return std::round(minimum + value * (maximum - minimum));
    case Kind::logarithmic:
        return minimum * std::pow(maximum / minimum, value);
    case Kind::continuous:
        break;
    }
    return minimum + value * (maximum - minimum);
}

float Lv2Parameter::valueOf(float number) const noexcept {
    if (mirelonIndex)
        return lv2::valueOfPort(*mirelonIndex, number).value_or(0.0F);
    if (!(number > minimum) || !(maximum > minimum))
        return 0.0F;
    switch (kind) {
    case Kind::toggle:
        return 1.0F;
    case Kind::enumeration: {
        const auto nearest = std::ranges::min_element(
            points, {}, [number](const auto& point) { return std::fabs(point.number - number); });
        return static_cast<float>(nearest - points.begin()) / static_cast<float>(points.size() - 1);
    }
    case Kind::logarithmic:
        return std::min(std::log(number / minimum) / std::log(maximum / minimum), 1.0F);
    case Kind::integer:
    case Kind::continuous:
        break;
    }
    return std::min((number - minimum) / (maximum - minimum), 1.0F);
}

std::string Lv2Parameter::display(float number) const {
    for (const Lv2ScalePoint& point : points)
        if (point.number == number)
            return point.label;
    if (kind == Kind::toggle)
        return number > minimum ? "On" : "Off";
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), kind == Kind::integer ? "%.0f" : "%.2f",
                  static_cast<double>(number));
    return text.data();
}

std::optional<float> Lv2Parameter::read(const std::string& text) const {
    std::string_view wanted = trimmed(text);
    for (const Lv2ScalePoint& point : points)
        if (sameWord(point.label, wanted))
            return point.number;
    if (kind == Kind::toggle && (sameWord(wanted, "on") || sameWord(wanted, "off")))
        return sameWord(wanted, "on") ? maximum : minimum;
    if (wanted.size() > unit.size() && sameWord(wanted.substr(wanted.size() - unit.size()), unit))
        wanted = trimmed(wanted.substr(0, wanted.size() - unit.size()));
    if (wanted.size() > 1 && wanted.front() == '+')
        wanted.remove_prefix(1);
    float number = 0.0F;
    const char* const end = wanted.data() + wanted.size();
    const auto [rest, failure] = std::from_chars(wanted.data(), end, number);
    if (failure != std::errc{} || rest != end || !(number >= minimum && number <= maximum))
        return std::nullopt;
    return number;
}

std::vector<Lv2Parameter> lv2Parameters(const Lv2Bundle& bundle) {
    const LilvPlugin* const plugin = bundle.plugin();
    const Lv2Node input = lv2Uri(bundle.world(), LV2_CORE__InputPort);
    const Lv2Node control = lv2Uri(bundle.world(), LV2_CORE__ControlPort);
    const std::uint32_t count = lilv_plugin_get_num_ports(plugin);
    std::vector<float> minima(count);
    std::vector<float> maxima(count);
    std::vector<float> defaults(count);
    lilv_plugin_get_port_ranges_float(plugin, minima.data(), maxima.data(), defaults.data());
    const bool ours = bundle.uri() == lv2::pluginUri;
    std::vector<Lv2Parameter> parameters;
    for (std::uint32_t number = 0; number < count; ++number) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, number);
        if (!lilv_port_is_a(plugin, port, input.get()) ||
            !lilv_port_is_a(plugin, port, control.get()))
            continue;
        Lv2Parameter parameter;
        parameter.port = number;
        parameter.symbol = lv2Text(lilv_port_get_symbol(plugin, port));
        parameter.name = lv2Text(Lv2Node(lilv_port_get_name(plugin, port)).get());
        parameter.unit = unitOf(bundle, port);
        // Data files may leave the range out.
        parameter.minimum = std::isnan(minima[number]) ? 0.0F : minima[number];
        parameter.maximum = std::isnan(maxima[number]) ? parameter.minimum + 1.0F : maxima[number];
        parameter.points = pointsOf(bundle, port);
        parameter.kind = kindOf(bundle, port, parameter);
        if (ours && lv2::isParameterPort(number))
            parameter.mirelonIndex = lv2::parameterOfPort(number);
        parameters.push_back(std::move(parameter));
    }
    return parameters;
}

} // namespace mirelon::hosting
