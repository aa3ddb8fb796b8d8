// What a pipe can do to the sound that goes through it.
#include "tests/support/systemcalls.h"
#include "tests/support/temporaryfolder.h"
#include "tools/audio/pipeoutput.h"
#include "tools/commanderror.h"

#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <memory>
#include <sndfile.h>
#include <unistd.h>
#include <vector>

namespace mirelon::tools {
namespace {

using test::contentsOf;
using test::SystemCall;
using test::SystemCalls;
using test::TemporaryFolder;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr int frames = 1000;
constexpr int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class PipeOutputFaults : public testing::Test {
  protected:
    // Into a file, which takes what a pipe takes.
    std::string written() const {
        const std::filesystem::path file = folder / "out";
        const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        try {
            PipeOutput output(descriptor, format, frames);
            SF_INFO info{0, 48000, 2, format, 0, 0};
            const SoundHandle handle = output.open(info);
            output.begin(handle.get());
            std::vector<short> samples(2 * frames);
            for (std::size_t i = 0; i < samples.size(); ++i)
                samples[i] = static_cast<short>(i);
            sf_writef_short(handle.get(), samples.data(), frames);
            output.finish(frames);
        } catch (...) {
            close(descriptor);
            throw;
        }
        close(descriptor);
        return contentsOf(file);
    }

    const TemporaryFolder folder;
};

TEST_F(PipeOutputFaults, WhatIsTakenInPartsArrivesWhole) {
    const std::string whole = written();
    ASSERT_GT(whole.size(), std::size_t{4 * frames});
    SystemCalls calls;
    calls.writeAtMost(7);
    EXPECT_EQ(written(), whole);
}

TEST_F(PipeOutputFaults, AnInterruptedWriteIsMadeAgain) {
    const std::string whole = written();
    SystemCalls calls;
    calls.failNext(SystemCall::write, EINTR);
    EXPECT_EQ(written(), whole);
}

TEST_F(PipeOutputFaults, ThatNobodyReadsIsSaidSo) {
    SystemCalls calls;
    calls.failNext(SystemCall::write, EPIPE);
    EXPECT_THAT([this] { written(); }, ThrowsMessage<CommandError>(HasSubstr(
                                           "standard output: cannot be written (Broken pipe)")));
}

} // namespace
} // namespace mirelon::tools
