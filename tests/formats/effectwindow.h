// The window of a plug-in of any format in the shape of an effect, and its user.
#pragma once

#include "hosting/effect.h"
#include "hosting/pluginfile.h"
#include "tests/editor/positions.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

namespace mirelon::test {

// The tests are in effectwindow_test.cpp; each format instantiates them under its name and
// says which file is Mirelon's.
class EffectWindow : public testing::TestWithParam<const char*> {
  protected:
    static std::string file();

    EffectWindow() {
        VirtualDisplay::start();
        parent = std::make_unique<XWindow>(editorWidth, editorHeight);
    }

    void run(std::chrono::milliseconds time = std::chrono::milliseconds(60)) {
        const auto end = std::chrono::steady_clock::now() + time;
        do {
            effect.dispatch(effEditIdle);
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        } while (std::chrono::steady_clock::now() < end);
    }
    bool runUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < end)
            run(std::chrono::milliseconds(4));
        return condition();
    }
    void press(int x, int y) {
        parent->moveTo(x, y);
        run();
        parent->press();
        run();
    }

  private:
    // Nobody has stored a default.
    struct NoPreferences {
        NoPreferences() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }
        TemporaryFolder folder;
    } preferences;

  protected:
    std::unique_ptr<XWindow> parent;
    const std::unique_ptr<const hosting::PluginModule> module = hosting::openPlugin(file());
    hosting::RecordingHost host;
    hosting::Effect effect{*module, host};
};

} // namespace mirelon::test
