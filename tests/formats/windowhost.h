// A host's window with the plug-in's in it, and a user in front of it; the plug-in may
// be playing behind it. What hosts of every format do alike, and what tests ask of
// each.
#pragma once

#include "presetsystem/chunkimage.h"
#include "tests/editor/positions.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mirelon::test {

// The row of the slider that the tests move, at scale 1.
constexpr int gainRow = sliderPlaces[1].y;

class WindowHost {
  public:
    using Size = std::pair<int, int>;

    virtual ~WindowHost() = default;
    WindowHost(const WindowHost&) = delete;
    WindowHost& operator=(const WindowHost&) = delete;

    // In the scale that the host asks for, if in any. False when it is refused.
    virtual bool open(std::optional<double> scale = std::nullopt) = 0;
    virtual void close() = 0;
    // From here on the plug-in plays.
    virtual void play() = 0;

    // Lets the host's loop run: for at least so long, and as many turns of it as fit into
    // that on an idle machine. `runUntil` answers whether it came true in time.
    void run(std::chrono::milliseconds time = std::chrono::milliseconds(60));
    bool runUntil(const std::function<bool()>& condition);
    // Runs until the window shows something else than `before` and has come to rest.
    bool runUntilStill(const Pixels& before);

    // Positions are in pixels of the window.
    void moveTo(int x, int y);
    void click(int x, int y, unsigned button = 1);
    void doubleClick(int x, int y);
    void drag(int fromX, int toX, int y);
    void key(unsigned long keysym);
    Pixels pixels();
    // In the menu of the window's top line. False when that does not open, or the window
    // asks for no other size then.
    bool chooseSizeOfOneAndAHalf();

    // The window's size, as it has said itself.
    virtual Size size() = 0;
    // The sizes that it has asked for since it is open.
    virtual std::vector<Size> sizesAsked() = 0;
    // What it has told of gestures: "b1e1" for the begin and the end of one on
    // parameter 1.
    virtual std::string gestures() = 0;
    // The values of a parameter that it has told, normalised.
    virtual std::vector<float> valuesTold(int parameter) = 0;
    // What the host takes a parameter for, normalised; nothing where it does not know.
    virtual std::optional<float> value(int parameter) = 0;
    // The bank as it is stored with a session; nothing where there is none.
    virtual std::optional<ChunkImage> bank() = 0;
    // As the host's automation sets a parameter; normalised.
    virtual void set(int parameter, float value) = 0;

    std::unique_ptr<XWindow> parent;

  protected:
    WindowHost();
    // Of the host's loop.
    virtual void turn() = 0;

  private:
    TemporaryFolder preferences;
};

} // namespace mirelon::test
