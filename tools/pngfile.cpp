#include "tools/pngfile.h"

#include "tools/commanderror.h"
#include "tools/replacedfile.h"

#include <exception>
#include <memory>

namespace mirelon::tools {

namespace {

struct PngStream {
    ReplacedFile& file;
    std::exception_ptr failure;
};

cairo_status_t writeToFile(void* closure, const unsigned char* bytes, unsigned length) {
    auto& stream = *static_cast<PngStream*>(closure);
    try {
        stream.file.write(bytes, length);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        stream.failure = std::current_exception();
        return CAIRO_STATUS_WRITE_ERROR;
    }
}

} // namespace

void writePng(cairo_surface_t* surface, const std::filesystem::path& target) {
    ReplacedFile file(target);
    PngStream stream{file, nullptr};
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, writeToFile, &stream);
    if (stream.failure)
        std::rethrow_exception(stream.failure);
    if (status != CAIRO_STATUS_SUCCESS)
        throw CommandError(target.string() + ": cannot be written (" +
                           cairo_status_to_string(status) + ")");
    file.commit();
}

void writePng(const hosting::Picture& picture, const std::filesystem::path& file) {
    std::vector<std::uint32_t> pixels(picture.rgb);
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                            CAIRO_FORMAT_RGB24, picture.width, picture.height,
                                            4 * picture.width),
        &cairo_surface_destroy);
    writePng(surface.get(), file);
}

} // namespace mirelon::tools
