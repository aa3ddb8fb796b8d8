#include "presetsystem/midinames.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace {

using mirelon::ControllerName;

constexpr std::pair<std::size_t, std::string_view> knownControllers[] = {
    {0, "bank sel MSB"},  {1, "modulation"},     {2, "breath"},         {4, "foot"},
    {5, "portamento"},    {6, "data ent MSB"},   {7, "main volume"},    {8, "balance"},
    {10, "pan"},          {11, "expression"},    {16, "gen purp 1"},    {17, "gen purp 2"},
    {18, "gen purp 3"},   {19, "gen purp 4"},    {32, "bank sel LSB"},  {33, "modul. LSB"},
    {34, "breath LSB"},   {36, "foot LSB"},      {37, "porta LSB"},     {38, "data ent LSB"},
    {39, "main vol LSB"}, {40, "balance LSB"},   {42, "pan LSB"},       {43, "express. LSB"},
    {64, "sustain"},      {65, "porta on/off"},  {66, "sostenuto"},     {67, "soft pedal"},
    {68, "legato FS"},    {69, "hold 2"},        {70, "sound var"},     {71, "harmonic"},
    {72, "release time"}, {73, "attack time"},   {74, "brightness"},    {80, "gen purp 5"},
    {81, "gen purp 6"},   {82, "gen purp 7"},    {83, "gen purp 8"},    {84, "porta ctrl"},
    {91, "ext FX"},       {92, "tremolo"},       {93, "chorus"},        {94, "detune"},
    {95, "phaser"},       {96, "data incr"},     {97, "data decr"},     {98, "NRPN LSB"},
    {99, "NRPN MSB"},     {100, "RPN LSB"},      {101, "RPN MSB"},      {120, "all snd off"},
    {121, "reset ctrl"},  {122, "local ctrl"},   {123, "all note off"}, {124, "omni off"},
    {125, "omni on"},     {126, "mono mode on"}, {127, "poly mode on"}, {128, "not assigned"},
};

constexpr ControllerName nameOf(std::string_view text) {
    ControllerName name{};
    std::ranges::copy(text, name.begin());
    return name;
}

constexpr ControllerName numberedName(std::size_t controller) {
    ControllerName name = nameOf("control ");
    std::size_t at = std::string_view("control ").size();
    for (std::size_t unit = 100; unit > 0; unit /= 10)
        if (controller >= unit || unit == 1)
            name[at++] = static_cast<char>('0' + controller / unit % 10);
    return name;
}

constexpr auto allNames() {
    std::array<ControllerName, kNumControllerNames> names{};
    for (std::size_t controller = 0; controller < 128; ++controller)
        names[controller] = numberedName(controller);
    for (const auto& [controller, text] : knownControllers)
        names[controller] = nameOf(text);
    return names;
}

// Truncation towards zero, for what the whole numbers of type `Whole` cannot
// hold to the nearest end.
template <typename Whole>
Whole truncated(float value) {
    constexpr Whole lowest = std::numeric_limits<Whole>::min();
    constexpr Whole highest = std::numeric_limits<Whole>::max();
    if (std::isnan(value))
        return 0;
    if (value <= static_cast<float>(lowest))
        return lowest;
    if (value >= static_cast<float>(highest))
        return highest;
    return static_cast<Whole>(value);
}

} // namespace

constexpr std::array<mirelon::ControllerName, kNumControllerNames> ccnames = allNames();

void convertCC(float value, char* text) {
    const long index = float2long(value, kNumControllerNames);
    if (index < 0) {
        *text = '\0';
        return;
    }
    const ControllerName& name = ccnames[static_cast<std::size_t>(index)];
    std::memcpy(text, name.data(), std::strlen(name.data()) + 1);
}

long float2long(float value, long n) {
    const float step = std::floor(static_cast<float>(n) * value) + 0.5F;
    return std::min(truncated<long>(step), n - 1);
}

float long2float(long i, long n) {
    return (static_cast<float>(i) + 0.5F) / static_cast<float>(n);
}

int paramContToLong(float value, int n) {
    return std::min(truncated<int>(value * static_cast<float>(n)), n - 1);
}

float paramLongToCont(int i, int n) {
    const auto steps = static_cast<float>(n);
    return 0.5F / steps + static_cast<float>(i) / steps;
}
