// mirelon-host plot: the picture shows what it should where it should.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <gmock/gmock.h>
#include <memory>
#include <sndfile.h>
#include <utility>
#include <vector>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

class Picture {
  public:
    explicit Picture(const std::filesystem::path& file)
        : surface(cairo_image_surface_create_from_png(file.c_str())) {}

    int width() const { return cairo_image_surface_get_width(surface.get()); }
    int height() const { return cairo_image_surface_get_height(surface.get()); }

    // The strongest of a point's three colours, 0 to 255, among it and its neighbours.
    int brightest(int x, int y) const {
        int found = 0;
        for (int row = y - 1; row <= y + 1; ++row)
            for (int column = x - 1; column <= x + 1; ++column)
                for (int colour = 0; colour < 3; ++colour)
                    found = std::max<int>(found, pointAt(column, row)[colour]);
        return found;
    }

    // The rows of a column in which another colour begins.
    std::vector<int> edgesIn(int column, int from) const {
        std::vector<int> edges;
        for (int y = from + 1; y < height(); ++y)
            if (!std::equal(pointAt(column, y), pointAt(column, y) + 3, pointAt(column, y - 1)))
                edges.push_back(y);
        return edges;
    }

    // How many points between the columns are of the colour before (blue above
    // red) or after (red above blue); the panels and texts are grey.
    int blueBetween(int left, int right) const { return inGoniometers(left, right, blue, red); }
    int orangeBetween(int left, int right) const { return inGoniometers(left, right, red, blue); }

    // The highest row of the left channel's levels that has some of the colour.
    int topOfBlueLevels() const { return topOfLevels(blue, red); }
    int topOfOrangeLevels() const { return topOfLevels(red, blue); }

  private:
    enum Colour { blue = 0, red = 2 };

    const unsigned char* pointAt(int x, int y) const {
        return cairo_image_surface_get_data(surface.get()) +
               y * cairo_image_surface_get_stride(surface.get()) + x * 4;
    }
    int inGoniometers(int left, int right, Colour strong, Colour weak) const {
        int count = 0;
        for (int y = 170; y < 590; ++y)
            count += inRow(y, left, right, strong, weak);
        return count;
    }
    int topOfLevels(Colour strong, Colour weak) const {
        int y = 651;
        while (y < 750 && inRow(y, 160, 1500, strong, weak) < 20)
            ++y;
        return y;
    }
    int inRow(int y, int left, int right, Colour strong, Colour weak) const {
        constexpr int clearly = 40;
        int count = 0;
        for (int x = left; x < right; ++x)
            count += pointAt(x, y)[strong] > pointAt(x, y)[weak] + clearly ? 1 : 0;
        return count;
    }

    std::unique_ptr<cairo_surface_t, DestroySurface> surface;
};

class Plot : public testing::Test {
  protected:
    ProgramResult plot(const Sound& input, std::vector<std::string> options = {}) {
        writeSound(folder / "in.wav", input);
        options.insert(options.begin(), {"plot", folder / "in.wav", folder / "out.png"});
        return runMirelon(options);
    }

    TemporaryFolder folder;
};

Sound sine(double left, double right) {
    Sound sound{SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, {}};
    for (int i = 0; i < 20000; ++i) {
        const double sample = std::sin(i * 0.05);
        sound.samples.insert(sound.samples.end(), {left * sample, right * sample});
    }
    return sound;
}

// Where the goniometers' middles are.
constexpr int middleBefore = 292;
constexpr int middleAfter = 800;

TEST_F(Plot, DrawsBeforeAndAfter) {
    const ProgramResult result =
        plot(stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 50000), {"--preset", "extended width"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr("out.png"));
    const Picture picture(folder / "out.png");
    EXPECT_EQ(picture.width(), 1600);
    EXPECT_EQ(picture.height(), 1290);
    EXPECT_GT(picture.blueBetween(60, 540), 5000);
    EXPECT_GT(picture.orangeBetween(560, 1040), 5000);
}

TEST_F(Plot, DrawsMonoAsAnUprightLine) {
    ASSERT_EQ(plot(sine(0.5, 0.5)).status, 0);
    const Picture picture(folder / "out.png");
    EXPECT_GT(picture.blueBetween(middleBefore - 3, middleBefore + 4), 150);
    EXPECT_EQ(picture.blueBetween(60, middleBefore - 3), 0);
    EXPECT_EQ(picture.blueBetween(middleBefore + 4, 540), 0);
}

TEST_F(Plot, DrawsAnInvertedChannelAcross) {
    ASSERT_EQ(plot(sine(0.5, 0.5), {"--preset", "out of phase"}).status, 0);
    const Picture picture(folder / "out.png");
    EXPECT_EQ(picture.blueBetween(60, middleBefore - 3), 0);
    EXPECT_GT(picture.orangeBetween(560, middleAfter - 3), 100);
    EXPECT_GT(picture.orangeBetween(middleAfter + 4, 1040), 100);
}

TEST_F(Plot, DrawsTheFieldOfTheGoniometer) {
    ASSERT_EQ(plot(sine(0.0, 0.0)).status, 0);
    const Picture picture(folder / "out.png");
    constexpr int middleY = 372;
    const int panel = picture.brightest(middleBefore + 20, middleY + 40);
    // A quarter down each of its four sides.
    for (const auto& [x, y] :
         {std::pair{50, -150}, std::pair{150, 50}, std::pair{-50, 150}, std::pair{-150, -50}})
        EXPECT_GT(picture.brightest(middleBefore + x, middleY + y), panel + 20) << x << ' ' << y;
    const auto wordsAt = [&](int top) {
        int count = 0;
        for (int y = top; y < top + 12; y += 2)
            for (int x = 98; x < 126; x += 2)
                count += picture.brightest(x, y) > 110 ? 1 : 0;
        return count;
    };
    EXPECT_GT(wordsAt(410), 15) << "anti-";
    EXPECT_GT(wordsAt(427), 15) << "phase";
}

TEST_F(Plot, DrawsThreeFieldsOverTimeBelowTheGoniometers) {
    ASSERT_EQ(plot(sine(0.5, 0.5)).status, 0);
    // Left of their titles.
    EXPECT_THAT(Picture(folder / "out.png").edgesIn(60, 600),
                testing::ElementsAre(612, 866, 886, 1060, 1080, 1254));
}

TEST_F(Plot, DrawsTheLevelsBeforeAndAfterInTheirColours) {
    ASSERT_EQ(plot(sine(0.5, 0.5), {"--set", "gain=-12"}).status, 0);
    const Picture picture(folder / "out.png");
    EXPECT_LT(picture.topOfBlueLevels() + 10, picture.topOfOrangeLevels()) << "before is louder";
    EXPECT_LT(picture.topOfOrangeLevels(), 749);
}

TEST_F(Plot, DrawsSilenceAndNothingAtAll) {
    EXPECT_EQ(plot(sine(0.0, 0.0)).status, 0);
    EXPECT_EQ(plot(Sound{SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, {}}).status, 0);
    EXPECT_EQ(Picture(folder / "out.png").width(), 1600);
}

TEST_F(Plot, DrawsWhatIsNoNumber) {
    Sound sound = sine(0.5, 0.25);
    sound.samples[200] = std::nan("");
    sound.samples[300] = INFINITY;
    EXPECT_EQ(plot(sound).status, 0);
    EXPECT_EQ(Picture(folder / "out.png").width(), 1600);
}

TEST_F(Plot, TakesAnyFileName) {
    const std::string name = "caf\xE9 \xE2\x99\xAB " + std::string(180, 'x') + ".wav";
    writeSound(folder / name, sine(0.5, 0.25));
    const ProgramResult result = runMirelon({"plot", folder / name, folder / "out.png"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(Picture(folder / "out.png").width(), 1600);
}

TEST_F(Plot, RefusesWhatItCannotDraw) {
    writeFile(folder / "out.png", "precious");
    writeFile(folder / "text.wav", "no sound");
    EXPECT_EQ(runMirelon({"plot", folder / "text.wav", folder / "out.png"}).status, 2);
    EXPECT_EQ(contentsOf(folder / "out.png"), "precious");
    writeSound(folder / "in.wav", sine(0.5, 0.25));
    const ProgramResult jpeg = runMirelon({"plot", folder / "in.wav", folder / "out.jpg"});
    EXPECT_EQ(jpeg.status, 2);
    EXPECT_THAT(jpeg.errors, HasSubstr("its name ends in .png"));
    EXPECT_EQ(runMirelon({"plot", folder / "in.wav", folder / "no" / "out.png"}).status, 2);
}

} // namespace
} // namespace mirelon::test
