// The artwork of the editor, compiled into the plug-in. Pure data: any thread.
#pragma once

#include <array>
#include <cstddef>

namespace mirelon {

/// Numbers of the pictures. A switch holds its released picture above its
/// pressed one; the strips of the preset panel hold equally tall pictures, one
/// below the other, in the order given.
enum PictureNumber : int {
    kPictureBackground = 128,
    kPictureMark = 133, ///< the product's mark, small
    kPictureSliderHandle = 134,
    kPictureMeterLit = 135, ///< as large as the unlit one
    kPictureMeterUnlit = 136,
    kPictureProcess = 137, ///< switch
    kPicturePhase = 138,   ///< switch
    kPictureInvertL = 139, ///< switch
    kPictureInvertR = 140, ///< switch
    kPictureAbout = 141,
    kPictureSquareButton = 19990,  ///< normal, hovered, pressed
    kPictureMemoryLetter = 19991,  ///< lit: A, B
    kPictureDefaultBank = 19993,   ///< normal, hovered, pressed
    kPictureDefaultPreset = 19994, ///< normal, hovered, pressed
    kPictureRocker = 19997, ///< rest, hovered left, hovered right, pressed left, pressed right
};

struct PictureSize {
    int width;
    int height;
};

/// A PNG file in memory, never freed.
struct PictureData {
    const unsigned char* data;
    std::size_t size;
};

/// Pixels of a rendering to one pixel of the drawing.
inline constexpr std::array pictureScales{1.0F, 1.25F, 1.5F, 1.75F, 2.0F, 2.5F, 3.0F};

/// The rendering of a picture at pictureScales[scaleIndex]; null data and size 0
/// for a number or an index that does not exist. Where size times scale is not
/// whole the rendering is rounded up, so lay out by pictureSize. Each picture of a
/// strip is rounded up by itself and begins on a whole pixel.
PictureData embeddedPicture(int number, std::size_t scaleIndex) noexcept;

/// Size at scale 1, in pixels; 0 by 0 for a number that does not exist.
PictureSize pictureSize(int number) noexcept;

/// How many equally tall pictures stand one below the other in the drawing; 1 for
/// one that is no strip and for a number that does not exist.
int picturesInStrip(int number) noexcept;

} // namespace mirelon
