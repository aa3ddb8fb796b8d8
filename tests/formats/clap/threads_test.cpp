// Audio, window and state of one CLAP instance at the same time.
#include "tests/formats/clap/clapwindowhost.h"

#include "tests/editor/positions.h"

#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

// The audio thread of a host: blocks with events, one after the other.
class AudioThread {
  public:
    explicit AudioThread(hosting::ClapInstance& instance)
        : thread([this, &instance] { run(instance); }) {}
    ~AudioThread() {
        over = true;
        thread.join();
    }
    AudioThread(const AudioThread&) = delete;
    AudioThread& operator=(const AudioThread&) = delete;

    int valuesTold() const { return values; }
    int gesturesOpen() const { return open; }

  private:
    void run(hosting::ClapInstance& instance) {
        std::mt19937 random(5);
        float samples[4][128] = {};
        float* const inputs[] = {samples[0], samples[1]};
        float* const outputs[] = {samples[2], samples[3]};
        hosting::ClapInputEvents events;
        hosting::ClapOutputEvents told;
        while (!over) {
            events.clear();
            for (std::uint32_t i = 0; i < 4; ++i)
                events.add(hosting::clapValueEvent(i * 30, static_cast<clap_id>(2 + random() % 7),
                                                   static_cast<double>(random() % 100) / 99.0));
            told.clear();
            instance.process(inputs, outputs, 128, events.list(), told.list());
            for (const hosting::ClapTold& each : told.told()) {
                values += each.type == CLAP_EVENT_PARAM_VALUE ? 1 : 0;
                open += each.type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? 1 : 0;
                open -= each.type == CLAP_EVENT_PARAM_GESTURE_END ? 1 : 0;
            }
            std::this_thread::sleep_for(1ms);
        }
    }

    std::atomic<bool> over{false};
    std::atomic<int> values{0};
    std::atomic<int> open{0};
    std::thread thread;
};

TEST(ClapThreads, WindowAudioAndStateWorkAtOnce) {
    ClapWindowHost host;
    ASSERT_TRUE(host.plugIn.instance.activate(48000.0, 128));
    const auto state = host.plugIn.instance.save();
    {
        const AudioThread audio(host.plugIn.instance);
        for (int round = 0; round < 6; ++round) {
            ASSERT_TRUE(host.open());
            host.drag(handlePosition(0.3), handlePosition(0.7), 94);
            EXPECT_TRUE(host.plugIn.instance.save());
            host.click(rockerRight.x, rockerRight.y);
            EXPECT_TRUE(host.plugIn.instance.load(*state));
            host.run();
            for (int index = 0; index < kNumParams; ++index)
                EXPECT_TRUE(host.plugIn.instance.value(static_cast<clap_id>(index)));
            host.close();
        }
        EXPECT_TRUE(host.runUntil([&] { return audio.valuesTold() > 0; }));
        EXPECT_TRUE(host.runUntil([&] { return audio.gesturesOpen() == 0; }));
    }
    EXPECT_GT(host.plugIn.host.rescans(), 0);
}

} // namespace
} // namespace mirelon::test
