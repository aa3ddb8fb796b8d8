// The recipe for a whole archive, as the manual gives it.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sndfile.h>
#include <stdexcept>

namespace mirelon::test {
namespace {

// The example of the page that mentions the word, on this machine alone.
std::string recipe(const std::string& word) {
    const std::string page = contentsOf(MIRELON_HOST_PAGE);
    const std::size_t place = page.find(word);
    const std::string fence = "```\n";
    const std::size_t begin = page.rfind(fence, place) + fence.size();
    const std::string text = page.substr(begin, page.find(fence, begin) - begin);
    const std::string machines = "--sshlogin ";
    const std::size_t option = text.find(machines);
    if (option == std::string::npos)
        throw std::runtime_error("the recipe names no machines");
    const std::size_t first = option + machines.size();
    return text.substr(0, first) + ':' + text.substr(text.find(' ', first));
}

class Archive : public testing::Test {
  protected:
    void SetUp() override {
        if (!std::filesystem::exists("/usr/bin/parallel"))
            GTEST_SKIP() << "GNU parallel is not installed (scripts/setup does)";
        create_directories(home / "archive/1998/live");
        create_directories(home / "bin");
        create_directories(home / ".vst");
        create_directories(home / ".parallel");
        writeFile(home / ".parallel/will-cite", "");
        std::filesystem::create_symlink(MIRELON_HOST_PROGRAM, home / "bin/mirelon-host");
        for (const std::string& file : files)
            writeSound(home / "archive" / file,
                       stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_24, 2000));
    }

    ProgramResult render() {
        return RunningProgram("/bin/bash",
                              {"-ec", "cd '" + home.path.string() + "'; PATH='" +
                                          std::string(home / "bin") + "':$PATH; " +
                                          recipe("parallel --sshlogin")},
                              home.path, {{"TMPDIR", home.path.string()}})
            .wait();
    }
    std::string result(const std::string& file) { return contentsOf(home / "archive/wide" / file); }

    const std::vector<std::string> files{"a.wav", "1998/b c.wav", "1998/live/d.wav"};
    TemporaryFolder home;
};

TEST_F(Archive, IsRenderedFolderByFolder) {
    const ProgramResult done = render();
    ASSERT_EQ(done.status, 0) << done.errors;
    for (const std::string& file : files) {
        ASSERT_EQ(runMirelon({"render", "--overwrite", "--preset", "extended width",
                              home / "archive" / file, home / "expected.wav"})
                      .status,
                  0);
        EXPECT_EQ(result(file), contentsOf(home / "expected.wav")) << file;
    }
}

TEST_F(Archive, IsContinuedWhereItEnded) {
    writeFile(home / "archive/bad.wav", "no sound");
    EXPECT_NE(render().status, 0);
    writeSound(home / "archive/bad.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_24, 500));
    const ProgramResult again = render();
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_THAT(again.errors, testing::Not(testing::HasSubstr("mirelon-host")))
        << "a file that was rendered is refused";
    EXPECT_NE(result("bad.wav"), "");
}

} // namespace
} // namespace mirelon::test
