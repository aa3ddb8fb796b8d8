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
// rendering is copied pixel by pixel. Decoded when it is first drawn, which a
// picture that is seldom shown may never be.
class CrispBitmap final : public CBitmap {
  public:
    CrispBitmap() = default; // of size 0
    CrispBitmap(int number, PictureSize size, double scale)
        : CBitmap(getPlatformFactory().createBitmap(CPoint(size.width, size.height)))
        , number(number)
        , scale(scale) {}

    void draw(CDrawContext* context, const CRect& rect, const CPoint& offset,
              float alpha) override {
        if (number == 0)
            return;
        const CGraphicsTransform transform = context->getCurrentTransform();
        const CPoint origin = snapped(transform, {rect.left - offset.x, rect.top - offset.y});
        CRect target;
        target.setTopLeft(snapped(transform, rect.getTopLeft()));
        target.setBottomRight(snapped(transform, rect.getBottomRight()));
        const CDrawContext::Transform inScreenPixels(*context, transform.inverse());
        const CPoint inPicture(target.left - origin.x, target.top - origin.y);
        CBitmap* const source = decoded(transform.m11 == scale ? rendering : plain,
                                        transform.m11 == scale ? renderingFor(scale) : 0);
        if (source != nullptr)
            source->draw(context, target, inPicture, alpha);
    }

  private:
    static CPoint snapped(const CGraphicsTransform& transform, CPoint point) {
        transform.transform(point);
        return {std::floor(point.x + 0.5), std::floor(point.y + 0.5)};
    }

    // `kept`, once it has been made of the picture's rendering of that index.
    CBitmap* decoded(SharedPointer<CBitmap>& kept, std::size_t scaleIndex) const {
        if (kept == nullptr) {
            const PlatformBitmapPtr picture = decode(number, scaleIndex);
            if (picture == nullptr)
                return nullptr;
            if (scaleIndex != 0)
                picture->setScaleFactor(static_cast<double>(pictureScales[scaleIndex]) / scale);
            kept = makeOwned<CBitmap>(picture);
        }
        return kept;
    }

    int number = 0;
    double scale = 1.0;
    SharedPointer<CBitmap> rendering; // one of its pixels is one of the screen's
    SharedPointer<CBitmap> plain;     // for any other transform than the window's
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
    const PictureSize size = pictureSize(number);
    if (size.width == 0)
        return makeOwned<CrispBitmap>();
    return makeOwned<CrispBitmap>(number, size, scale);
}

} // namespace mirelon
