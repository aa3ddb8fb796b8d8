// What mirelon-host render prints about a file.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(RenderReport, SpeaksOfClippingAndLoudnessOnlyWhereThereIsSome) {
    const TemporaryFolder folder;
    writeSound(folder / "in.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2000));
    const auto printed = [&](std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"render", "--overwrite", folder / "in.wav", folder / "out.wav"});
        const ProgramResult result = runMirelon(options);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.output + result.errors;
    };
    const std::string plain = printed({});
    EXPECT_THAT(plain, HasSubstr("dBFS"));
    EXPECT_THAT(plain, Not(HasSubstr("beyond full scale")));
    EXPECT_THAT(plain, Not(HasSubstr("EBU R 128")));
    EXPECT_THAT(printed({"--set", "gain=12"}), HasSubstr("were beyond full scale"));
}

} // namespace
} // namespace mirelon::test
