// A window of the LV2 plug-in in a host's.
#pragma once

#include "tests/formats/lv2/lv2bundle.h"
#include "tests/formats/lv2/notedwindow.h"
#include "tests/formats/windowhost.h"

#include <chrono>
#include <memory>
#include <vector>

namespace mirelon::test {

// What a host does with a window's writes.
enum class Echo {
    none, // the value is the window's affair
    late, // tells the window its own values a little later, as some hosts do
};

class Lv2WindowHost final : public WindowHost {
  public:
    bool open(std::optional<double> scale = std::nullopt) override;
    // What the window has written can still be asked for.
    void close() override;
    // Writes reach the plug-in from here on, its ports and messages reach the window.
    void play() override { play(Echo::none); }
    void play(Echo echo);

    // Lets only what hangs on GLib's main loop run: the window's input, not its
    // idle.
    static void runMainLoop(std::chrono::milliseconds time = std::chrono::milliseconds(80));

    Size size() override;
    std::vector<Size> sizesAsked() override;
    std::string gestures() override;
    std::vector<float> valuesTold(int parameter) override;
    std::optional<float> value(int parameter) override;
    std::optional<ChunkImage> bank() override;
    void set(int parameter, float value) override;

    // Writes to this port since the last forgetting, as numbers.
    std::vector<float> numbersWritten(std::uint32_t port) const;
    std::vector<ChunkImage> banksWritten() const;
    int questions() const; // of the window for the bank
    ChunkImage playedBank();

    std::unique_ptr<NotedWindow> window;
    std::unique_ptr<hosting::Lv2Instance> instance; // null: nothing plays

  private:
    void turn() override;
    void carry(const hosting::Lv2Write& write);
    void runAudio();

    Echo echo = Echo::none;
    std::vector<float> told;                           // output ports and inputs
    std::vector<std::pair<std::uint32_t, float>> late; // to be echoed
    int turns = 0;
};

} // namespace mirelon::test
