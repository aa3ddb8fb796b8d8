// States that a render starts from.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

class RenderState : public testing::Test {
  protected:
    void SetUp() override {
        writeSound(folder / "in.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2000));
    }
    std::vector<double> rendered(std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"render", "--overwrite", folder / "in.wav", folder / "out.wav"});
        result = runMirelon(options);
        EXPECT_EQ(result.status, 0) << result.errors;
        return readSound(folder / "out.wav").samples;
    }
    void saveState(std::vector<std::string> options) {
        options.insert(options.begin(), {"chunk", "save", folder / "state"});
        const ProgramResult saved = runMirelon(options);
        EXPECT_EQ(saved.status, 0) << saved.errors;
    }

    TemporaryFolder folder;
    ProgramResult result;
};

TEST_F(RenderState, OfAFileIsTheOneThatWasSaved) {
    const std::vector<std::string> options{"--preset", "side bal right", "--set", "width=256"};
    saveState(options);
    const auto byOptions = rendered(options);
    EXPECT_EQ(rendered({"--chunk", folder / "state"}), byOptions);
    EXPECT_NE(rendered({}), byOptions);
}

TEST_F(RenderState, OfAFileGoesFirst) {
    saveState({"--preset", "swapped", "--set", "gain=2.4"});
    // Preset 10 of the saved bank has its own gain; preset 0 is as ever.
    EXPECT_EQ(rendered({"--chunk", folder / "state", "--preset", "init"}), rendered({}));
    EXPECT_EQ(rendered({"--chunk", folder / "state", "--set", "gain=0"}),
              rendered({"--preset", "swapped"}));
}

TEST_F(RenderState, ThatThePluginDoesNotTakeIsRefused) {
    saveState({});
    const std::string state = contentsOf(folder / "state");
    writeFile(folder / "out.wav", "precious");
    const auto refusalOf = [&](const std::string& bytes) {
        writeFile(folder / "bad", bytes);
        const ProgramResult refused = runMirelon({"render", "--overwrite", folder / "in.wav",
                                                  folder / "out.wav", "--chunk", folder / "bad"});
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(contentsOf(folder / "out.wav"), "precious");
        return refused.errors;
    };
    const auto doesNotTake = HasSubstr("bad: the plug-in does not take it as its state");
    EXPECT_THAT(refusalOf(state.substr(0, 691)), doesNotTake);
    EXPECT_THAT(refusalOf(state + '\0'), doesNotTake);
    EXPECT_THAT(refusalOf(""), doesNotTake);
    std::string foreign = state;
    foreign[4] = 'X';
    EXPECT_THAT(refusalOf(foreign), doesNotTake);
    // Header words of the other byte order are accepted without effect, which is
    // no success for somebody who asked for that state.
    std::string swapped = state;
    for (std::size_t word = 0; word < 16; word += 4)
        std::reverse(swapped.begin() + static_cast<std::ptrdiff_t>(word),
                     swapped.begin() + static_cast<std::ptrdiff_t>(word) + 4);
    EXPECT_THAT(refusalOf(swapped), doesNotTake);
}

TEST_F(RenderState, IsRefusedForAPluginWithoutOne) {
    saveState({});
    const ProgramResult refused =
        runHost({"render", "--overwrite", folder / "in.wav", folder / "out.wav", "--plugin",
                 testPlugin("gain"), "--chunk", folder / "state"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("keeps no state chunk"));
}

TEST_F(RenderState, FileThatCannotBeReadIsRefused) {
    const ProgramResult refused = runMirelon({"render", "--overwrite", folder / "in.wav",
                                              folder / "out.wav", "--chunk", folder / "missing"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("missing: cannot be read (No such file"));
}

} // namespace
} // namespace mirelon::test
