// Pictures in files, to compare with what is drawn now: the window at rest and, of any
// other look, the pixels that are not as at rest; and what tools draw.
#pragma once

#include "hosting/picture.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::test {

// In pixels at scale 1; its far edges are just outside of it.
struct TypeArea {
    int left, top, right, bottom;
};

// Nothing when there is no such file. A pixel that is not opaque is that of `behind`,
// or black where there is none.
std::optional<hosting::Picture> readPicture(const std::filesystem::path& file,
                                            const hosting::Picture* behind = nullptr);

// Where it is as `behind`, of the same size, it is clear. False when the file cannot
// be written.
bool writePicture(const hosting::Picture& picture, const std::filesystem::path& file,
                  const hosting::Picture* behind = nullptr);

struct Differences {
    struct Pixel {
        int x, y;
    };
    std::vector<Pixel> drawn; // not the same, outside of type
    std::vector<Pixel> type;  // too different
    int largestOfType = 0;    // 0 to 255, within the limit or not

    bool none() const { return drawn.empty() && type.empty(); }
};

// Of two pictures of one size. What is drawn has to be the same; type may be set a bit
// differently (its rounding to pixels differs between versions of the font library):
// there only what is left behind a soft focus counts.
Differences differencesBetween(const hosting::Picture& found, const hosting::Picture& reference,
                               std::span<const TypeArea> type, double scale);
// Keeps what has been found as NAME.png, and paler with the differences in red as
// NAME-difference.png, in a folder that is made if need be. Returns how many there are
// and where to look.
std::string keepDifferences(const hosting::Picture& found, const Differences& differences,
                            const std::filesystem::path& folder, const std::string& name);

} // namespace mirelon::test
