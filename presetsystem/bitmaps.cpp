#include "presetsystem/bitmaps.h"

#include "resources/resources.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace VSTGUI;

namespace mirelon {

namespace {

// The rendering that is made for `scale`; that for scale 1 when there is none.
std::size_t renderingFor(double scale) {
    const auto* const found = std::ranges::find(pictureScales, static_cast<float>(scale));
    return found == pictureScales.end()
               ? 0
               : static_cast<std::size_t>(std::distance(pictureScales.begin(), found));
}

PlatformBitmapPtr decode(int number, std::size_t scaleIndex) {
    const PictureData picture = embeddedPicture(number, scaleIndex);
    if (picture.data == nullptr)
        return nullptr;
    return getPlatformFactory().createBitmapFromMemory(picture.data,
                                                       static_cast<uint32_t>(picture.size));
}

// A bitmap whose pixels land on the pixels of the screen at every scale: edges
// of views that fall between two pixels go to the nearer one, and the rendering for
// the scale at which it is drawn is copied pixel by pixel. Decoded when it is first
// drawn, which a picture that is seldom shown may never be.
class CrispBitmap final : public CBitmap {
  public:
    CrispBitmap() = default; // of size 0
    CrispBitmap(int number, PictureSize size)
        : CBitmap(getPlatformFactory().createBitmap(CPoint(size.width, size.height)))
        , number(number)
        , pictureHeight(size.height / picturesInStrip(number)) {}

    void draw(CDrawContext* context, const CRect& rect, const CPoint& offset,
              float alpha) override {
        if (number == 0)
            return;
        const CGraphicsTransform transform = context->getCurrentTransform();
        const std::size_t scaleIndex = renderingFor(transform.m11);
        CBitmap* const source = decoded(scaleIndex);
        if (source == nullptr)
            return;
        // In a rendering each picture of a strip begins on a whole pixel.
        const double picture = std::floor(offset.y / pictureHeight);
        const double renderedHeight =
            std::ceil(pictureHeight * static_cast<double>(pictureScales[scaleIndex]));
        const CPoint origin = snapped(
            transform, {rect.left - offset.x, rect.top - offset.y + picture * pictureHeight});
        CRect target;
        target.setTopLeft(snapped(transform, rect.getTopLeft()));
        target.setBottomRight(snapped(transform, rect.getBottomRight()));
        const CDrawContext::Transform inScreenPixels(*context, transform.inverse());
        const CPoint inPicture(target.left - origin.x,
                               target.top - origin.y + picture * renderedHeight);
        source->draw(context, target, inPicture, alpha);
    }

  private:
    static CPoint snapped(const CGraphicsTransform& transform, CPoint point) {
        transform.transform(point);
        return {std::floor(point.x + 0.5), std::floor(point.y + 0.5)};
    }

    CBitmap* decoded(std::size_t scaleIndex) {
        if (rendering == nullptr || renderingIndex != scaleIndex) {
            const PlatformBitmapPtr picture = decode(number, scaleIndex);
            rendering = picture == nullptr ? nullptr : makeOwned<CBitmap>(picture);
            renderingIndex = scaleIndex;
        }
        return rendering;
    }

    int number = 0;
    int pictureHeight = 0;
    SharedPointer<CBitmap> rendering; // the last one drawn
    std::size_t renderingIndex = 0;
};

} // namespace

double nearestPictureScale(double wanted) noexcept {
    double best = pictureScales.front();
    if (!(wanted > 0.0))
        return best;
    for (const double scale : pictureScales)
        if (std::abs(scale - wanted) <= std::abs(best - wanted))
            best = scale;
    return best;
}

SharedPointer<CBitmap> loadBitmap(int number) {
    const PictureSize size = pictureSize(number);
    if (size.width == 0)
        return makeOwned<CrispBitmap>();
    return makeOwned<CrispBitmap>(number, size);
}

} // namespace mirelon
