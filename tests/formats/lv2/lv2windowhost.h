// A window of the LV2 plug-in in a host's window, and a user in front of it;
// the plug-in may be playing behind it.
#pragma once

#include "tests/formats/lv2/lv2bundle.h"
#include "tests/formats/lv2/notedwindow.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace mirelon::test {

// What a host does with a window's writes.
enum class Echo {
    none, // the value is the window's affair
    late, // tells the window its own values a little later, as some hosts do
};

class Lv2WindowHost {
  public:
    explicit Lv2WindowHost(std::optional<float> scale = std::nullopt);

    // Opens the window; false when it refuses.
    bool open();
    // From here on the plug-in plays: writes reach it, its ports and messages
    // reach the window.
    void play(Echo echo = Echo::none);

    // Lets the host's loop run.
    void run(std::chrono::milliseconds time = std::chrono::milliseconds(80));
    // Lets only what hangs on GLib's main loop run: the window's input, not its
    // idle.
    static void runMainLoop(std::chrono::milliseconds time = std::chrono::milliseconds(80));

    void moveTo(int x, int y);
    void click(int x, int y, unsigned button = 1);
    void doubleClick(int x, int y);
    void drag(int fromX, int toX, int y);
    Pixels pixels();

    // Writes to this port since the last forgetting, as numbers.
    std::vector<float> numbersWritten(std::uint32_t port) const;
    std::vector<ChunkImage> banksWritten() const;
    int questions() const; // of the window for the bank
    ChunkImage playedBank();

    std::optional<float> scale;
    std::unique_ptr<XWindow> parent;
    std::unique_ptr<NotedWindow> window;
    std::unique_ptr<hosting::Lv2Instance> instance; // null: nothing plays

  private:
    void turn();
    void carry(const hosting::Lv2Write& write);
    void runAudio();

    TemporaryFolder preferences;
    Echo echo = Echo::none;
    std::vector<float> told;                           // output ports and inputs
    std::vector<std::pair<std::uint32_t, float>> late; // to be echoed
    int turns = 0;
};

} // namespace mirelon::test
