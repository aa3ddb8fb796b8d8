// By itself, for it takes the allocation functions over.
#include "tests/formats/clap/clapfile.h"
#include "tests/support/allocations.h"

#include <gtest/gtest.h>
#include <random>

namespace mirelon::test {
namespace {

class ClapRealTime : public testing::Test {
  protected:
    EmptyPreferences preferences;
    ClapPlugIn plugIn;
};

template <typename Sample>
long allocationsOfBlocks(hosting::ClapInstance& instance, int blocks) {
    std::vector<Sample> samples(std::size_t{4} * 64);
    Sample* const inputs[] = {&samples[0], &samples[64]};
    Sample* const outputs[] = {&samples[128], &samples[192]};
    std::mt19937 random(1);
    hosting::ClapInputEvents events;
    hosting::ClapOutputEvents told;
    long made = 0;
    for (int block = 0; block < blocks; ++block) {
        events.clear();
        for (std::uint32_t i = 0; i < 20; ++i)
            events.add(hosting::clapValueEvent(i * 3, static_cast<clap_id>(random() % 12),
                                               static_cast<double>(random() % 100) / 99.0));
        told.clear();
        const long before = allocationsMade();
        if (block % 7 == 0)
            instance.flush(events.list(), told.list());
        else
            instance.process(inputs, outputs, 64, events.list(), told.list());
        made += allocationsMade() - before;
    }
    return made;
}

TEST_F(ClapRealTime, ProcessingAndFlushingAllocateNothingWithEventsComing) {
    plugIn.instance.activate(48000.0, 64);
    EXPECT_EQ(allocationsOfBlocks<float>(plugIn.instance, 500), 0);
    EXPECT_EQ(allocationsOfBlocks<double>(plugIn.instance, 500), 0);
}

TEST_F(ClapRealTime, ResettingAllocatesNothing) {
    plugIn.instance.activate(48000.0, 64);
    const clap_plugin& made = plugIn.instance.plugin();
    const long before = allocationsMade();
    made.reset(&made);
    EXPECT_EQ(allocationsMade() - before, 0);
}

// The counts above would see what the plug-in allocates: making an instance does.
TEST_F(ClapRealTime, AllocationsOfThePlugInAreCounted) {
    const clap_plugin_factory& factory = clapLibrary().factory();
    const long before = allocationsMade();
    const clap_plugin* const made = factory.create_plugin(&factory, nullptr, clapId);
    const long count = allocationsMade() - before;
    made->destroy(made);
    EXPECT_GT(count, 3);
}

} // namespace
} // namespace mirelon::test
