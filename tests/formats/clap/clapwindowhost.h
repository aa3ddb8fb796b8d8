// A window of the CLAP plug-in in a host's.
#pragma once

#include "tests/formats/clap/clapfile.h"
#include "tests/formats/windowhost.h"

#include <vector>

namespace mirelon::test {

// With a playing plug-in a turn of its loop also plays a block of silence and notes what
// the plug-in tells meanwhile.
class ClapWindowHost final : public WindowHost {
  public:
    explicit ClapWindowHost(hosting::ClapExtensions offered = hosting::ClapExtensions::all);
    ~ClapWindowHost() override;

    // Asks for everything that a host asks for, one after the other.
    bool open(std::optional<double> scale = std::nullopt) override;
    void close() override;
    void play() override;

    Size size() override;
    std::vector<Size> sizesAsked() override;
    std::string gestures() override;
    std::vector<float> valuesTold(int parameter) override;
    std::optional<float> value(int parameter) override;
    std::optional<ChunkImage> bank() override;
    void set(int parameter, float value) override;

    const clap_plugin* plugin() const { return &plugIn.instance.plugin(); }
    const clap_plugin_gui& gui() const { return *plugIn.instance.window(); }

    // What the plug-in has told so far, in its order.
    std::vector<hosting::ClapTold> told;

    ClapPlugIn plugIn;

  private:
    void turn() override;

    bool playing = false;
    std::size_t sizesBefore = 0; // asked for before it was opened
};

} // namespace mirelon::test
