#include "processor/core/displaytext.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

using mirelon::copyText;

namespace {

constexpr std::size_t textSize = 32;

// The integer part, towards zero; none for what does not fit (NaN included).
std::optional<int> integerPart(double value) noexcept {
    if (!(value > -2147483649.0 && value < 2147483648.0))
        return std::nullopt;
    return static_cast<int>(value);
}

// Prints the integer part of `value` with a format that takes one int.
void printInteger(const char* format, double value, char* text) noexcept {
    const auto number = integerPart(value);
    if (!number)
        return;
    std::array<char, textSize> formed{};
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral)
    std::snprintf(formed.data(), formed.size(), format, *number);
    copyText(formed.data(), text);
}

// Prints two integer parts, e.g. "1" and "5" as "1.5kHz".
void printDecimal(double whole, double decimals, const char* unit, char* text) noexcept {
    const auto first = integerPart(whole);
    const auto second = integerPart(decimals);
    if (!first || !second)
        return;
    std::array<char, textSize> formed{};
    std::snprintf(formed.data(), formed.size(), "%d.%d%s", *first, *second, unit);
    copyText(formed.data(), text);
}

char digitOf(double value) noexcept {
    return static_cast<char>('0' + static_cast<int>(std::fmod(value, 10.0)));
}

} // namespace

double round(double value, int digits) noexcept {
    constexpr double threshold = 0.49999;
    const double scaled = value * std::trunc(std::pow(10.0, digits));
    const double cut = scaled - std::trunc(scaled);
    if (cut >= threshold)
        return (scaled + 1.0) * std::pow(0.1, digits);
    if (cut <= -threshold)
        return (scaled - 1.0) * std::pow(0.1, digits);
    return value;
}

void float2string2(float value, int digits, char* text) noexcept {
    constexpr double highest = 99999999.0;
    constexpr double lowest = -9999999.0;
    constexpr int places = 8; // sign, point and digits together

    const double rounded = round(static_cast<double>(value), digits);
    if (!(rounded >= lowest && rounded <= highest))
        return;
    const bool negative = rounded < 0.0;
    const double magnitude = std::fabs(rounded);
    int used = negative ? 3 : 2; // the point and the first digit, and a sign

    std::array<char, textSize> formed{};
    char* const point = formed.data() + textSize / 2;
    *point = '.';
    char* start = point;
    double integer = std::floor(magnitude);
    *--start = digitOf(integer);
    for (integer /= 10.0; integer >= 1.0 && used < places; integer /= 10.0, ++used)
        *--start = digitOf(integer);
    if (negative)
        *--start = '-';

    const int decimals = std::max(places - used, 0);
    double mantissa = std::fmod(magnitude, 1.0) * std::pow(10.0, decimals);
    for (char* digit = point + decimals; digit > point; --digit, mantissa /= 10.0)
        *digit = digitOf(mantissa);

    const char* end = point + 1 + decimals;
    if (digits == 0)
        end = point;
    else if (digits > 0)
        end = point + 1 + std::min(digits, decimals);
    copyText({start, static_cast<std::size_t>(end - start)}, text);
}

void parameterNameStringConvert(float value, char* text) noexcept {
    static constexpr std::array<std::string_view, 9> captions{
        "S", "M", "L", "R", "width", "gain", "balan", "stabil", "center"};
    const int index = integerPart(static_cast<double>(value)).value_or(-1);
    const bool known = index >= 0 && index < static_cast<int>(captions.size());
    copyText(known ? captions[static_cast<std::size_t>(index)] : std::string_view(""), text);
}

void percentStringConvert(float value, char* text) noexcept {
    printInteger("%d%%", static_cast<double>(value * 100.0F), text);
}

void dBStringConvert(float value, char* text) noexcept {
    constexpr float silence = 1e-8F;
    if (value > silence)
        printInteger("%d dB", std::log10(static_cast<double>(value)) * 20.0, text);
    else
        copyText("-oo dB", text);
}

void panoramaStringConvert(float value, char* text) noexcept {
    constexpr float leftFrom = 0.501F;
    constexpr float rightFrom = 0.499F;
    if (value > rightFrom && value < leftFrom) {
        copyText("C", text);
    } else if (value >= leftFrom) {
        printInteger("L%d", std::fma(static_cast<double>(value), 98.0, -48.0), text);
    } else if (const auto steps = integerPart(static_cast<double>(value * 100.0F))) {
        printInteger("R%d", 50.0 - *steps, text);
    }
}

void frequencyStringConvert(float value, char* text) noexcept {
    const float whole = std::trunc(value);
    const float fraction = value - whole;
    const auto hertz = [&](float scale) {
        printDecimal(static_cast<double>(whole), static_cast<double>(fraction * scale), "Hz", text);
    };
    if (value < 0.2F) {
        hertz(1000.0F);
    } else if (value < 1.0F) {
        hertz(100.0F);
    } else if (value < 10.0F) {
        hertz(10.0F);
    } else if (value < 1000.0F) {
        printInteger("%dHz", static_cast<double>(value), text);
    } else {
        const float thousands = std::trunc(value * 0.001F);
        const float tenths = (value - 1000.0F * thousands) * 0.01F;
        printDecimal(static_cast<double>(thousands), static_cast<double>(tenths), "kHz", text);
    }
}

void dampStringConvert(float value, char* text) noexcept {
    if (value <= 0.0001F)
        copyText("closed", text);
    else if (value < 1.0F)
        percentStringConvert(value, text);
    else
        copyText("thru", text);
}

void stepStringConvert(float value, char* text) noexcept {
    printInteger("%d", static_cast<double>(value), text);
}

void strictStringConvert(float value, char* text) noexcept {
    stepStringConvert(value, text);
}

namespace mirelon::displays {
using mirelon::copyText;

namespace {

void choose(float working, std::string_view on, std::string_view off, char* text) noexcept {
    copyText(working >= 0.5F ? on : off, text);
}

} // namespace

void width(float value, float, char* text) noexcept {
    float2string2(value * value * 400.0F, 2, text);
}

void gain(float value, float, char* text) noexcept {
    float2string2(static_cast<float>((static_cast<double>(value) - 0.5) * 24.0), 2, text);
}

// A position between right (0) and left (1), with a band in the middle.
void position(float value, float, char* text) noexcept {
    const auto position = static_cast<double>(value);
    std::array<char, textSize> formed{};
    char side = 'C';
    if (position > 0.51) {
        float2string2(static_cast<float>(std::fma(position, 100.0, -50.0)), 0, formed.data());
        side = 'L';
    } else if (position < 0.49) {
        float2string2(static_cast<float>((0.5 - position) * 100.0), 0, formed.data());
        side = 'R';
    }
    const std::size_t length = std::strlen(formed.data());
    if (side != 'C' && length == 0)
        return; // no number to show
    formed[length] = side;
    copyText({formed.data(), length + 1}, text);
}

void onOff(float, float working, char* text) noexcept {
    choose(working, "On", "Off", text);
}

void polarityL(float, float working, char* text) noexcept {
    choose(working, "-L", "+L", text);
}

void polarityR(float, float working, char* text) noexcept {
    choose(working, "-R", "+R", text);
}

} // namespace mirelon::displays
