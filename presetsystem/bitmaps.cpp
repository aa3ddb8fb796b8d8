#include "presetsystem/bitmaps.h"

#include "resources/resources.h"

#include <cmath>

using namespace VSTGUI;

namespace mirelon {

namespace {

// The smallest rendering that is not smaller than `scale`, else the largest.
std::size_t renderingFor(double scale) {
    std::size_t index = 0;
    while (index + 1 < pictureScales.size() && static_cast<double>(pictureScales[index]) < scale)
        ++index;
    return index;
}

PlatformBitmapPtr decode(int number, std::size_t scaleIndex) {
    const PictureData picture = embeddedPicture(number, scaleIndex);
    if (picture.data == nullptr)
        return nullptr;
    return getPlatformFactory().createBitmapFromMemory(picture.data,
                                                       static_cast<uint32_t>(picture.size));
}

// A bitmap whose pixels land on the pixels of the screen at every scale: edges
// of views that fall between two pixels go to the nearer one, and the larger
// rendering is copied pixel by pixel.
class CrispBitmap final : public CBitmap {
  public:
    CrispBitmap() = default; // of size 0
    CrispBitmap(const PlatformBitmapPtr& picture, const PlatformBitmapPtr& rendering, double scale)
        : CBitmap(picture)
        , scale(scale)
        , rendering(makeOwned<CBitmap>(rendering)) {}

    void draw(CDrawContext* context, const CRect& rect, const CPoint& offset,
              float alpha) override {
        if (rendering == nullptr)
            return;
        const CGraphicsTransform transform = context->getCurrentTransform();
        const CPoint origin = snapped(transform, {rect.left - offset.x, rect.top - offset.y});
        CRect target;
        target.setTopLeft(snapped(transform, rect.getTopLeft()));
        target.setBottomRight(snapped(transform, rect.getBottomRight()));
        const CDrawContext::Transform inScreenPixels(*context, transform.inverse());
        const CPoint inPicture(target.left - origin.x, target.top - origin.y);
        if (transform.m11 == scale)
            rendering->draw(context, target, inPicture, alpha);
        else
            CBitmap::draw(context, target, inPicture, alpha);
    }

  private:
    static CPoint snapped(const CGraphicsTransform& transform, CPoint point) {
        transform.transform(point);
        return {std::floor(point.x + 0.5), std::floor(point.y + 0.5)};
    }

    double scale = 1.0;
    SharedPointer<CBitmap> rendering; // one of its pixels is one of the screen's
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

SharedPointer<CBitmap> loadBitmap(int number, double scale) {
    const PlatformBitmapPtr picture = decode(number, 0);
    const std::size_t index = renderingFor(scale);
    const PlatformBitmapPtr rendering = index == 0 ? picture : decode(number, index);
    if (picture == nullptr || rendering == nullptr)
        return makeOwned<CrispBitmap>();
    if (rendering != picture)
        rendering->setScaleFactor(static_cast<double>(pictureScales[index]) / scale);
    return makeOwned<CrispBitmap>(picture, rendering, scale);
}

} // namespace mirelon
