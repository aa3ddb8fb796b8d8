// By itself, for it takes the allocation functions over.
#include "tests/formats/lv2/lv2bundle.h"
#include "tests/support/allocations.h"

#include <gtest/gtest.h>
#include <random>

namespace mirelon::test {
namespace {

TEST(Lv2RealTime, RunningAllocatesNothingWithPortsMovingAndMessagesComing) {
    hosting::Lv2Instance instance(lv2Bundle(), 48000.0);
    const hosting::Lv2State state = instance.save();
    ChunkImage bank{};
    std::ranges::copy(state.at(lv2::bankPropertyUri).value, bank.begin());
    const lv2::BankMessage message = lv2::formBankMessage(lv2Types(), bank);
    const lv2::GetMessage question = lv2::formGetMessage(lv2Types());
    std::vector<float> samples(4 * 64);
    float* const inputs[] = {&samples[0], &samples[64]};
    float* const outputs[] = {&samples[128], &samples[192]};
    instance.run(inputs, outputs, 64);
    std::minstd_rand random(1);
    long made = 0;
    for (int block = 0; block < 500; ++block) {
        for (std::uint32_t port = 0; port < instance.portCount(); ++port)
            if (instance.isControlInput(port))
                instance.control(port) = static_cast<float>(random() % 100) - 50.0F;
        if (block % 3 == 0)
            instance.send(message);
        if (block % 5 == 0)
            instance.send(question);
        if (block % 50 == 0)
            instance.restore(state);
        instance.prepareSequences();
        const long before = allocationsMade();
        instance.runOnly(64);
        made += allocationsMade() - before;
    }
    EXPECT_EQ(made, 0);
}

// The count above would see what the plug-in allocates: making an instance does.
TEST(Lv2RealTime, AllocationsOfThePlugInAreCounted) {
    const long before = allocationsMade();
    LilvInstance* const instance = lilv_plugin_instantiate(lv2Bundle().plugin(), 48000.0, nullptr);
    const long made = allocationsMade() - before; // lilv is C: it makes none of these
    lilv_instance_free(instance);
    EXPECT_GT(made, 3);
}

} // namespace
} // namespace mirelon::test
