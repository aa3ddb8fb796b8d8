// All that mirelon-host prints in a session at a terminal: each file in sessions/ holds
// commands and what they print. cram runs and compares them; what a session printed
// otherwise is left in the build's folder, to be looked at and copied.
#include "tests/support/shellcommand.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/virtualdisplay.h"
#include "tests/tools/soundfile.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <string>

namespace mirelon::test {
namespace {

namespace fs = std::filesystem;

// A slow tone on the left or alone, a slower one on the right.
Sound tones(int channels, int frames) {
    Sound sound{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, channels, {}};
    for (int i = 0; i < frames; ++i) {
        sound.samples.push_back(0.275 * std::sin(i * 0.05));
        if (channels == 2)
            sound.samples.push_back(0.214 * std::sin(i * 0.03));
    }
    return sound;
}

void writeSounds(const fs::path& folder) {
    fs::create_directory(folder);
    writeSound(folder / "tones.wav", tones(2, 6000));
    writeSound(folder / "mono.wav", tones(1, 3000));
    writeSound(folder / "empty.wav", tones(2, 0));
    writeSound(folder / "three.wav", tones(3, 300));
    fs::copy_file(folder / "tones.wav", folder / "short.wav");
    fs::resize_file(folder / "short.wav", 10000);
}

class Sessions : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Of, Sessions,
                         testing::Values("checking", "checkingmirelon", "describing", "failing",
                                         "helping", "presets", "refusing", "rendering"),
                         [](const auto& tested) { return tested.param; });

TEST_P(Sessions, PrintWhatTheyAreToPrint) {
    VirtualDisplay::start();
    const TemporaryFolder folder;
    writeSounds(folder / "sounds");
    const std::string session = GetParam() + std::string(".t");
    for (const std::string& name : {session, std::string("begin")})
        fs::copy_file(fs::path(MIRELON_SESSIONS) / name, folder / name);
    const std::string names =
        "HOST_PROGRAM='" MIRELON_HOST_PROGRAM "' PLUGIN='" MIRELON_PLUGIN_FILE
        "' CLAP='" MIRELON_CLAP_FILE "' LV2_BUNDLE='" MIRELON_LV2_BUNDLE
        "' TEST_CLAP='" MIRELON_TEST_CLAP "' AMPLIFIER='" MIRELON_TEST_AMPLIFIER
        "' TEST_PLUGINS='" MIRELON_TEST_PLUGINS "' TEST_EFFECTS='" MIRELON_TEST_EFFECTS
        "' SOUNDS=$PWD/sounds";
    const ShellResult ran =
        runShell("cd " + folder.path.string() + " && " + names +
                 " HOME=$PWD TMPDIR=$PWD " MIRELON_CRAM " --shell=/bin/bash " + session + " 2>&1");
    EXPECT_EQ(ran.status, 0) << ran.output;
    if (fs::exists(folder / (session + ".err")))
        fs::copy_file(folder / (session + ".err"), fs::path(MIRELON_FOUND_SESSIONS) / session,
                      fs::copy_options::overwrite_existing);
}

} // namespace
} // namespace mirelon::test
