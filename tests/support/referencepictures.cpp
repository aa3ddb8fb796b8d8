#include "tests/support/referencepictures.h"

#include <algorithm>
#include <array>
#include <cairo.h>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace mirelon::test {

using hosting::Picture;

namespace {

constexpr int typeLimit = 24; // behind the soft focus, of 255
constexpr std::uint32_t opaque = 0xFF000000U;
constexpr std::uint32_t red = 0xE00000U;

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

constexpr std::array shifts{0U, 8U, 16U};
int component(std::uint32_t pixel, unsigned shift) {
    return static_cast<int>(pixel >> shift & 0xFFU);
}

// The mean of the pixels around one, as far as they are in the picture.
class SoftFocus {
  public:
    SoftFocus(const Picture& picture, int radius)
        : picture(picture)
        , radius(radius) {}

    std::array<int, 3> at(int x, int y) const {
        std::array<int, 3> sum{};
        int count = 0;
        for (int row = std::max(y - radius, 0); row <= std::min(y + radius, picture.height - 1);
             ++row)
            for (int column = std::max(x - radius, 0);
                 column <= std::min(x + radius, picture.width - 1); ++column, ++count)
                for (std::size_t i = 0; i < shifts.size(); ++i)
                    sum.at(i) += component(picture.at(column, row), shifts.at(i));
        for (int& one : sum)
            one /= count;
        return sum;
    }

  private:
    const Picture& picture;
    int radius;
};

int distance(const std::array<int, 3>& a, const std::array<int, 3>& b) {
    int largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a.at(i) - b.at(i)));
    return largest;
}

// Half way to white.
std::uint32_t paler(std::uint32_t pixel) {
    return (pixel >> 1U & 0x7F7F7FU) + 0x808080U;
}

// What has been found paler, with the differences in red.
Picture marked(const Picture& found, const Differences& differences) {
    Picture result = found;
    for (std::uint32_t& pixel : result.rgb)
        pixel = paler(pixel);
    for (const auto* pixels : {&differences.drawn, &differences.type})
        for (const auto& [x, y] : *pixels)
            result.rgb.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(found.width) +
                          static_cast<std::size_t>(x)) = red;
    return result;
}

// The pixels of the window that belong to an area, in part or whole.
TypeArea pixelsOf(const TypeArea& area, double scale) {
    return {static_cast<int>(std::floor(area.left * scale)),
            static_cast<int>(std::floor(area.top * scale)),
            static_cast<int>(std::ceil(area.right * scale)),
            static_cast<int>(std::ceil(area.bottom * scale))};
}

} // namespace

std::optional<Picture> readPicture(const std::filesystem::path& file, const Picture* behind) {
    const Surface read(cairo_image_surface_create_from_png(file.c_str()), &cairo_surface_destroy);
    if (cairo_surface_status(read.get()) != CAIRO_STATUS_SUCCESS)
        return std::nullopt;
    Picture picture{
        cairo_image_surface_get_width(read.get()), cairo_image_surface_get_height(read.get()), {}};
    const bool hasAlpha = cairo_image_surface_get_format(read.get()) == CAIRO_FORMAT_ARGB32;
    const bool isBehind =
        behind != nullptr && behind->width == picture.width && behind->height == picture.height;
    picture.rgb.reserve(static_cast<std::size_t>(picture.width) *
                        static_cast<std::size_t>(picture.height));
    const unsigned char* row = cairo_image_surface_get_data(read.get());
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + 4 * x, sizeof pixel);
            if (isBehind && hasAlpha && (pixel & opaque) != opaque)
                pixel = behind->at(x, y);
            picture.rgb.push_back(pixel & ~opaque);
        }
        row += cairo_image_surface_get_stride(read.get());
    }
    return picture;
}

bool writePicture(const Picture& picture, const std::filesystem::path& file,
                  const Picture* behind) {
    std::vector<std::uint32_t> pixels(picture.rgb);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (behind != nullptr)
            pixels[i] = pixels[i] == behind->rgb.at(i) ? 0 : pixels[i] | opaque;
    }
    const Surface surface(cairo_image_surface_create_for_data(
                              reinterpret_cast<unsigned char*>(pixels.data()),
                              behind != nullptr ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24,
                              picture.width, picture.height, 4 * picture.width),
                          &cairo_surface_destroy);
    return cairo_surface_write_to_png(surface.get(), file.c_str()) == CAIRO_STATUS_SUCCESS;
}

Differences differencesBetween(const Picture& found, const Picture& reference,
                               std::span<const TypeArea> type, double scale) {
    Differences differences;
    if (found == reference)
        return differences;
    std::vector<TypeArea> areas;
    for (const TypeArea& area : type)
        areas.push_back(pixelsOf(area, scale));
    const auto isType = [&](int x, int y) {
        return std::ranges::any_of(areas, [&](const TypeArea& area) {
            return x >= area.left && x < area.right && y >= area.top && y < area.bottom;
        });
    };
    const int radius = std::max(1, static_cast<int>(std::lround(scale)));
    const SoftFocus softFound(found, radius);
    const SoftFocus softReference(reference, radius);
    for (int y = 0; y < found.height; ++y) {
        for (int x = 0; x < found.width; ++x) {
            if (found.at(x, y) == reference.at(x, y))
                continue;
            if (!isType(x, y)) {
                differences.drawn.push_back({x, y});
                continue;
            }
            const int difference = distance(softFound.at(x, y), softReference.at(x, y));
            differences.largestOfType = std::max(differences.largestOfType, difference);
            if (difference > typeLimit)
                differences.type.push_back({x, y});
        }
    }
    return differences;
}

std::string keepDifferences(const Picture& found, const Differences& differences,
                            const std::filesystem::path& folder, const std::string& name) {
    std::filesystem::create_directories(folder);
    const auto whole = folder / (name + ".png");
    const auto difference = folder / (name + "-difference.png");
    writePicture(found, whole);
    writePicture(marked(found, differences), difference);
    return std::to_string(differences.drawn.size()) + " pixels that are drawn and " +
           std::to_string(differences.type.size()) + " of type differ (these by up to " +
           std::to_string(differences.largestOfType) + ")\nfound              " + whole.string() +
           "\ndifferences in red " + difference.string();
}

} // namespace mirelon::test
