#include "AppKit/NSStill.h"

#include "AppKit/NSGraphicsContext.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <optional>

namespace {

constexpr CGFloat kLargest = 1 << 16;        // pixels
constexpr std::size_t kMostPixels = 1 << 18; // of all pictures
constexpr CGFloat kParts = 256;              // of a pixel, between which no difference is seen
constexpr CGFloat kFarthest = 1 << 20;       // pixels

/// Where a rectangle lies: in a whole pixel, and in 256ths of one from there on.
struct Place {
    CGFloat x, y;             // whole
    std::array<int, 4> parts; // from there to the left, top, right and bottom edge
    CGFloat scale;

    std::size_t width() const { return static_cast<std::size_t>(std::ceil(parts[2] / kParts)); }
    std::size_t height() const { return static_cast<std::size_t>(std::ceil(parts[3] / kParts)); }
};

std::optional<Place> PlaceOf(const CGAffineTransform& ctm, CGRect rect)
{
    if (ctm.b != 0 || ctm.c != 0 || ctm.a != ctm.d || !(ctm.a > 0)) return std::nullopt;
    const CGFloat scale = ctm.a, left = rect.origin.x * scale + ctm.tx, top = rect.origin.y * scale + ctm.ty;
    const CGFloat width = rect.size.width * scale, height = rect.size.height * scale;
    const bool isNear = std::abs(left) < kFarthest && std::abs(top) < kFarthest;
    if (!isNear || !(width > 0) || !(height > 0) || !((width + 2) * (height + 2) <= kLargest)) return std::nullopt;
    // half of a part is added first: what should lie on a pixel may lie a rounding error before it
    const CGFloat x = std::floor(left + 0.5 / kParts), y = std::floor(top + 0.5 / kParts);
    const auto parts = [](CGFloat pixels) { return static_cast<int>(std::lround(pixels * kParts)); };
    return Place{x, y, {parts(left - x), parts(top - y), parts(left - x + width), parts(top - y + height)}, scale};
}

struct Still {
    NSStillKey key;
    std::array<int, 4> parts;
    CGFloat scale;
    RetainPtr<CGImage> image;
};

/// Newest first.
struct Stills {
    std::list<Still> kept;
    std::size_t pixels = 0;
};

Stills& OwnStills()
{
    static thread_local Stills stills;
    return stills;
}

std::size_t PixelsOf(const Still& still) { return CGImageGetWidth(still.image) * CGImageGetHeight(still.image); }

RetainPtr<CGImage> PictureOf(const Place& place, CGRect rect, const std::function<void(CGContextRef)>& draw)
{
    const auto bitmap = CGBitmapContextCreate(place.width(), place.height());
    if (!bitmap) return nullptr;
    CGContextTranslateCTM(bitmap, place.parts[0] / kParts, place.parts[1] / kParts);
    CGContextScaleCTM(bitmap, place.scale, place.scale);
    CGContextTranslateCTM(bitmap, -rect.origin.x, -rect.origin.y);
    const NSGraphicsContext::Scope current(bitmap);
    draw(bitmap);
    return CGBitmapContextCreateImage(bitmap);
}

/// Drops the oldest, but never the newest.
void DropOldest(Stills& stills)
{
    while (stills.pixels > kMostPixels && stills.kept.size() > 1) {
        stills.pixels -= PixelsOf(stills.kept.back());
        stills.kept.pop_back();
    }
}

CGImageRef PictureOfStill(const Place& place, CGRect rect, const NSStillKey& key,
                          const std::function<void(CGContextRef)>& draw)
{
    Stills& stills = OwnStills();
    const auto found = std::find_if(stills.kept.begin(), stills.kept.end(), [&](const Still& still) {
        return still.parts == place.parts && still.key == key && still.scale == place.scale;
    });
    if (found != stills.kept.end()) {
        stills.kept.splice(stills.kept.begin(), stills.kept, found);
    } else {
        auto image = PictureOf(place, rect, draw);
        if (!image) return nullptr;
        stills.kept.push_front({key, place.parts, place.scale, std::move(image)});
        stills.pixels += PixelsOf(stills.kept.front());
        DropOldest(stills);
    }
    return stills.kept.front().image.get();
}

} // namespace

void NSDrawStill(CGContextRef context, CGRect rect, const NSStillKey& key,
                 const std::function<void(CGContextRef)>& draw)
{
    const CGAffineTransform ctm = CGContextGetCTM(context);
    const auto place = PlaceOf(ctm, rect);
    const CGImageRef picture = place ? PictureOfStill(*place, rect, key, draw) : nullptr;
    if (!picture) return draw(context);
    const auto points = [&](std::size_t pixels) { return static_cast<CGFloat>(pixels) / place->scale; };
    CGContextDrawImage(context,
                       CGRectMake((place->x - ctm.tx) / place->scale, (place->y - ctm.ty) / place->scale,
                                  points(CGImageGetWidth(picture)), points(CGImageGetHeight(picture))),
                       picture);
}
