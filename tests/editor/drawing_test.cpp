// What the window shows, pixel by pixel, compared with the pictures that it is
// made of.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"

#include "resources/resources.h"

#include <X11/keysym.h>
#include <cairo.h>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace hosting = mirelon::hosting;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

struct PngReader {
    std::span<const unsigned char> rest;
    static cairo_status_t read(void* self, unsigned char* data, unsigned length) {
        auto& rest = static_cast<PngReader*>(self)->rest;
        if (rest.size() < length)
            return CAIRO_STATUS_READ_ERROR;
        std::memcpy(data, rest.data(), length);
        rest = rest.subspan(length);
        return CAIRO_STATUS_SUCCESS;
    }
};

// A part of a picture over the part of the background that lies behind it.
class Drawing {
  public:
    explicit Drawing(int number, std::size_t scaleIndex = 0) {
        const mirelon::PictureData data = mirelon::embeddedPicture(number, scaleIndex);
        PngReader reader{{data.data, data.size}};
        surface.reset(cairo_image_surface_create_from_png_stream(&PngReader::read, &reader));
    }
    int width() const { return cairo_image_surface_get_width(surface.get()); }
    int height() const { return cairo_image_surface_get_height(surface.get()); }

    // Its pixels from (left, top) on, over those of `under`.
    Pixels over(const Pixels& under, int left, int top) const {
        Pixels result = under;
        const std::unique_ptr<cairo_surface_t, Destroy> target(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(result.rgb.data()), CAIRO_FORMAT_RGB24, result.width,
            result.height, 4 * result.width));
        cairo_t* context = cairo_create(target.get());
        cairo_set_source_surface(context, surface.get(), -left, -top);
        cairo_paint(context);
        cairo_destroy(context);
        for (std::uint32_t& pixel : result.rgb)
            pixel &= 0xFFFFFFU;
        return result;
    }

  private:
    struct Destroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    std::unique_ptr<cairo_surface_t, Destroy> surface;
};

struct Area {
    int left, top, right, bottom;
};
Pixels cut(const Pixels& picture, const Area& area) {
    return picture.part(area.left, area.top, area.right, area.bottom);
}
Pixels background(const Area& area) {
    const Drawing drawing(mirelon::kPictureBackground);
    const Pixels empty{
        drawing.width(), drawing.height(),
        std::vector<std::uint32_t>(static_cast<std::size_t>(drawing.width() * drawing.height()))};
    return cut(drawing.over(empty, 0, 0), area);
}
// How picture `index` of a strip looks in the window.
Pixels expected(int strip, int index, const Area& area) {
    return Drawing(strip).over(background(area), 0, index * (area.bottom - area.top));
}

class Window : public testing::Test {
  protected:
    Window() {
        unsetenv("MIRELON_SCALE");
        editor = std::make_unique<EditorHost>();
        editor->open();
        editor->moveTo(150, 305);
    }
    Pixels shown(const Area& area) { return cut(editor->pixels(), area); }

    std::unique_ptr<EditorHost> editor;
};

constexpr Area wholeSaveButton{8, 312, 20, 326};

TEST_F(Window, IsAsLargeAsItsBackground) {
    const ERect rect = editor->rect();
    const mirelon::PictureSize size = mirelon::pictureSize(mirelon::kPictureBackground);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.top, 0);
    EXPECT_EQ(rect.right, size.width);
    EXPECT_EQ(rect.bottom, size.height);
    EXPECT_GE(rect.right, 324);
    EXPECT_GE(rect.bottom, 346);
}

TEST_F(Window, ShowsItsBackgroundBetweenTheControls) {
    for (const Area area : {Area{0, 0, 324, 24}, Area{43, 43, 59, 240}, Area{0, 300, 324, 311}})
        EXPECT_EQ(shown(area), background(area)) << area.top;
}

// Its picture where it should be, and the background all around.
TEST_F(Window, EveryControlOfThePanelStandsInItsPlace) {
    constexpr int square = mirelon::kPictureSquareButton;
    const std::pair<int, Area> places[] = {{square, {8, 312, 20, 326}},
                                           {square, {8, 327, 20, 341}},
                                           {square, {71, 312, 83, 326}},
                                           {square, {71, 327, 83, 341}},
                                           {square, {254, 312, 266, 326}},
                                           {square, {254, 327, 266, 341}},
                                           {square, {279, 312, 291, 326}},
                                           {square, {279, 327, 291, 341}},
                                           {mirelon::kPictureRocker, {219, 319, 250, 333}},
                                           {mirelon::kPictureDefaultBank, {26, 329, 63, 339}},
                                           {mirelon::kPictureDefaultPreset, {22, 314, 69, 324}}};
    const auto expectEmptyAround = [&](const Area& area) {
        const auto [left, top, right, bottom] = area;
        for (const Area& edge :
             {Area{left - 1, top - 1, right + 1, top},
              Area{left - 1, bottom, right + 1, bottom + 1}, Area{left - 1, top, left, bottom},
              Area{right, top, right + 1, bottom}})
            EXPECT_EQ(shown(edge), background(edge)) << edge.left << ", " << edge.top;
    };
    for (const auto& [picture, area] : places) {
        EXPECT_EQ(shown(area), expected(picture, 0, area)) << area.left << ", " << area.top;
        expectEmptyAround(area);
    }
    expectEmptyAround({91, 320, 201, 334}); // the name
}

TEST_F(Window, SwitchesShowTheirStates) {
    struct Place {
        VstInt32 parameter;
        int picture;
        Area area;
    };
    const Place places[] = {{5, mirelon::kPictureProcess, {68, 247, 118, 267}},
                            {7, mirelon::kPictureInvertL, {122, 247, 152, 267}},
                            {8, mirelon::kPictureInvertR, {156, 247, 186, 267}},
                            {6, mirelon::kPicturePhase, {190, 247, 240, 267}}};
    for (const Place& place : places) {
        for (const auto& [value, picture] :
             {std::pair{0.0F, 0}, {0.499F, 0}, {0.5F, 1}, {0.7F, 1}, {1.0F, 1}}) {
            editor->effect->setParameter(place.parameter, value);
            const Pixels drawing = expected(place.picture, picture, place.area);
            EXPECT_EQ(shown(place.area), drawing) << place.parameter << " at " << value;
            editor->close();
            editor->open();
            EXPECT_EQ(shown(place.area), drawing)
                << place.parameter << " at " << value << " when the window opens";
        }
        EXPECT_NE(expected(place.picture, 0, place.area), expected(place.picture, 1, place.area));
    }
}

TEST_F(Window, SliderHandlesStandWhereTheirValueIs) {
    const Drawing handle(mirelon::kPictureSliderHandle);
    const struct {
        VstInt32 parameter;
        int top;
    } rows[] = {{0, 52}, {1, 83}, {2, 147}, {3, 179}, {4, 211}};
    for (const auto& row : rows) {
        for (const auto& [value, left] : {std::pair{0.0F, 63}, {0.5F, 145}, {1.0F, 227}}) {
            editor->effect->setParameter(row.parameter, value);
            const Area area{left, row.top, left + handle.width(), row.top + handle.height()};
            EXPECT_EQ(shown(area), handle.over(background(area), 0, 0))
                << row.parameter << " at " << value;
        }
    }
}

// The processing followed `frames` of the two constant channels.
void feed(hosting::Effect& effect, float left, float right) {
    std::vector<float> l(44100, left);
    std::vector<float> r(44100, right);
    float* channels[] = {l.data(), r.data()};
    effect.setBlockSize(44100);
    effect.resume();
    for (int i = 0; i < 20; ++i) {
        std::fill(l.begin(), l.end(), left);
        std::fill(r.begin(), r.end(), right);
        effect.process(channels, channels, 44100);
    }
}

// Columns of a meter that show the lit picture; nothing when it is of two parts no
// more.
std::optional<int> litColumns(const Pixels& picture, int top) {
    const Drawing lit(mirelon::kPictureMeterLit);
    const Drawing unlit(mirelon::kPictureMeterUnlit);
    const Area area{60, top, 60 + lit.width(), top + lit.height()};
    const Pixels whole = cut(picture, area);
    const Pixels allLit = lit.over(background(area), 0, 0);
    const Pixels allUnlit = unlit.over(background(area), 0, 0);
    const auto column = [&](const Pixels& of, int x) { return of.part(x, 0, x + 1, of.height); };
    int count = 0;
    while (count < whole.width && column(whole, count) == column(allLit, count))
        ++count;
    for (int x = count; x < whole.width; ++x)
        if (column(whole, x) != column(allUnlit, x))
            return std::nullopt;
    return count;
}

using MeterColumns = std::pair<std::optional<int>, std::optional<int>>;
MeterColumns bothMeters(const Pixels& picture) {
    return {litColumns(picture, 25), litColumns(picture, 121)};
}

// What the meters of width and balance come to show; when that is not `expected`,
// what they show after a long time.
MeterColumns metersAfter(EditorHost& editor, const MeterColumns& expected) {
    editor.runUntil([&] { return bothMeters(editor.window->pixels()) == expected; });
    return bothMeters(editor.window->pixels());
}

TEST_F(Window, AMeterInTheMiddleLightsHalfItsSegments) {
    feed(*editor->effect, 0.0F, 0.0F);
    const MeterColumns halves{91, 91};
    EXPECT_EQ(metersAfter(*editor, halves), halves);
}

TEST_F(Window, MetersShowWidthAndBalance) {
    const struct {
        float left;
        float right;
        MeterColumns columns;
    } sounds[] = {
        {0.5F, 0.5F, {182, 91}},
        {0.5F, -0.5F, {0, 91}},
        {0.0F, 0.5F, {91, 182}},
        // A ratio of sixteen is the whole length: twice as strong is a quarter of it,
        // a sum three times the difference 0.396.
        {0.5F, 0.25F, {163, 46}},
    };
    for (const auto& sound : sounds) {
        feed(*editor->effect, sound.left, sound.right);
        EXPECT_EQ(metersAfter(*editor, sound.columns), sound.columns)
            << sound.left << ' ' << sound.right;
    }
}

TEST_F(Window, MetersStandStillBehindTheAboutPicture) {
    const MeterColumns silence{91, 91};
    feed(*editor->effect, 0.0F, 0.0F);
    ASSERT_EQ(metersAfter(*editor, silence), silence);
    editor->click(aboutStrip.x, aboutStrip.y);
    feed(*editor->effect, 0.5F, 0.5F);
    EXPECT_EQ(litColumns(editor->pixels(), 25), 91);
    editor->click(150, 150);
    const MeterColumns mono{182, 91};
    EXPECT_EQ(metersAfter(*editor, mono), mono);
}

TEST_F(Window, TextsStayInsideTheirRectangles) {
    const Area texts[] = {{2, 25, 42, 42},      {258, 25, 298, 42},  {2, 55, 42, 72},
                          {2, 86, 42, 103},     {2, 118, 42, 135},   {258, 120, 298, 137},
                          {2, 150, 42, 167},    {2, 181, 42, 198},   {2, 212, 42, 229},
                          {258, 55, 322, 72},   {258, 86, 322, 103}, {258, 150, 322, 167},
                          {258, 181, 322, 198}, {258, 212, 322, 229}};
    // The widest that each can show.
    for (VstInt32 parameter = 0; parameter < 5; ++parameter)
        editor->effect->setParameter(parameter, 0.0F);
    editor->effect->setParameter(0, 1.0F);
    const Pixels picture = editor->pixels();
    for (const Area& text : texts) {
        int ink = 0;
        for (int y = text.top; y < text.bottom; ++y)
            for (int x = text.left; x < text.right; ++x)
                ink += (picture.at(x, y) & 0xFFU) < 0x40 ? 1 : 0;
        EXPECT_GT(ink, 3) << "no text at " << text.left << ", " << text.top;
        // The edges that the text is not aligned to are free: nothing was cut.
        const bool rightAligned = text.right == 42;
        const int farColumn = rightAligned ? text.left : text.right - 1;
        for (int y = text.top; y < text.bottom; ++y)
            EXPECT_GT(picture.at(farColumn, y) & 0xFFU, 0x80U) << farColumn << ", " << y;
        for (int x = text.left; x < text.right; ++x)
            for (const int y : {text.top, text.bottom - 1})
                EXPECT_GT(picture.at(x, y) & 0xFFU, 0x80U) << x << ", " << y;
    }
}

TEST_F(Window, ASquareButtonShowsHoverAndPress) {
    const Area store{254, 312, 266, 326};
    EXPECT_EQ(shown(store), expected(mirelon::kPictureSquareButton, 0, store));
    editor->moveTo(260, 319);
    EXPECT_EQ(shown(store), expected(mirelon::kPictureSquareButton, 1, store));
    editor->press();
    EXPECT_EQ(shown(store), expected(mirelon::kPictureSquareButton, 2, store));
    editor->release();
    EXPECT_EQ(shown(store), expected(mirelon::kPictureSquareButton, 1, store));
    editor->moveTo(150, 305);
    EXPECT_EQ(shown(store), expected(mirelon::kPictureSquareButton, 0, store));
}

TEST_F(Window, SaveAndLoadButtonsShowHover) {
    EXPECT_EQ(shown(wholeSaveButton), expected(mirelon::kPictureSquareButton, 0, wholeSaveButton));
    editor->moveTo(14, 319);
    EXPECT_EQ(shown(wholeSaveButton), expected(mirelon::kPictureSquareButton, 1, wholeSaveButton));
}

TEST_F(Window, DefaultButtonsShowThePressOfADoubleClickOnly) {
    const struct {
        int strip;
        Area area;
    } buttons[] = {{mirelon::kPictureDefaultBank, {26, 329, 63, 339}},
                   {mirelon::kPictureDefaultPreset, {22, 314, 69, 324}}};
    for (const auto& button : buttons) {
        const double x = (button.area.left + button.area.right) / 2.0;
        const double y = (button.area.top + button.area.bottom) / 2.0;
        EXPECT_EQ(shown(button.area), expected(button.strip, 0, button.area));
        editor->moveTo(x, y);
        editor->press();
        EXPECT_EQ(shown(button.area), expected(button.strip, 1, button.area));
        editor->release();
        editor->moveTo(150, 305);
        editor->moveTo(x, y);
        editor->window->press();
        editor->window->release();
        editor->press();
        EXPECT_EQ(shown(button.area), expected(button.strip, 2, button.area));
        editor->release();
        EXPECT_EQ(shown(button.area), expected(button.strip, 1, button.area));
        editor->moveTo(150, 305);
    }
}

TEST_F(Window, TheRockerShowsTheSideOfHoverAndPress) {
    const Area rocker{219, 319, 250, 333};
    const auto picture = [&](int index) {
        return expected(mirelon::kPictureRocker, index, rocker);
    };
    EXPECT_EQ(shown(rocker), picture(0));
    editor->moveTo(226, 326);
    EXPECT_EQ(shown(rocker), picture(1));
    editor->moveTo(243, 326);
    EXPECT_EQ(shown(rocker), picture(2));
    editor->press();
    EXPECT_EQ(shown(rocker), picture(4));
    editor->release();
    EXPECT_EQ(shown(rocker), picture(2));
    editor->moveTo(226, 326);
    editor->press();
    EXPECT_EQ(shown(rocker), picture(3));
    editor->release();
    editor->moveTo(150, 305);
    EXPECT_EQ(shown(rocker), picture(0));
}

TEST_F(Window, TheAboutPictureIsCentredAndShowsItsTexts) {
    editor->click(aboutStrip.x, aboutStrip.y);
    const Drawing about(mirelon::kPictureAbout);
    const int left = (302 - about.width()) / 2;
    const int top = (311 - about.height()) / 2;
    // Its lowest rows carry no text.
    const Area foot{left, top + about.height() - 4, left + about.width(), top + about.height()};
    EXPECT_EQ(shown(foot), about.over(background(foot), 0, about.height() - 4));
    for (const int line : {8, 25, 42, 79}) {
        const Area area{left, top + line, left + about.width(), top + line + 15};
        EXPECT_NE(shown(area), about.over(background(area), 0, line)) << "line at " << line;
    }
}

} // namespace
