#include "tools/audio/audiowriter.h"

#include "hosting/sanitized.h"
#include "tests/support/temporaryfolder.h"
#include "tests/tools/soundfile.h"
#include "tools/audio/virtualfile.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace mirelon::tools {
namespace {

using test::TemporaryFolder;

constexpr std::size_t keptBytes = 65536;

// A file of any length of which only the start is kept.
class LongFile : public VirtualFile {
  public:
    sf_count_t length() const override { return size; }

    std::string text(std::size_t place, std::size_t count) const {
        return {reinterpret_cast<const char*>(start.data()) + place, count};
    }
    std::uint64_t number(std::size_t place, std::size_t bytes) const {
        std::uint64_t value = 0;
        std::memcpy(&value, start.data() + place, bytes);
        return value;
    }
    std::size_t find(const char* id) const { return text(0, start.size()).find(id); }

  protected:
    std::size_t readAt(sf_count_t position, std::span<std::byte> bytes) override {
        const auto begin = static_cast<std::size_t>(position);
        if (begin + bytes.size() <= start.size())
            std::copy_n(start.data() + begin, bytes.size(), bytes.data());
        return bytes.size();
    }
    std::size_t writeAt(sf_count_t position, std::span<const std::byte> bytes) override {
        const auto begin = static_cast<std::size_t>(position);
        if (begin < start.size())
            std::copy_n(bytes.data(), std::min(bytes.size(), start.size() - begin),
                        start.data() + begin);
        size = std::max(size, position + static_cast<sf_count_t>(bytes.size()));
        return bytes.size();
    }

  private:
    std::vector<std::byte> start = std::vector<std::byte>(keptBytes);
    sf_count_t size = 0;
};

class OutputTo : public AudioOutput {
  public:
    explicit OutputTo(VirtualFile& file_)
        : file(file_) {}
    std::string name() const override { return "memory"; }
    SoundHandle open(SF_INFO& info) override { return file.open(SFM_WRITE, info); }
    void finish(std::uint64_t /*frames*/) override {}

  private:
    VirtualFile& file;
};

// Silence through a writer, in blocks as a render has them.
void writeSilence(VirtualFile& file, ChosenFormat format, std::uint64_t frames) {
    AudioWriter writer(std::make_unique<OutputTo>(file), format, 44100);
    const std::vector<double> silence(65536);
    for (std::uint64_t rest = frames; rest > 0;) {
        const std::size_t part = std::min<std::uint64_t>(rest, silence.size());
        writer.write({silence.data(), part}, {silence.data(), part});
        rest -= part;
    }
    writer.finish();
}

constexpr std::uint64_t fourGibi = std::uint64_t{4} << 30U;

TEST(AudioWriter, WritesSizesBeyond4GiB) {
    constexpr std::uint64_t frames = fourGibi / 16 + 1000;
    LongFile file;
    writeSilence(file, formatForLength(SF_FORMAT_WAV | SF_FORMAT_DOUBLE, frames, 0, "memory"),
                 frames);
    EXPECT_EQ(file.text(0, 4), "RF64");
    EXPECT_EQ(file.number(4, 4), 0xFFFFFFFFU);
    const std::size_t sizes = file.find("ds64") + 8;
    EXPECT_EQ(file.number(sizes, 8), static_cast<std::uint64_t>(file.length()) - 8);
    EXPECT_EQ(file.number(sizes + 8, 8), frames * 16);
    EXPECT_EQ(file.number(sizes + 16, 8), frames);
    SF_INFO info{};
    ASSERT_TRUE(file.open(SFM_READ, info));
    EXPECT_EQ(static_cast<std::uint64_t>(info.frames), frames);
}

TEST(AudioWriter, WritesLongFilesThatCanBeReadBackInEveryFormatForThem) {
    if (hosting::sanitized)
        GTEST_SKIP() << "takes long, and no other path than WritesSizesBeyond4GiB";
    constexpr std::uint64_t frames = fourGibi / 16 + 1000;
    for (const int kind : {SF_FORMAT_W64, SF_FORMAT_CAF, SF_FORMAT_AU}) {
        LongFile file;
        writeSilence(file, formatForLength(kind | SF_FORMAT_DOUBLE, frames, 0, "memory"), frames);
        SF_INFO info{};
        ASSERT_TRUE(file.open(SFM_READ, info)) << std::hex << kind;
        EXPECT_EQ(static_cast<std::uint64_t>(info.frames), frames) << std::hex << kind;
    }
}

TEST(AudioWriter, StopsWhenAFormatTurnsOutTooSmall) {
    LongFile file;
    EXPECT_THROW(writeSilence(file, {SF_FORMAT_WAV | SF_FORMAT_DOUBLE}, fourGibi / 16),
                 CommandError);
}

TEST(AudioWriter, MakesAPlainWavOfAnRf64ThatRemainedSmall) {
    LongFile file;
    writeSilence(file, formatForLength(SF_FORMAT_WAV | SF_FORMAT_PCM_24, std::nullopt, 0, "memory"),
                 10000);
    EXPECT_EQ(file.text(0, 4), "RIFF");
    EXPECT_EQ(file.number(4, 4), static_cast<std::uint64_t>(file.length()) - 8);
    EXPECT_EQ(file.find("ds64"), std::string::npos);
    EXPECT_EQ(file.number(file.find("data") + 4, 4), 60000U);
}

// A header of 44 bytes and the samples, put together here.
TEST(AudioWriter, WritesASmallWavOf16BitsByteForByteAsEver) {
    MemoryFile file;
    AudioWriter writer(std::make_unique<OutputTo>(file), {SF_FORMAT_WAV | SF_FORMAT_PCM_16}, 44100);
    writer.write(std::vector{0.5, -1.0, 0.0}, std::vector{0.25, 1.0, -1.0 / 32768.0});
    writer.finish();
    const std::string expected("RIFF\x30\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x44\xAC\0\0\x10\xB1"
                               "\x02\0\x04\0\x10\0data\x0C\0\0\0"
                               "\0\x40\0\x20\0\x80\xFF\x7F\0\0\xFF\xFF",
                               56);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(file.bytes().data()), file.bytes().size()),
              expected);
    EXPECT_EQ(writer.clipped(), 1U);
}

TEST(AudioWriter, RefusesToReplaceAFileByOneThatCannotBeReadBack) {
    const TemporaryFolder folder;
    test::writeFile(folder / "out.wav", "precious");
    FileOutput output(folder / "out.wav");
    SF_INFO info{};
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    info.channels = 2;
    info.samplerate = 44100;
    const std::vector<double> silence(200);
    SoundHandle handle = output.open(info);
    ASSERT_TRUE(handle);
    sf_writef_double(handle.get(), silence.data(), 100);
    handle.reset();
    EXPECT_THROW(output.finish(101), CommandError);
    EXPECT_EQ(test::contentsOf(folder / "out.wav"), "precious");
    EXPECT_NO_THROW(output.finish(100));
    EXPECT_NE(test::contentsOf(folder / "out.wav"), "precious");
}

} // namespace
} // namespace mirelon::tools
