#include "hosting/recordinghost.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace mirelon::hosting {
namespace {

TEST(RecordingHost, TakesCallsOfManyThreads) {
    constexpr int threadCount = 4;
    constexpr int callCount = 2000;
    RecordingHost host;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&host] {
            for (int n = 0; n < callCount; ++n)
                host.callback()(nullptr, audioMasterGetTime, 0, 0, nullptr, 0.0F);
        });
    }
    for (int n = 0; n < callCount; n += 2) {
        host.answer(audioMasterGetTime, n);
        host.answer(audioMasterGetTime, [n](const HostCall&) { return n; });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(host.count(audioMasterGetTime), std::size_t{threadCount} * callCount);
}

} // namespace
} // namespace mirelon::hosting
