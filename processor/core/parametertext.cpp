#include "processor/core/parametertext.h"

#include "processor/core/parameters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace mirelon {

namespace {

// The text in lower case, with a point before the decimals, without blanks
// around it. What is longer than any text of a value is empty.
class PlainText {
  public:
    explicit PlainText(std::string_view text) noexcept {
        constexpr std::string_view blanks = " \t\r\n";
        const std::size_t first = text.find_first_not_of(blanks);
        if (first == std::string_view::npos)
            return;
        text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
        if (text.size() > characters.size())
            return;
        length = text.size();
        std::ranges::transform(text, characters.begin(), [](char c) {
            if (c == ',')
                return '.';
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        });
    }

    std::string_view view() const noexcept { return {characters.data(), length}; }

  private:
    std::array<char, 64> characters{};
    std::size_t length = 0;
};

std::string_view withoutBlanks(std::string_view text) noexcept {
    while (text.starts_with(' ') || text.starts_with('\t'))
        text.remove_prefix(1);
    while (text.ends_with(' ') || text.ends_with('\t'))
        text.remove_suffix(1);
    return text;
}

// Takes `ending` and the blanks before it off; says whether it was there.
bool takeEnding(std::string_view& text, std::string_view ending) noexcept {
    if (!text.ends_with(ending))
        return false;
    text.remove_suffix(ending.size());
    text = withoutBlanks(text);
    return true;
}

// The whole text as a number without an exponent.
std::optional<double> numberIn(std::string_view text) noexcept {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, failure] =
        std::from_chars(text.data(), end, number, std::chars_format::fixed);
    if (failure != std::errc{} || rest != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

// The window cuts decimals off: a value a rounding error short of the whole
// number that was written would show the one below. The next single-precision
// value in the direction of `end` that does not fall short, if it is that near.
template <typename Short>
float nudged(double value, float end, Short fallsShort) noexcept {
    constexpr int farthest = 4;
    const auto nearest = static_cast<float>(std::clamp(value, 0.0, 1.0));
    float candidate = nearest;
    for (int step = 0; step < farthest && fallsShort(candidate); ++step)
        candidate = std::nextafter(candidate, end);
    return fallsShort(candidate) ? nearest : candidate;
}

Coefficients coefficientsOf(int index, float value) noexcept {
    Coefficients coefficients;
    applyParameter(coefficients, index, value);
    return coefficients;
}

bool isWhole(std::string_view number) noexcept {
    return number.find('.') == std::string_view::npos;
}

// A number of per cent with its side, 'l' or 'r', as hosts show it. From 1 % on
// it is not to fall into the band that they show as the middle.
float positionOf(char side, double percent) noexcept {
    const auto inTheMiddle = [percent](float value) {
        const auto position = static_cast<double>(value);
        return percent >= 1.0 && position >= 0.49 && position <= 0.51;
    };
    if (side == 'l')
        return nudged(0.5 + percent / 100.0, 1.0F, inTheMiddle);
    return nudged(0.5 - percent / 100.0, 0.0F, inTheMiddle);
}

// The same as the window shows it: whole steps, from the first just outside the
// middle.
float windowPositionOf(char side, double steps) noexcept {
    if (steps == 0.0)
        return 0.5F;
    if (side == 'l') // the middle of the step, of which the whole range has 98
        return static_cast<float>(std::clamp((steps + 48.5) / 98.0, 0.5, 1.0));
    return nudged((50.0 - steps) / 100.0, 1.0F, [steps](float value) {
        return value * 100.0F < static_cast<float>(50.0 - steps);
    });
}

std::optional<float> switchOf(std::string_view text, std::string_view on,
                              std::string_view off) noexcept {
    if (text == "on" || text == on)
        return 1.0F;
    if (text == "off" || text == off)
        return 0.0F;
    const auto number = numberIn(text);
    if (!number)
        return std::nullopt;
    return *number >= 0.5 ? 1.0F : 0.0F;
}

} // namespace

namespace readers {

std::optional<float> width(std::string_view text) noexcept {
    takeEnding(text, "%");
    const auto percent = numberIn(text);
    if (!percent)
        return std::nullopt;
    const auto fallsShort = [wanted = static_cast<float>(*percent), text](float value) {
        return isWhole(text) &&
               coefficientsOf(kParamWidth, value).widthSide * 2.0F * 100.0F < wanted;
    };
    return nudged(std::sqrt(std::max(*percent, 0.0) / 400.0), 1.0F, fallsShort);
}

std::optional<float> gain(std::string_view text) noexcept {
    takeEnding(text, "db");
    if (text == "-oo")
        return 0.0F;
    const auto decibels = numberIn(text);
    if (!decibels)
        return std::nullopt;
    const float end = std::signbit(*decibels) ? 0.0F : 1.0F;
    if (*decibels == 0.0) // hosts show "-0.00" just below the middle
        return std::signbit(*decibels) ? std::nextafter(0.5F, end) : 0.5F;
    const auto fallsShort = [wanted = std::fabs(*decibels), text](float value) {
        const auto gain = static_cast<double>(coefficientsOf(kParamGain, value).gainLin);
        return isWhole(text) && std::fabs(std::log10(gain) * 20.0) < wanted;
    };
    return nudged(0.5 + *decibels / 24.0, end, fallsShort);
}

std::optional<float> position(std::string_view text) noexcept {
    if (text == "c")
        return 0.5F;
    if (const auto percent = numberIn(text))
        return positionOf(*percent < 0.0 ? 'r' : 'l', std::fabs(*percent));
    const auto magnitude = [](std::string_view digits) noexcept -> std::optional<double> {
        digits = withoutBlanks(digits);
        if (digits.starts_with('+') || digits.starts_with('-'))
            return std::nullopt;
        return numberIn(digits);
    };
    for (const char side : {'l', 'r'}) {
        if (text.starts_with(side)) {
            if (const auto steps = magnitude(text.substr(1)))
                return windowPositionOf(side, *steps);
        } else if (text.ends_with(side)) {
            if (const auto percent = magnitude(text.substr(0, text.size() - 1)))
                return positionOf(side, *percent);
        }
    }
    return std::nullopt;
}

std::optional<float> onOff(std::string_view text) noexcept {
    return switchOf(text, "on", "off");
}

std::optional<float> polarityL(std::string_view text) noexcept {
    return switchOf(text, "-l", "+l");
}

std::optional<float> polarityR(std::string_view text) noexcept {
    return switchOf(text, "-r", "+r");
}

} // namespace readers

std::optional<float> parameterValueOf(int index, std::string_view text) noexcept {
    const PlainText plain(text);
    if (plain.view().empty() || !isParameter(index))
        return std::nullopt;
    return parameterAt(index).reader(plain.view());
}

} // namespace mirelon
