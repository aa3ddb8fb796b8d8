// The LV2 plug-in in programs that send a file through it: every sample as
// mirelon-host renders it with the VST 2.4 plug-in.
#include "formats/lv2/names.h"
#include "formats/lv2/portvalues.h"
#include "tests/hosts/hosthome.h"
#include "tests/hosts/lv2bundles.h"
#include "tests/hosts/stereofile.h"

#include <array>
#include <gtest/gtest.h>
#include <sndfile.hh>
#include <sstream>

namespace mirelon::test {
namespace {

using std::chrono::seconds;

constexpr int rate = 48000;
constexpr std::size_t frames = 96000;
const std::string uri = lv2::pluginUri;

// Normalised; loud enough to be heard and below full scale, where one of the
// programs clips.
using Setting = std::array<float, kNumParams>;
constexpr std::array<Setting, 3> settings{{
    {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F},
    {0.625F, 0.55F, 0.7F, 0.25F, 0.4F, 1.0F, 1.0F, 0.0F, 1.0F},
    {0.81F, 0.25F, 0.123F, 0.9F, 0.77F, 1.0F, 0.0F, 1.0F, 0.0F},
}};

constexpr std::array<int, 2> blocks{64, 1000};

std::string number(float value) {
    std::ostringstream text;
    text.precision(9);
    text << value;
    return text.str();
}

std::string portNumber(const Setting& setting, int index) {
    return number(lv2::portValueOf(index, setting[static_cast<std::size_t>(index)]));
}

// What the plug-in makes of that number again: the last bit may be another.
std::string normalised(const Setting& setting, int index) {
    const float port = lv2::portValueOf(index, setting[static_cast<std::size_t>(index)]);
    return number(lv2::valueOfPort(index, port).value());
}

std::string portSymbol(int index) {
    return lv2::portSymbols[lv2::portOfParameter(index)];
}

std::vector<float> samplesOf(const std::filesystem::path& file) {
    SndfileHandle handle(file.string());
    std::vector<float> samples(static_cast<std::size_t>(handle.frames() * handle.channels()));
    handle.readf(samples.data(), handle.frames());
    return samples;
}

// One of the programs: its command for a setting and a block size.
struct FileHost {
    const char* name;
    const char* program;
    std::vector<std::string> (*arguments)(const Setting& setting, int block, const std::string& in,
                                          const std::string& out);
};

void PrintTo(const FileHost& host, std::ostream* out) {
    *out << host.name;
}

std::vector<std::string> lv2file(const Setting& setting, int block, const std::string& in,
                                 const std::string& out) {
    std::vector<std::string> words{
        "-i", in, "-o", out, "-b", std::to_string(block), "--ignore-clipping"};
    for (int index = 0; index < kNumParams; ++index) {
        words.emplace_back("-p");
        words.push_back(portSymbol(index) + ':' + portNumber(setting, index));
    }
    words.push_back(uri);
    return words;
}

// Has one block size of its own.
std::vector<std::string> lv2apply(const Setting& setting, int /*block*/, const std::string& in,
                                  const std::string& out) {
    std::vector<std::string> words{"-i", in, "-o", out};
    for (int index = 0; index < kNumParams; ++index) {
        words.emplace_back("-c");
        words.push_back(portSymbol(index));
        words.push_back(portNumber(setting, index));
    }
    words.push_back(uri);
    return words;
}

std::vector<std::string> ffmpeg(const Setting& setting, int block, const std::string& in,
                                const std::string& out) {
    std::string controls;
    for (int index = 0; index < kNumParams; ++index) {
        controls += index != 0 ? "|" : "";
        controls += portSymbol(index) + '=' + portNumber(setting, index);
    }
    return {"-v",
            "error",
            "-i",
            in,
            "-af",
            "asetnsamples=n=" + std::to_string(block) +
                ":p=0,lv2=p=http\\\\://dravik.example/mirelon:c=" + controls,
            "-c:a",
            "pcm_f32le",
            out};
}

std::vector<std::string> ecasound(const Setting& setting, int block, const std::string& in,
                                  const std::string& out) {
    std::string effect = "-elv2:" + uri;
    for (int index = 0; index < kNumParams; ++index)
        effect += ',' + portNumber(setting, index);
    return {"-q", "-b:" + std::to_string(block),         "-z:nointbuf", "-z:noxruns", "-i",
            in,   "-f:f32_le,2," + std::to_string(rate), "-o",          out,          effect};
}

class FileThroughLv2 : public testing::TestWithParam<FileHost> {};
INSTANTIATE_TEST_SUITE_P(Programs, FileThroughLv2,
                         testing::Values(FileHost{"lv2file", "/usr/bin/lv2file", lv2file},
                                         FileHost{"lv2apply", "/usr/bin/lv2apply", lv2apply},
                                         FileHost{"ffmpeg", "/usr/bin/ffmpeg", ffmpeg},
                                         FileHost{"ecasound", "/usr/bin/ecasound", ecasound}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(FileThroughLv2, IsTheFileThatMirelonHostRenders) {
    if (!isExecutable(GetParam().program))
        GTEST_SKIP() << GetParam().name << " is not installed (scripts/setup hosts)";
    HostHome home(MIRELON_PLUGIN_FILE);
    home.addEnvironment(lv2Environment(home / "lv2"));
    const std::string in = home / "in.wav";
    writeStereo(in, material(frames), rate);
    for (const Setting& setting : settings)
        for (const int block : blocks) {
            const std::string expected = home / "expected.wav";
            std::vector<std::string> render{MIRELON_HOST_PROGRAM, "render",  "--plugin",
                                            home.plugin(),        "--block", std::to_string(block)};
            for (int index = 0; index < kNumParams; ++index) {
                render.emplace_back("--set-normalised");
                render.push_back(std::string(parameterAt(index).name) + '=' +
                                 normalised(setting, index));
            }
            render.insert(render.end(), {"--overwrite", in, expected});
            ASSERT_EQ(home.run(render, seconds(30)).exitCode, 0);

            const std::string out = home / "out.wav";
            std::filesystem::remove(out);
            std::vector<std::string> command = GetParam().arguments(setting, block, in, out);
            command.insert(command.begin(), GetParam().program);
            const Outcome outcome = home.run(command, seconds(60));
            ASSERT_TRUE(outcome.inTime);
            ASSERT_EQ(outcome.exitCode, 0) << outcome.output;
            ASSERT_EQ(samplesOf(expected).size(), 2 * frames);
            EXPECT_TRUE(samplesOf(out) == samplesOf(expected)) << outcome.output;
        }
}

} // namespace
} // namespace mirelon::test
