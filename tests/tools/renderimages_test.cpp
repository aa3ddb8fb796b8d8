// mirelon-host render with preset and bank files.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"

#include <gmock/gmock.h>

namespace mirelon::test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

// A WAV file of 16 bits and two channels: a ramp, left against right.
std::string smallWave() {
    const auto word = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> (8 * i) & 0xFFU);
        return text;
    };
    std::string samples;
    for (std::uint32_t i = 0; i < 500; ++i)
        samples += word(i * 20, 2) + word(10000 - i * 7, 2);
    return "RIFF" + word(36 + static_cast<std::uint32_t>(samples.size()), 4) + "WAVEfmt " +
           word(16, 4) + word(1, 2) + word(2, 2) + word(48000, 4) + word(192000, 4) + word(4, 2) +
           word(16, 2) + "data" + word(static_cast<std::uint32_t>(samples.size()), 4) + samples;
}

class RenderImages : public testing::Test {
  protected:
    void SetUp() override { writeFile(folder / "in.wav", smallWave()); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    ProgramResult run(std::vector<std::string> arguments) const {
        return runMirelon(std::move(arguments));
    }
    // The samples that a rendering with these options gives.
    std::string rendered(std::vector<std::string> options) const {
        options.insert(options.begin(), {"render", "--overwrite", path("in.wav"), path("out.wav")});
        const ProgramResult result = run(options);
        EXPECT_EQ(result.status, 0) << result.errors;
        return contentsOf(folder / "out.wav");
    }

    const TemporaryFolder folder;
};

TEST_F(RenderImages, APresetFileSoundsLikeThePresetItHolds) {
    ASSERT_EQ(run({"preset", "save", path("a.dvp"), "--preset", "10"}).status, 0);
    EXPECT_EQ(rendered({"--preset-file", path("a.dvp")}), rendered({"--preset", "10"}));
    EXPECT_NE(rendered({"--preset-file", path("a.dvp")}), rendered({}));
}

TEST_F(RenderImages, ABankFileProvidesItsPresets) {
    ASSERT_EQ(run({"bank", "save", path("a.dvb")}).status, 0);
    std::string bank = contentsOf(folder / "a.dvb");
    bank.replace(29, 4, "\x3E\x80\0\0"s);          // preset 0: width 0.25
    bank.replace(29 + 60 * 7, 4, "\x3F\x80\0\0"s); // preset 7: width 1
    writeFile(folder / "a.dvb", bank);
    EXPECT_EQ(rendered({"--bank-file", path("a.dvb")}),
              rendered({"--set-normalised", "width=0.25"}));
    EXPECT_EQ(rendered({"--bank-file", path("a.dvb"), "--preset", "7"}),
              rendered({"--preset", "7", "--set-normalised", "width=1"}));
}

TEST_F(RenderImages, SettingsComeOverAPresetFile) {
    ASSERT_EQ(run({"preset", "save", path("a.dvp"), "--preset", "1"}).status, 0);
    EXPECT_EQ(rendered({"--preset-file", path("a.dvp"), "--set", "width=100"}), rendered({}));
}

TEST_F(RenderImages, AFileOfTheWrongKindIsRefusedAndNothingIsWritten) {
    ASSERT_EQ(run({"preset", "save", path("a.dvp")}).status, 0);
    const ProgramResult result =
        run({"render", path("in.wav"), path("new.wav"), "--bank-file", path("a.dvp")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("a preset, not a bank"));
    EXPECT_FALSE(exists(folder / "new.wav"));
}

} // namespace
} // namespace mirelon::test
