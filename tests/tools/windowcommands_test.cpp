// mirelon-host edit and screenshot, on a display of their own.
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <cairo.h>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <memory>
#include <sndfile.h>
#include <thread>

namespace mirelon::test {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

class WindowCommands : public ::testing::Test {
  protected:
    std::unique_ptr<RunningProgram> start(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--plugin", MIRELON_PLUGIN_FILE});
        return std::make_unique<RunningProgram>(
            MIRELON_HOST_PROGRAM, std::move(arguments), home.path,
            std::vector<std::pair<std::string, std::string>>{{"DISPLAY", display}});
    }
    ProgramResult run(std::vector<std::string> arguments) {
        return start(std::move(arguments))->wait();
    }
    // Sound on the left alone.
    std::string tone() {
        Sound sound = stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000);
        for (std::size_t frame = 0; frame < sound.frames(); ++frame)
            sound.samples[2 * frame + 1] = 0.0;
        const auto file = home / "tone.wav";
        writeSound(file, sound);
        return file;
    }
    static bool appears() {
        for (int i = 0; i < 500; ++i) {
            if (windowNamed("Dravik Mirelon"))
                return true;
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }
    // To the left, to which the tone goes, while the width meter stays in the middle.
    static bool balanceMeterMoves() {
        for (int i = 0; i < 3000; ++i) {
            const Pixels window = pixelsOfWindowNamed("Dravik Mirelon").value_or(Pixels());
            // A window that is still to come has no pixels.
            if (window.width >= 242 && window.height >= 135 &&
                window.part(60, 25, 242, 39) != window.part(60, 121, 242, 135))
                return true;
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }

    TemporaryFolder home;
    std::string display = VirtualDisplay::start().name();
};

struct Size {
    int width;
    int height;
    bool operator==(const Size&) const = default;
};
Size sizeOf(const std::string& png) {
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_from_png(png.c_str()), &cairo_surface_destroy);
    return {cairo_image_surface_get_width(surface.get()),
            cairo_image_surface_get_height(surface.get())};
}

TEST_F(WindowCommands, AScreenshotHasTheSizeOfItsScale) {
    const std::string file = home / "shot.png";
    ASSERT_EQ(run({"screenshot", file}).status, 0);
    EXPECT_EQ(sizeOf(file), (Size{324, 348}));
    const ProgramResult larger = run({"screenshot", file, "--scale", "2"});
    EXPECT_THAT(larger.output, HasSubstr("648 x 696"));
    EXPECT_EQ(sizeOf(file), (Size{648, 696}));
}

TEST_F(WindowCommands, AScreenshotHasTheSizeThatTheOpenEditorTells) {
    const std::string file = home / "shot.png";
    const auto shoot = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"screenshot", file, "--plugin", testPlugin("lateeditor")});
        return RunningProgram(MIRELON_HOST_PROGRAM, more, home.path, {{"DISPLAY", display}}).wait();
    };
    const ProgramResult alone = shoot({});
    ASSERT_EQ(alone.status, 0) << alone.errors;
    EXPECT_EQ(sizeOf(file), (Size{200, 120}));
    const ProgramResult fed = shoot({"--input", tone()});
    EXPECT_EQ(fed.status, 0) << "one channel in: " << fed.errors;
}

#ifdef MIRELON_LV2_BUNDLE
TEST_F(WindowCommands, TheLv2PlugInLooksAsTheVst2OneDoes) {
    const auto pictureOf = [this](const std::string& plugin) {
        const std::string file = home / "shot.png";
        const ProgramResult result =
            RunningProgram(MIRELON_HOST_PROGRAM,
                           {"screenshot", file, "--preset", "3", "--plugin", plugin}, home.path,
                           {{"DISPLAY", display}})
                .wait();
        EXPECT_EQ(result.status, 0) << result.errors;
        return contentsOf(file);
    };
    EXPECT_TRUE(pictureOf(MIRELON_LV2_BUNDLE) == pictureOf(MIRELON_PLUGIN_FILE));
}

TEST_F(WindowCommands, TheLv2PlugInIsEdited) {
    RunningProgram program(MIRELON_HOST_PROGRAM,
                           std::vector<std::string>{"edit", tone(), "--plugin", MIRELON_LV2_BUNDLE},
                           home.path,
                           std::vector<std::pair<std::string, std::string>>{{"DISPLAY", display}});
    ASSERT_TRUE(appears());
    EXPECT_TRUE(balanceMeterMoves());
    closeWindowNamed("Dravik Mirelon");
    EXPECT_EQ(program.wait().status, 0);
}
#endif

TEST_F(WindowCommands, AScreenshotShowsSettingsPresetsAndSound) {
    std::vector<std::string> pictures;
    const std::vector<std::vector<std::string>> variants{
        {}, {"--set", "width=225"}, {"--preset", "out of phase"}, {"--input", tone()}};
    for (const auto& variant : variants) {
        const std::string file = home / "shot.png";
        std::vector<std::string> arguments{"screenshot", file};
        arguments.insert(arguments.end(), variant.begin(), variant.end());
        ASSERT_EQ(run(arguments).status, 0);
        const std::string picture = contentsOf(file);
        EXPECT_THAT(pictures, ::testing::Not(::testing::Contains(picture)));
        pictures.push_back(picture);
    }
}

TEST_F(WindowCommands, AScreenshotIsRefusedWithAReason) {
    EXPECT_EQ(run({"screenshot", home / "shot.jpg"}).status, 2);
    EXPECT_EQ(run({"screenshot", home / "no/such/folder/shot.png"}).status, 2);
    EXPECT_EQ(run({"screenshot", home / "shot.png", "--scale", "7"}).status, 2);
    EXPECT_EQ(run({"screenshot", home / "shot.png", "--set", "size=1"}).status, 2);
    display.clear();
    const ProgramResult blind = run({"screenshot", home / "shot.png"});
    EXPECT_EQ(blind.status, 2);
    EXPECT_THAT(blind.errors, HasSubstr("no X display"));
}

TEST_F(WindowCommands, EndsWhenItsWindowIsClosed) {
    for (const char* drive : {"idle", "glib", "both"}) {
        const auto program = start({"edit", "--drive", drive});
        ASSERT_TRUE(appears()) << drive;
        closeWindowNamed("Dravik Mirelon");
        EXPECT_EQ(program->wait().status, 0) << drive;
    }
}

TEST_F(WindowCommands, EndsOnControlC) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const auto program = start({"edit", tone()});
        ASSERT_TRUE(appears());
        std::this_thread::sleep_for(200ms);
        program->signal(signal);
        EXPECT_EQ(program->wait().status, 0);
    }
}

TEST_F(WindowCommands, TheMetersMoveToAFileThatIsNotHeard) {
    const auto program = start({"edit", tone()});
    ASSERT_TRUE(appears());
    EXPECT_TRUE(balanceMeterMoves());
    program->signal(SIGINT);
    EXPECT_EQ(program->wait().status, 0);
}

TEST_F(WindowCommands, AnEditTakesItsFileAfterASetting) {
    const auto program = start({"edit", "--set", "gain=1", "--preset", "swapped", tone()});
    ASSERT_TRUE(appears());
    program->signal(SIGINT);
    const ProgramResult result = program->wait();
    EXPECT_EQ(result.status, 0) << result.errors;
}

TEST_F(WindowCommands, AnEditIsRefusedWithAReason) {
    EXPECT_EQ(run({"edit", home / "nothing.wav"}).status, 2);
    EXPECT_EQ(run({"edit", "--play"}).status, 2);
    EXPECT_EQ(run({"edit", "--drive", "hope"}).status, 2);
    display.clear();
    EXPECT_EQ(run({"edit"}).status, 2);
}

} // namespace
} // namespace mirelon::test
