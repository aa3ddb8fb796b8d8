// A user in front of a player.
#pragma once

#include "tools/audio/equalloudness.h"
#include "tools/audio/player.h"
#include "tools/playeractions.h"

#include <chrono>
#include <string>

namespace mirelon::tools {

// One thread. `player` must outlive it.
class PlayerSession {
  public:
    // Throws CommandError for a rate at which loudness cannot be measured.
    explicit PlayerSession(Player& player);

    void act(PlayerAction action);
    bool hasEnded() const { return ended; }

    // To be called again and again, several times a second: measures what was heard.
    void serve();
    // What was measured so far is of other settings.
    void settingsChanged() { meter.restart(); }

    // "playing 0:12 of 3:05, loop, original -2.1 dB"
    std::string status() const;

  private:
    void skip(int seconds);

    Player& player;
    EqualLoudness meter;
    LoudnessGains gains;
    bool equalLoudness = false;
    bool compared = false; // the first bypass begins a comparison
    bool ended = false;
    std::chrono::steady_clock::time_point nextGains;
};

} // namespace mirelon::tools
