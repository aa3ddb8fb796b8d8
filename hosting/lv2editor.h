// The open window of an LV2 plug-in that is being played: the ports' numbers and
// messages go between the two.
#pragma once

#include "hosting/lv2player.h"
#include "hosting/lv2window.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace mirelon::hosting {

// What a user does in the window, besides what the player has been told already.
class Lv2EditorListener {
  public:
    virtual ~Lv2EditorListener() = default;
    virtual void numberWritten(std::uint32_t port, float number) = 0;
    virtual void touched(std::uint32_t port, bool grabbed) = 0;
    virtual void resized(int width, int height) = 0;
};

// One thread: the one that hosts all windows. What is given outlives it.
class Lv2Editor : private Lv2WindowListener {
  public:
    // Opens it in the X11 window `parent`. Throws PluginError as Lv2Window does.
    Lv2Editor(const Lv2Bundle& bundle, Lv2Player& player, std::uintptr_t parent,
              Lv2EditorListener& listener);

    bool isOpen() const { return window && window->isOpen(); }
    // As the window has asked for it or, if it has not, as its X11 window is;
    // nothing without either.
    std::optional<std::pair<int, int>> size() const;
    // Tells the window what has changed, and lets it work.
    void idle();

  private:
    void written(const Lv2Write& write) override;
    void touched(std::uint32_t port, bool grabbed) override;
    void resized(int width, int height) override;
    void tellNumbers();

    Lv2Player& player;
    Lv2EditorListener& listener;
    std::vector<std::optional<float>> told; // what the window knows of each port
    std::optional<std::pair<int, int>> wantedSize;
    std::optional<Lv2Window> window; // goes first, and is heard to its end
};

} // namespace mirelon::hosting
