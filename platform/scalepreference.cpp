#include "platform/scalepreference.h"

#include "platform/preferences.h"

#include <charconv>
#include <string>

namespace mirelon {

namespace {

constexpr const char* key = "WindowPercent";
constexpr int most = 1000;

} // namespace

std::optional<int> chosenPercent() {
    const std::optional<std::string> stored = Preferences(userPreferencesFolder()).get(key);
    if (!stored)
        return std::nullopt;
    int percent = 0;
    const char* const end = stored->data() + stored->size();
    const auto [rest, error] = std::from_chars(stored->data(), end, percent);
    if (error != std::errc{} || rest != end || percent < 1 || percent > most)
        return std::nullopt;
    return percent;
}

bool choosePercent(std::optional<int> percent) {
    Preferences preferences(userPreferencesFolder());
    if (percent)
        preferences.set(key, std::to_string(*percent));
    else
        preferences.remove(key);
    return preferences.synchronise();
}

} // namespace mirelon
