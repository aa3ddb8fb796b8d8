#include "platform/preferences.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <utility>

namespace mirelon {

namespace {

constexpr std::string_view identifier = "example.dravik.mirelon";

// Relative paths are not valid there: they would depend on where the host was
// started.
std::string_view absolutePathFrom(const char* variable) {
    const char* text = std::getenv(variable);
    return text != nullptr && text[0] == '/' ? text : std::string_view();
}

} // namespace

std::string userPreferencesFolder() {
    std::string folder(absolutePathFrom("XDG_CONFIG_HOME"));
    if (folder.empty()) {
        folder = absolutePathFrom("HOME");
        if (folder.empty())
            return {};
        folder += "/.config";
    }
    folder += '/';
    return folder.append(identifier);
}

Preferences::Preferences(std::string folder) noexcept
    : store(std::move(folder)) {}

std::optional<std::string> Preferences::get(std::string_view key) const noexcept try {
    const auto found = std::ranges::find(changes, key, &PreferenceChange::key);
    return found != changes.end() ? found->value : store.read(key);
} catch (const std::exception&) {
    return std::nullopt;
}

void Preferences::set(std::string_view key, std::string_view value) noexcept {
    change(key, value);
}

void Preferences::remove(std::string_view key) noexcept {
    change(key, std::nullopt);
}

void Preferences::change(std::string_view key, std::optional<std::string_view> value) noexcept try {
    std::erase_if(changes, [&](const PreferenceChange& earlier) { return earlier.key == key; });
    changes.push_back({std::string(key), std::optional<std::string>(value)});
} catch (const std::exception&) {
    // Out of memory: the value is not stored.
    return;
}

bool Preferences::synchronise() noexcept try {
    if (changes.empty())
        return true;
    const std::vector<PreferenceChange> noted = std::exchange(changes, {});
    return store.write(noted);
} catch (const std::exception&) {
    return false;
}

} // namespace mirelon
