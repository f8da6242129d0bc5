#include "AppKit/NSDirtyRegion.h"

#include <cmath>
#include <limits>

namespace {

CGFloat AreaOf(CGRect rect) { return rect.size.width * rect.size.height; }

/// What the rectangle around both covers beyond the two.
CGFloat CostOfJoining(CGRect a, CGRect b)
{
    return AreaOf(CGRectUnion(a, b)) - AreaOf(a) - AreaOf(b) + AreaOf(CGRectIntersection(a, b));
}

// Choice: an eighth more area than needed costs less than a second walk through the views.
bool BelongTogether(CGRect a, CGRect b) { return CostOfJoining(a, b) <= (AreaOf(a) + AreaOf(b)) / 8; }

} // namespace

void NSDirtyRegion::add(CGRect rect)
{
    if (CGRectIsEmpty(rect)) return;
    for (std::size_t i = 0; i < mRects.size();) {
        if (!BelongTogether(mRects[i], rect)) {
            ++i;
            continue;
        }
        rect = CGRectUnion(mRects[i], rect);
        mRects.erase(mRects.begin() + static_cast<std::ptrdiff_t>(i));
        i = 0; // what was apart from the smaller rectangle may belong to the larger
    }
    mRects.push_back(rect);
    if (mRects.size() > kMost) joinCheapestPair();
}

void NSDirtyRegion::joinCheapestPair()
{
    std::size_t first = 0, second = 1;
    CGFloat cheapest = std::numeric_limits<CGFloat>::infinity();
    for (std::size_t i = 0; i < mRects.size(); ++i) {
        for (std::size_t k = i + 1; k < mRects.size(); ++k) {
            const CGFloat cost = CostOfJoining(mRects[i], mRects[k]);
            if (cost >= cheapest) continue;
            cheapest = cost;
            first = i;
            second = k;
        }
    }
    const CGRect joined = CGRectUnion(mRects[first], mRects[second]);
    mRects.erase(mRects.begin() + static_cast<std::ptrdiff_t>(second));
    mRects.erase(mRects.begin() + static_cast<std::ptrdiff_t>(first));
    add(joined);
}

CGRect NSPixelsAround(CGRect points, CGFloat scale)
{
    // A millionth of a pixel: 4 points at 1.25 are 5 pixels, whatever the last bit of the product says.
    constexpr CGFloat kSlack = 1e-6;
    const CGFloat left = std::floor(points.origin.x * scale + kSlack),
                  top = std::floor(points.origin.y * scale + kSlack);
    const CGFloat right = std::ceil(CGRectGetMaxX(points) * scale - kSlack);
    const CGFloat bottom = std::ceil(CGRectGetMaxY(points) * scale - kSlack);
    return CGRectMake(left, top, right - left, bottom - top);
}
