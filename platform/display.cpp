#include "platform/display.h"

#include "platform/serverconnection.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <system_error>

namespace mirelon {

namespace {

constexpr double referenceDpi = 96.0;
constexpr std::uint32_t resourceWords = 0x4000; // 64 KiB of resource text

// The resource text that the desktop has left on the first screen.
std::string readResources() {
    const ServerConnection connection = connectToServer();
    if (connection == nullptr)
        return {};
    const xcb_window_t root = firstScreen(connection.get()).root;
    const auto cookie = xcb_get_property(connection.get(), 0, root, XCB_ATOM_RESOURCE_MANAGER,
                                         XCB_ATOM_STRING, 0, resourceWords);
    const ReplyPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection.get(), cookie, nullptr));
    if (reply == nullptr)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

// A positive number at the beginning of `text`, whatever the locale says about
// decimal points.
std::optional<double> positiveNumber(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || !(value > 0.0) || !std::isfinite(value))
        return {};
    return value;
}

} // namespace

bool displayAvailable() {
    return connectToServer() != nullptr;
}

std::optional<double> xftDpi(std::string_view resources) {
    constexpr std::string_view key = "Xft.dpi:";
    while (!resources.empty()) {
        const std::size_t end = resources.find('\n');
        std::string_view line = resources.substr(0, end);
        resources.remove_prefix(end == std::string_view::npos ? resources.size() : end + 1);
        if (!line.starts_with(key))
            continue;
        line.remove_prefix(key.size());
        const std::size_t start = line.find_first_not_of(" \t");
        return start == std::string_view::npos ? std::nullopt : positiveNumber(line.substr(start));
    }
    return {};
}

std::optional<double> environmentScale() {
    const char* const wish = std::getenv("MIRELON_SCALE");
    return wish != nullptr ? positiveNumber(wish) : std::nullopt;
}

double desktopScale(double hostScale, std::optional<double> chosenScale) {
    if (const auto scale = environmentScale())
        return *scale;
    if (chosenScale && *chosenScale > 0.0 && std::isfinite(*chosenScale))
        return *chosenScale;
    if (hostScale > 0.0 && std::isfinite(hostScale) && hostScale != 1.0)
        return hostScale;
    if (const auto dpi = xftDpi(readResources()))
        return *dpi / referenceDpi;
    return 1.0;
}

} // namespace mirelon
