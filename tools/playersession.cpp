#include "tools/playersession.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace mirelon::tools {

namespace {

using namespace std::chrono_literals;

constexpr int skippedSeconds = 5;
constexpr auto gainInterval = 100ms;

std::string clockText(std::int64_t frames, int rate) {
    const std::int64_t seconds = frames / rate;
    const std::string tail = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (tail.size() < 2 ? ":0" : ":") + tail;
}

std::string gainText(float gain) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f dB", 20.0 * std::log10(static_cast<double>(gain)));
    return text;
}

} // namespace

PlayerSession::PlayerSession(Player& player)
    : player(player)
    , meter(player.rate()) {}

void PlayerSession::act(PlayerAction action) {
    switch (action) {
    case PlayerAction::playOrStop:
        player.isPlaying() ? player.stop() : player.play();
        break;
    case PlayerAction::back:
        skip(-skippedSeconds);
        break;
    case PlayerAction::forward:
        skip(skippedSeconds);
        break;
    case PlayerAction::toBegin:
        player.seek(0);
        break;
    case PlayerAction::loop:
        player.loop(!player.isLooping());
        break;
    case PlayerAction::bypass:
        player.bypass(!player.isBypassed());
        equalLoudness |= !compared;
        compared = true;
        break;
    case PlayerAction::equalLoudness:
        equalLoudness = !equalLoudness;
        compared = true;
        break;
    case PlayerAction::quit:
        ended = true;
        break;
    }
    nextGains = {};
}

void PlayerSession::serve() {
    player.measure(meter);
    const auto now = std::chrono::steady_clock::now();
    if (now < nextGains)
        return;
    nextGains = now + gainInterval;
    gains = equalLoudness ? meter.gains() : LoudnessGains{};
    player.setGains(gains);
}

std::string PlayerSession::status() const {
    const auto length = player.length();
    std::string text = !player.isPlaying() ? "stopped " : length ? "playing " : "live ";
    text += clockText(player.position(), player.rate());
    if (length)
        text.append(" of ").append(clockText(*length, player.rate()));
    if (length && player.isLooping())
        text += ", loop";
    text += player.isBypassed() ? ", original" : ", processed";
    if (equalLoudness)
        text.append(" ").append(gainText(player.isBypassed() ? gains.original : gains.processed));
    return text;
}

void PlayerSession::skip(int seconds) {
    player.seek(player.position() + std::int64_t{seconds} * player.rate());
}

} // namespace mirelon::tools
