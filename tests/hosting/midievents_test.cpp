#include "hosting/midievents.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <vector>

namespace mirelon::hosting {
namespace {

using testing::ElementsAre;

std::vector<VstInt32> framesOf(const VstEvents& list) {
    std::vector<VstInt32> frames;
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.numEvents); ++i)
        frames.push_back(eventAt(list, i).deltaFrames);
    return frames;
}

TEST(MidiEvents, AreAnEmptyListAtFirst) {
    MidiEvents events;
    EXPECT_EQ(events.list()->numEvents, 0);
    EXPECT_EQ(events.list()->reserved, 0);
}

TEST(MidiEvents, CarryTheMessageBehindEightBytesOfZeros) {
    MidiEvents events;
    events.add(17, {0x93, 60, 100});
    const VstEvents& list = *events.list();
    ASSERT_EQ(list.numEvents, 1);
    const VstEvent& event = *list.events[0];
    EXPECT_EQ(event.type, kVstMidiType);
    EXPECT_EQ(event.byteSize, 32);
    EXPECT_EQ(event.deltaFrames, 17);
    EXPECT_EQ(event.flags, 0);
    const std::vector<std::uint8_t> data(std::begin(event.data), std::end(event.data));
    EXPECT_THAT(data, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0x93, 60, 100, 0, 0, 0, 0, 0));
    EXPECT_THAT(midiMessage(event), ElementsAre(0x93, 60, 100));
}

TEST(MidiEvents, KeepAnyNumberInTheirOrder) {
    MidiEvents events;
    std::vector<VstInt32> wanted;
    for (VstInt32 i = 0; i < 1000; ++i) {
        events.add(i % 7, {0x80, 0, 0});
        wanted.push_back(i % 7);
    }
    EXPECT_EQ(framesOf(*events.list()), wanted);
}

TEST(MidiEvents, TakeEventsOfAnyTypeAsTheyAre) {
    MidiEvents events;
    VstEvent event = midiEvent(-3, {1, 2, 3});
    event.type = 77;
    events.add(event);
    EXPECT_EQ(events.list()->events[0]->type, 77);
    EXPECT_EQ(events.list()->events[0]->deltaFrames, -3);
}

TEST(MidiEvents, StartAnewOnceTheyAreCleared) {
    MidiEvents events;
    events.add(1, {0x90, 1, 1});
    events.add(2, {0x90, 1, 1});
    events.list();
    events.clear();
    events.add(3, {0x90, 1, 1});
    EXPECT_THAT(framesOf(*events.list()), ElementsAre(3));
}

} // namespace
} // namespace mirelon::hosting
