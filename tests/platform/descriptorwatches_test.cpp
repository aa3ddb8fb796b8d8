#include "platform/descriptorwatches.h"

#include "tests/support/watchedpipe.h"

#include <gtest/gtest.h>

using namespace mirelon;
using namespace mirelon::test;

namespace {

using Id = DescriptorWatches::Id;

TEST(DescriptorWatches, CallNothingWhileThereIsNothingToRead) {
    DescriptorWatches watches;
    EXPECT_FALSE(watches.serve());
    WatchedPipe pipe;
    int calls = 0;
    watches.add(pipe.reader(), [&] { ++calls; });
    EXPECT_FALSE(watches.serve());
    EXPECT_EQ(calls, 0);
}

TEST(DescriptorWatches, CallAgainUntilAllIsRead) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    watches.add(pipe.reader(), [&] {
        if (++calls == 2)
            pipe.drain();
    });
    pipe.write();
    EXPECT_TRUE(watches.serve());
    EXPECT_TRUE(watches.serve());
    EXPECT_FALSE(watches.serve());
    EXPECT_EQ(calls, 2);
}

TEST(DescriptorWatches, CallOnlyThoseThatAreReady) {
    DescriptorWatches watches;
    WatchedPipe ready;
    WatchedPipe silent;
    int readyCalls = 0;
    int silentCalls = 0;
    watches.add(silent.reader(), [&] { ++silentCalls; });
    watches.add(ready.reader(), [&] { ++readyCalls; });
    ready.write();
    watches.serve();
    EXPECT_EQ(readyCalls, 1);
    EXPECT_EQ(silentCalls, 0);
}

TEST(DescriptorWatches, CallWhenTheOtherEndHasHungUp) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    watches.add(pipe.reader(), [&] { ++calls; });
    pipe.closeWriter();
    EXPECT_TRUE(watches.serve());
    EXPECT_EQ(calls, 1);
}

TEST(DescriptorWatches, DropADescriptorThatHasBeenClosed) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    watches.add(pipe.reader(), [&] { ++calls; });
    pipe.closeReader();
    EXPECT_FALSE(watches.serve());
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(watches.descriptors().empty());
}

TEST(DescriptorWatches, CallNothingThatIsRemoved) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    const Id id = watches.add(pipe.reader(), [&] { ++calls; });
    pipe.write();
    watches.remove(id);
    watches.remove(id);
    EXPECT_FALSE(watches.serve());
    EXPECT_EQ(calls, 0);
}

TEST(DescriptorWatches, CallNothingThatAnotherCallbackRemoves) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    Id second = 0;
    watches.add(pipe.reader(), [&] { watches.remove(second); });
    second = watches.add(pipe.reader(), [&] { ++calls; });
    pipe.write();
    watches.serve();
    EXPECT_EQ(calls, 0);
}

TEST(DescriptorWatches, LetACallbackRemoveItselfAndAddAnother) {
    DescriptorWatches watches;
    WatchedPipe pipe;
    int calls = 0;
    Id first = 0;
    first = watches.add(pipe.reader(), [&] {
        watches.remove(first);
        for (int i = 0; i < 20; ++i)
            watches.add(pipe.reader(), [&] { ++calls; });
        ++calls;
    });
    pipe.write();
    watches.serve();
    EXPECT_EQ(calls, 1);
    watches.serve();
    EXPECT_EQ(calls, 21);
}

TEST(DescriptorWatches, NameTheirDescriptorsInTheOrderOfTheirAdding) {
    DescriptorWatches watches;
    const Id first = watches.add(7, [] {});
    const Id second = watches.add(5, [] {});
    EXPECT_EQ(watches.descriptors(), (std::vector{7, 5}));
    watches.remove(first);
    EXPECT_EQ(watches.descriptors(), (std::vector{5}));
    watches.remove(second);
    EXPECT_NE(watches.add(5, [] {}), second);
}

} // namespace
