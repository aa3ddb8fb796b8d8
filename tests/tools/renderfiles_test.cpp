// mirelon-host render: the files, and what happens to them when it fails.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sndfile.h>
#include <thread>
#include <unistd.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class RenderFiles : public testing::Test {
  protected:
    ProgramResult render(const std::string& in, const std::string& out,
                         std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"render", "--overwrite", folder / in, folder / out});
        return runMirelon(options);
    }

    // The run fails with one line about it, and OUT is as it was.
    void expectRefusal(const std::string& in, const std::string& out,
                       const std::vector<std::string>& options, const std::string& why) {
        writeFile(folder / out, "precious");
        const auto before = names();
        const ProgramResult result = render(in, out, options);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, HasSubstr(why));
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        EXPECT_EQ(contentsOf(folder / out), "precious");
        EXPECT_EQ(names(), before);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path))
            all.push_back(entry.path().filename());
        std::sort(all.begin(), all.end());
        return all;
    }

    TemporaryFolder folder;
};

TEST_F(RenderFiles, KeepFormatAndSubtype) {
    const int vorbis = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    for (const auto& [name, format] :
         {std::pair<std::string, int>{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24},
          {"b.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
          {"c.ogg", vorbis},
          {"d.aiff", SF_FORMAT_AIFF | SF_FORMAT_FLOAT},
          {"e.au", SF_FORMAT_AU | SF_FORMAT_PCM_16},
          {"f.caf", SF_FORMAT_CAF | SF_FORMAT_PCM_32}}) {
        const Sound noise = stereoNoise(format, 4000, 16, 48000);
        writeSound(folder / name, noise);
        const Sound asRead = readSound(folder / name);
        const ProgramResult result = render(name, "out-" + name);
        ASSERT_EQ(result.status, 0) << name << ": " << result.errors;
        EXPECT_EQ(result.errors, "");
        const Sound out = readSound(folder / ("out-" + name));
        EXPECT_EQ(out.format, asRead.format) << name;
        EXPECT_EQ(out.sampleRate, 48000) << name;
        ASSERT_EQ(out.frames(), asRead.frames()) << name;
        if (format != vorbis)
            EXPECT_EQ(out.samples, asRead.samples) << name;
        else
            for (std::size_t i = 0; i < out.samples.size(); ++i)
                EXPECT_NEAR(out.samples[i], asRead.samples[i], 0.2) << name;
    }
}

TEST_F(RenderFiles, TakeTheFormatOfTheExtension) {
    const Sound noise = stereoNoise(wav16, 4000);
    writeSound(folder / "in.wav", noise);
    for (const auto& [name, format] :
         {std::pair<std::string, int>{"out.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
          {"out.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
          {"out.w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16}}) {
        ASSERT_EQ(render("in.wav", name).status, 0);
        const Sound out = readSound(folder / name);
        EXPECT_EQ(out.format & ~SF_FORMAT_ENDMASK, format) << name;
        EXPECT_EQ(out.samples, noise.samples) << name;
    }
    ASSERT_EQ(render("in.wav", "out.ogg").status, 0);
    EXPECT_EQ(readSound(folder / "out.ogg").format, SF_FORMAT_OGG | SF_FORMAT_VORBIS);
    ASSERT_EQ(render("in.wav", "plain").status, 0);
    EXPECT_EQ(readSound(folder / "plain").format, wav16);
}

TEST_F(RenderFiles, MayBeOneAndTheSame) {
    const Sound noise = stereoNoise(wav16, 4000);
    writeSound(folder / "a.wav", noise);
    ASSERT_EQ(render("a.wav", "a.wav", {"--preset", "swapped"}).status, 0);
    EXPECT_EQ(readSound(folder / "a.wav").left(100), noise.right(100));
    EXPECT_EQ(names(), std::vector<std::string>{"a.wav"});
}

TEST_F(RenderFiles, KeepTheTitle) {
    SF_INFO info{};
    info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    info.channels = 2;
    info.samplerate = 44100;
    SNDFILE* file = sf_open((folder / "in.flac").c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr);
    sf_set_string(file, SF_STR_TITLE, "Nocturne");
    const std::vector<short> silence(2000);
    sf_writef_short(file, silence.data(), 1000);
    sf_close(file);
    ASSERT_EQ(render("in.flac", "out.flac").status, 0);
    file = sf_open((folder / "out.flac").c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    EXPECT_STREQ(sf_get_string(file, SF_STR_TITLE), "Nocturne");
    sf_close(file);
}

TEST_F(RenderFiles, OfMoreThanTwoChannelsAreRefused) {
    Sound three{wav16, 44100, 3, std::vector<double>(300)};
    writeSound(folder / "three.wav", three);
    expectRefusal("three.wav", "out.wav", {}, "three.wav: has 3 channels");
}

TEST_F(RenderFiles, ThatCannotBeReadAreRefused) {
    expectRefusal("missing.wav", "out.wav", {}, "missing.wav: cannot be read (No such file");
    writeFile(folder / "text.wav", "not a sound at all, whatever its name");
    expectRefusal("text.wav", "out.wav", {}, "text.wav: not an audio file");
    writeFile(folder / "empty.wav", "");
    expectRefusal("empty.wav", "out.wav", {}, "empty.wav: not an audio file");
    create_directory(folder / "folder.wav");
    expectRefusal("folder.wav", "out.wav", {}, "folder.wav: cannot be read");
}

TEST_F(RenderFiles, ThatCannotBeWrittenAreRefused) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 100));
    const ProgramResult nowhere = render("in.wav", "missing/out.wav");
    EXPECT_EQ(nowhere.status, 2);
    EXPECT_THAT(nowhere.errors, HasSubstr("cannot be written (No such file"));
    create_directory(folder / "folder.wav");
    EXPECT_THAT(render("in.wav", "folder.wav").errors, HasSubstr("Is a directory"));
    expectRefusal("in.wav", "out.docx", {}, "no audio format is called \"docx\"");
    expectRefusal("in.wav", "out.opus", {}, "at 44100 Hz cannot be written");
}

TEST_F(RenderFiles, UnknownNamesGetTheNearestAndLeaveOutAlone) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 100));
    expectRefusal("in.wav", "out.wav", {"--preset", "extendet with"},
                  "unknown preset \"extendet with\", the nearest is \"extended width\"");
    expectRefusal("in.wav", "out.wav", {"--set", "widht=0.5"},
                  "unknown parameter \"widht\", the nearest is \"width\"");
    expectRefusal("in.wav", "out.wav", {"--automate", "stabilty=0:1"},
                  "unknown parameter \"stabilty\", the nearest is \"stability\"");
}

TEST_F(RenderFiles, BadNumbersAreRefused) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 100));
    expectRefusal("in.wav", "out.wav", {"--preset", "11"},
                  "no preset 11, they are numbered 0 to 10");
    expectRefusal("in.wav", "out.wav", {"--preset", ""}, "not by \"\"");
    expectRefusal("in.wav", "out.wav", {"--set", "gain=loud"},
                  "\"loud\" is no value of gain: give what it shows, \"-12.00\" to \"12.00\", "
                  "or a number from 0 to 1 with --set-normalised");
    expectRefusal("in.wav", "out.wav", {"--set-normalised", "gain=6"},
                  "\"6\" is no normalised value of gain");
    for (const char* const value : {"gain=nan", "gain=inf", "gain=", "gain=loud", "gain=1e999"})
        expectRefusal("in.wav", "out.wav", {"--set", value}, "is no value of gain");
    expectRefusal("in.wav", "out.wav", {"--set", "gain"}, "\"gain\" is not NAME=VALUE");
    expectRefusal("in.wav", "out.wav", {"--automate", "gain=0.5"}, "is not NAME=FIRST:LAST");
    expectRefusal("in.wav", "out.wav", {"--automate", "gain=0:2x"}, "\"2x\" is no value of gain");
    for (const char* const block : {"0", "-5", "many", "99999999999"})
        expectRefusal("in.wav", "out.wav", {"--block", block}, "--block");
}

TEST_F(RenderFiles, APluginThatCannotIsRefused) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 100));
    writeFile(folder / "out.wav", "precious");
    const auto with = [&](const char* plugin, std::vector<std::string> options) {
        options.insert(options.begin(), {"render", "--overwrite", folder / "in.wav",
                                         folder / "out.wav", "--plugin", testPlugin(plugin)});
        const ProgramResult result = runHost(options);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(contentsOf(folder / "out.wav"), "precious");
        return result.errors;
    };
    EXPECT_THAT(with("gain", {"--double"}), HasSubstr("does not process in double precision"));
    EXPECT_THAT(with("onlymain", {}), HasSubstr("has 1 inputs and 1 outputs"));
    EXPECT_THAT(with("slow", {"--preset", "0"}), HasSubstr("has no presets"));
    EXPECT_THAT(with("nullanswer", {}), HasSubstr("made no instance"));
}

TEST_F(RenderFiles, AreKeptWhenTheInputTurnsOutToBeDamaged) {
    writeSound(folder / "whole.flac", stereoNoise(SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 50000));
    const std::string bytes = contentsOf(folder / "whole.flac");
    writeFile(folder / "cut.flac", bytes.substr(0, bytes.size() / 2));
    expectRefusal("cut.flac", "out.flac", {}, "cut.flac: damaged");
}

TEST_F(RenderFiles, AreKeptWhenTheDiskIsFull) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 50000));
    writeFile(folder / "out.wav", "precious");
    const auto before = names();
    // A limit on file size stands in for a disk of 32 KiB.
    const std::string command =
        "ulimit -f 32; trap '' XFSZ; exec '" MIRELON_HOST_PROGRAM
        "' render --overwrite in.wav out.wav --plugin '" MIRELON_PLUGIN_FILE "'";
    const TemporaryFolder home;
    const ProgramResult result =
        RunningProgram("/bin/bash", {"-c", "cd '" + folder.path.string() + "'; " + command},
                       home.path)
            .wait();
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("out.wav: cannot be written"));
    EXPECT_EQ(contentsOf(folder / "out.wav"), "precious");
    EXPECT_EQ(names(), before);
}

TEST_F(RenderFiles, AreKeptWhenTheRunIsInterrupted) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 500000));
    writeFile(folder / "out.wav", "precious");
    const auto before = names();
    const TemporaryFolder home;
    const auto ignoredOrNot = std::signal(SIGINT, SIG_DFL); // the tests may run in the background
    RunningProgram program(MIRELON_HOST_PROGRAM,
                           {"render", "--overwrite", folder / "in.wav", folder / "out.wav",
                            "--block", "64", "--plugin", testPlugin("slow")},
                           home.path);
    std::signal(SIGINT, ignoredOrNot);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (names() == before && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_NE(names(), before) << "the unfinished file does not appear";
    program.signal(SIGINT);
    EXPECT_EQ(program.wait().status, -SIGINT);
    EXPECT_EQ(contentsOf(folder / "out.wav"), "precious");
    EXPECT_EQ(names(), before);
}

// A WAV file of silence: a header, and a hole instead of samples.
void writeSilence(const std::filesystem::path& file, std::uint32_t frames) {
    const std::uint32_t dataSize = frames * 4;
    std::string header = "RIFF....WAVEfmt ................data....";
    const auto put = [&header](std::size_t place, std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            header[place + i] = static_cast<char>(value >> (8 * i));
    };
    header.insert(16, 4, '\0');
    put(4, 36 + dataSize, 4);
    put(16, 16, 4);     // size of the format
    put(20, 1, 2);      // integers
    put(22, 2, 2);      // channels
    put(24, 44100, 4);  // frames a second
    put(28, 176400, 4); // bytes a second
    put(32, 4, 2);      // bytes a frame
    put(34, 16, 2);     // bits a sample
    put(40, dataSize, 4);
    writeFile(file, header);
    std::filesystem::resize_file(file, header.size() + dataSize);
}

TEST_F(RenderFiles, OfAnyLengthTakeTheSameMemory) {
    constexpr std::uint32_t manyFrames = 20'000'000; // 80 MB, seven and a half minutes
    writeSilence(folder / "short.wav", 20'000);
    writeSilence(folder / "long.wav", manyFrames);
    const ProgramResult brief = render("short.wav", "short-out.wav");
    const ProgramResult lengthy = render("long.wav", "long-out.wav");
    ASSERT_EQ(brief.status, 0) << brief.errors;
    ASSERT_EQ(lengthy.status, 0) << lengthy.errors;
    EXPECT_THAT(lengthy.output, HasSubstr("frames    20000000"));
    EXPECT_EQ(file_size(folder / "long-out.wav"), file_size(folder / "long.wav"));
    RecordProperty("ShortRunKiB", std::to_string(brief.peakMemory));
    RecordProperty("LongRunKiB", std::to_string(lengthy.peakMemory));
    EXPECT_LT(lengthy.peakMemory - brief.peakMemory, 4096);
}

TEST_F(RenderFiles, ShowProgressOnATerminalOnly) {
    writeSound(folder / "in.wav", stereoNoise(wav16, 1000));
    EXPECT_EQ(render("in.wav", "out.wav").errors, "");

    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const int user = open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(user, 0);
    RunningProgram program(MIRELON_HOST_PROGRAM,
                           {"render", "--overwrite", folder / "in.wav", folder / "out.wav",
                            "--plugin", MIRELON_PLUGIN_FILE},
                           folder.path, {}, user);
    EXPECT_EQ(program.wait().status, 0);
    std::string shown(4096, '\0');
    const ssize_t length = read(terminal, shown.data(), shown.size());
    ASSERT_GT(length, 0);
    EXPECT_THAT(shown.substr(0, static_cast<std::size_t>(length)), HasSubstr("100 %"));
    close(user);
    close(terminal);
}

} // namespace
} // namespace mirelon::test
