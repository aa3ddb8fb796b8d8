// mirelon-host plot: the whole picture, as its reference.
//
// With MIRELON_KEEP_PICTURES in the environment, a folder, nothing is compared: what is
// drawn is kept there as a reference. scripts/pictures plot makes all of them so.
#include "tests/support/fontsettings.h"
#include "tests/support/referencepictures.h"
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numbers>
#include <sndfile.h>
#include <string>

namespace mirelon::test {
namespace {

namespace fs = std::filesystem;

// Where type is set, between what is drawn.
constexpr auto type = std::to_array<TypeArea>({
    {48, 30, 1552, 105},                                                  // file and settings
    {60, 136, 540, 172},    {568, 136, 1048, 172},                        // the goniometers' names
    {160, 248, 192, 272},   {392, 248, 424, 272},   {94, 405, 140, 442},  // in the first one
    {668, 248, 700, 272},   {900, 248, 932, 272},   {602, 405, 648, 442}, // in the second
    {1064, 136, 1552, 163},                                               // the table's head
    {1064, 176, 1552, 203}, {1064, 216, 1552, 243}, {1064, 256, 1552, 283}, {1064, 296, 1552, 323},
    {1064, 336, 1552, 363}, {1064, 376, 1552, 403}, {1064, 424, 1552, 512}, // and notes
    {60, 620, 300, 645},    {60, 894, 300, 919},    {60, 1088, 300, 1113},  // the charts' names
    {50, 646, 132, 860},    {50, 920, 132, 1054},   {50, 1114, 132, 1252},  // their scales
    {60, 1262, 1552, 1284},                                                 // the time
});

// Wide, silent, mono, on the left alone and out of phase, each a fifth of its length,
// which the second channel's other frequency turns into figures.
Sound program(int seconds, int sampleRate) {
    Sound sound{SF_FORMAT_WAV | SF_FORMAT_PCM_16, sampleRate, 2, {}};
    const int frames = seconds * sampleRate;
    for (int i = 0; i < frames; ++i) {
        const double phase = 2.0 * std::numbers::pi * 100.0 * i / sampleRate;
        const double swell = 0.05 + 0.75 * i / frames;
        const double first = swell * std::sin(phase);
        const double second = swell * std::sin(1.5 * phase);
        const std::array<std::array<double, 2>, 5> parts{
            {{first, second}, {0.0, 0.0}, {first, first}, {first, 0.0}, {first, -first}}};
        const auto& part = parts.at(static_cast<std::size_t>(5LL * i / frames));
        sound.samples.insert(sound.samples.end(), part.begin(), part.end());
    }
    return sound;
}

struct Case {
    const char* name;
    int seconds;
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.name;
}

class PlotPicture : public testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Of, PlotPicture, testing::Values(Case{"seconds", 4}, Case{"minutes", 75}),
                         [](const auto& info) { return info.param.name; });

TEST_P(PlotPicture, IsAsItsReference) {
    const std::string name = std::string("plot-") + GetParam().name + ".png";
    const TemporaryFolder folder;
    writeSound(folder / "in.wav", program(GetParam().seconds, 8000));
    const ProgramResult result =
        RunningProgram(MIRELON_HOST_PROGRAM,
                       {"plot", folder / "in.wav", folder / name, "--preset", "extended width",
                        "--set", "gain=-4", "--plugin", MIRELON_PLUGIN_FILE},
                       folder.path, {{"FONTCONFIG_FILE", writeFontSettings(folder.path)}})
            .wait();
    ASSERT_EQ(result.status, 0) << result.errors;
    if (const auto* const kept = std::getenv("MIRELON_KEEP_PICTURES")) {
        fs::copy_file(folder / name, fs::path(kept) / name);
        return;
    }
    const auto found = readPicture(folder / name);
    const auto reference = readPicture(fs::path(MIRELON_REFERENCES) / name);
    ASSERT_TRUE(found && reference);
    ASSERT_EQ(found->width, reference->width);
    ASSERT_EQ(found->height, reference->height);
    const Differences differences = differencesBetween(*found, *reference, type, 1.0);
    EXPECT_TRUE(differences.none())
        << keepDifferences(*found, differences, MIRELON_FOUND_PICTURES, fs::path(name).stem());
}

} // namespace
} // namespace mirelon::test
