// The way of the user's changes from the window to the audio thread.
#include "formats/clap/changering.h"

#include <atomic>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace mirelon::clap {
namespace {

// "b1 v1=3 e1" and so on.
std::string taken(ChangeRing& ring) {
    std::ostringstream all;
    ring.take([&](const Change& change) {
        const char* const between = all.tellp() == 0 ? "" : " ";
        switch (change.kind) {
        case Change::Kind::begin:
            all << between << 'b' << change.index;
            break;
        case Change::Kind::value:
            all << between << 'v' << change.index << '=' << change.value;
            break;
        case Change::Kind::end:
            all << between << 'e' << change.index;
            break;
        }
        return true;
    });
    return all.str();
}

TEST(ClapChangeRing, GivesChangesInTheirOrder) {
    ChangeRing ring;
    ring.begin(1);
    ring.value(1, 3.0F);
    ring.value(2, 4.0F);
    ring.end(1);
    EXPECT_EQ(taken(ring), "b1 v1=3 v2=4 e1");
    EXPECT_TRUE(ring.isEmpty());
    EXPECT_EQ(taken(ring), "");
}

TEST(ClapChangeRing, KeepsWhatTheReaderHasNoRoomFor) {
    ChangeRing ring;
    for (int i = 0; i < 3; ++i)
        ring.value(i, 0.0F);
    int room = 1;
    EXPECT_FALSE(ring.take([&](const Change&) { return room-- > 0; }));
    EXPECT_EQ(taken(ring), "v1=0 v2=0");
}

TEST(ClapChangeRing, SaysWhenItHasBeenEmptied) {
    ChangeRing ring;
    EXPECT_FALSE(ring.take([](const Change&) { return true; }));
    ring.value(0, 0.0F);
    EXPECT_TRUE(ring.take([](const Change&) { return true; }));
}

TEST(ClapChangeRing, LosesValuesWhenFullAndSaysSoOnce) {
    ChangeRing ring;
    for (int i = 0; i < 1000; ++i)
        ring.value(0, static_cast<float>(i));
    EXPECT_TRUE(ring.takeLoss());
    EXPECT_FALSE(ring.takeLoss());
    const std::string all = taken(ring);
    EXPECT_TRUE(all.starts_with("v0=0 v0=1 "));
    EXPECT_TRUE(all.ends_with(" v0=255"));
}

TEST(ClapChangeRing, AlwaysHasRoomForTheEndOfAGesture) {
    ChangeRing ring;
    for (int index = 0; index < kNumParams; ++index)
        ring.begin(index);
    for (int i = 0; i < 1000; ++i)
        ring.value(0, 0.0F);
    for (int index = 0; index < kNumParams; ++index)
        ring.end(index);
    EXPECT_TRUE(taken(ring).ends_with("v0=0 e0 e1 e2 e3 e4 e5 e6 e7 e8"));
}

TEST(ClapChangeRing, BeginsNoGestureForWhoseEndThereIsNoRoom) {
    ChangeRing ring;
    for (int i = 0; i < 255; ++i)
        ring.value(0, 0.0F);
    ring.begin(1);
    ring.end(1);
    ring.value(1, 7.0F);
    EXPECT_TRUE(taken(ring).ends_with("v0=0 v1=7"));
    ring.begin(1);
    ring.end(1);
    EXPECT_EQ(taken(ring), "b1 e1");
}

TEST(ClapChangeRing, SecondBeginsAndEndsAreSwallowed) {
    ChangeRing ring;
    ring.end(3);
    ring.begin(3);
    ring.begin(3);
    ring.end(3);
    ring.end(3);
    EXPECT_EQ(taken(ring), "b3 e3");
}

TEST(ClapChangeRing, CarriesEveryGestureWholeBetweenTwoThreads) {
    ChangeRing ring;
    std::atomic<bool> over{false};
    int values = 0;
    int begun = 0;
    int ended = 0;
    float last = -1.0F;
    bool inOrder = true;
    const auto read = [&] {
        ring.take([&](const Change& change) {
            if (change.kind == Change::Kind::begin) {
                ++begun;
            } else if (change.kind == Change::Kind::end) {
                ++ended;
            } else {
                inOrder = inOrder && change.value > last;
                last = change.value;
                ++values;
            }
            return true;
        });
    };
    std::thread reader([&] {
        while (!over)
            read();
        read();
    });
    for (int gesture = 0; gesture < 20000; ++gesture) {
        ring.begin(gesture % kNumParams);
        ring.value(gesture % kNumParams, static_cast<float>(gesture));
        ring.end(gesture % kNumParams);
        if (gesture % 64 == 0)
            std::this_thread::yield();
    }
    over = true;
    reader.join();
    EXPECT_TRUE(ring.isEmpty());
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(begun, ended);
    EXPECT_GT(values, 0);
    EXPECT_EQ(values < 20000, ring.takeLoss());
}

// A host that empties it on two threads at once gets every change from one of them.
TEST(ClapChangeRing, HandsNothingOutTwiceToTwoReaders) {
    ChangeRing ring;
    std::atomic<bool> over{false};
    std::atomic<int> sum{0};
    const auto read = [&] {
        while (!over || !ring.isEmpty())
            ring.take([&](const Change& change) {
                sum += static_cast<int>(change.value);
                return true;
            });
    };
    std::thread first(read);
    std::thread second(read);
    int expected = 0;
    for (int i = 0; i < 5000; ++i) {
        ring.value(0, 1.0F);
        expected += ring.takeLoss() ? 0 : 1;
    }
    over = true;
    first.join();
    second.join();
    EXPECT_EQ(sum, expected);
}

} // namespace
} // namespace mirelon::clap
