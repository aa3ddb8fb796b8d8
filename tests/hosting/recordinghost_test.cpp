#include "hosting/recordinghost.h"

#include "tests/support/allocations.h"

#include <array>
#include <climits>
#include <gmock/gmock.h>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <string>

namespace {
thread_local int locksTaken = 0;
} // namespace

// The linker leads the calls of this program's own code here.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
extern "C" int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    ++locksTaken;
    return __real_pthread_mutex_lock(mutex);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace mirelon::hosting {
namespace {

VstIntPtr call(const RecordingHost& host, VstInt32 opcode) {
    return host.callback()(nullptr, opcode, 0, 0, nullptr, 0.0F);
}

TEST(RecordingHost, AnswersTheVersionAndTheUsualFormatByItself) {
    const RecordingHost host;
    EXPECT_EQ(call(host, audioMasterVersion), 2400);
    EXPECT_EQ(call(host, audioMasterGetSampleRate), 44100);
    EXPECT_EQ(call(host, audioMasterGetBlockSize), 1024);
    EXPECT_EQ(call(host, audioMasterCanDo), 0);
}

TEST(RecordingHost, RemembersEveryArgument) {
    const RecordingHost host;
    AEffect effect{};
    int something = 0;
    host.callback()(&effect, audioMasterAutomate, 7, 1234567890123, &something, 0.25F);
    const auto calls = host.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].effect, &effect);
    EXPECT_EQ(calls[0].opcode, audioMasterAutomate);
    EXPECT_EQ(calls[0].index, 7);
    EXPECT_EQ(calls[0].value, 1234567890123);
    EXPECT_EQ(calls[0].ptr, &something);
    EXPECT_EQ(calls[0].opt, 0.25F);
    EXPECT_EQ(calls[0].thread, std::this_thread::get_id());
}

TEST(RecordingHost, KeepsTheOrderOfCallsAndPicksThoseOfOneOpcode) {
    RecordingHost host;
    call(host, audioMasterBeginEdit);
    call(host, audioMasterAutomate);
    call(host, audioMasterEndEdit);
    call(host, audioMasterAutomate);
    const auto calls = host.calls();
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[0].opcode, audioMasterBeginEdit);
    EXPECT_EQ(calls[2].opcode, audioMasterEndEdit);
    EXPECT_EQ(host.count(audioMasterAutomate), 2U);
    host.forgetCalls();
    EXPECT_TRUE(host.calls().empty());
}

TEST(RecordingHost, AnswersWhatItWasToldTo) {
    RecordingHost host;
    host.answer(audioMasterGetSampleRate, 96000);
    host.answer(audioMasterGetLanguage, [](const HostCall& call) { return call.opcode + 1; });
    EXPECT_EQ(call(host, audioMasterGetSampleRate), 96000);
    EXPECT_EQ(call(host, audioMasterGetLanguage), audioMasterGetLanguage + 1);
}

TEST(RecordingHost, AnAnswerMayCallTheHostAgain) {
    RecordingHost host;
    host.answer(audioMasterIdle,
                [&host](const HostCall&) { return call(host, audioMasterVersion); });
    EXPECT_EQ(call(host, audioMasterIdle), 2400);
    EXPECT_EQ(host.calls().size(), 2U);
}

TEST(RecordingHost, AnAnswerThatThrowsIsZero) {
    RecordingHost host;
    host.answer(audioMasterIdle,
                [](const HostCall&) -> VstIntPtr { throw std::runtime_error("no"); });
    EXPECT_EQ(call(host, audioMasterIdle), 0);
}

TEST(RecordingHost, CanDoWithoutRecording) {
    const RecordingHost host(Recording::off);
    EXPECT_EQ(call(host, audioMasterVersion), 2400);
    EXPECT_TRUE(host.calls().empty());
}

TEST(RecordingHost, WithoutRecordingNeitherLocksNorAllocatesInACall) {
    RecordingHost host(Recording::off);
    const std::array<VstIntPtr, 6> large{1, 2, 3, 4, 5, 6};
    host.answer(audioMasterGetTime, [large](const HostCall&) { return large.back(); });
    const int locks = locksTaken;
    const long allocations = test::allocationsMade();
    for (const VstInt32 opcode : {audioMasterGetTime, audioMasterVersion, audioMasterAutomate})
        call(host, opcode);
    EXPECT_EQ(locksTaken, locks);
    EXPECT_EQ(test::allocationsMade(), allocations);
    host.calls();
    EXPECT_EQ(locksTaken, locks + 1) << "locks are not counted";
}

TEST(RecordingHost, AnswersZeroToWhatIsNoOpcodeAndTakesNoAnswerForIt) {
    RecordingHost host;
    for (const VstInt32 opcode : {-1, 50, INT_MAX, INT_MIN}) {
        EXPECT_EQ(call(host, opcode), 0);
        EXPECT_THROW(host.answer(opcode, 1), std::out_of_range);
    }
    EXPECT_EQ(host.calls().size(), 4U);
}

TEST(RecordingHost, ANumberTakesTheFunctionsPlaceAndTheFunctionTheNumbers) {
    RecordingHost host;
    host.answer(audioMasterIdle, [](const HostCall&) { return 1; });
    host.answer(audioMasterIdle, 2);
    EXPECT_EQ(call(host, audioMasterIdle), 2);
    host.answer(audioMasterIdle, [](const HostCall&) { return 3; });
    EXPECT_EQ(call(host, audioMasterIdle), 3);
}

TEST(RecordingHost, AnAnswerMayReplaceItself) {
    RecordingHost host;
    const std::string kept = "a text that is too long to lie in the function itself";
    host.answer(audioMasterIdle, [&host, kept](const HostCall&) {
        host.answer(audioMasterIdle, 7);
        return static_cast<VstIntPtr>(kept.size());
    });
    EXPECT_EQ(call(host, audioMasterIdle), static_cast<VstIntPtr>(kept.size()));
    EXPECT_EQ(call(host, audioMasterIdle), 7);
}

TEST(RecordingHost, ManyLiveSideBySideAndTheirPlacesAreUsedAgain) {
    for (int round = 0; round < 2; ++round) {
        std::vector<std::unique_ptr<RecordingHost>> hosts;
        for (std::size_t i = 0; i < RecordingHost::mostHosts; ++i) {
            hosts.push_back(std::make_unique<RecordingHost>());
            hosts.back()->answer(audioMasterCurrentId, static_cast<VstIntPtr>(i));
        }
        EXPECT_THROW(RecordingHost(), std::runtime_error);
        for (std::size_t i = 0; i < hosts.size(); ++i)
            EXPECT_EQ(call(*hosts[i], audioMasterCurrentId), static_cast<VstIntPtr>(i));
    }
}

} // namespace
} // namespace mirelon::hosting
