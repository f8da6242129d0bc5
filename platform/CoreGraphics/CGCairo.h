#pragma once

/// What the sources of this folder share: holders for Cairo's objects, and what the public classes hide.
///
/// Cairo's 32-bit pixels are B, G, R, A in memory. Ours are R, G, B, A: red and blue change places where a colour
/// enters (plain sources, stops of gradients), and everything in between works on bytes without knowing which is which.

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/CGDataProvider.h"

#include <cairo.h>

#include <bit>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

static_assert(std::endian::native == std::endian::little, "the exchange of red and blue relies on the order of bytes");

template <auto Release> struct Releaser {
    void operator()(auto* object) const { Release(object); }
};
using CairoSurface = std::unique_ptr<cairo_surface_t, Releaser<cairo_surface_destroy>>;
using CairoContext = std::unique_ptr<cairo_t, Releaser<cairo_destroy>>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, Releaser<cairo_pattern_destroy>>;

constexpr std::size_t kCGMaxSide = 32767;                          ///< Cairo's limit
constexpr std::uint64_t kCGMaxFilePixels = std::uint64_t{1} << 26; ///< of a picture that comes from a file

/// Memory for pixels and files: it may be refused (null), and nothing is written to it in advance.
using CGBlock = std::unique_ptr<std::uint8_t[], Releaser<std::free>>;
inline CGBlock CGBlockOfBytes(std::size_t size)
{
    return CGBlock(static_cast<std::uint8_t*>(std::malloc(std::max<std::size_t>(size, 1))));
}
/// Memory for many pixels, all 0: pages of their own, so that a window's go back to the system when it closes, however
/// much was allocated after them.
class CGPages {
public:
    CGPages() = default;
    explicit CGPages(std::size_t size);
    CGPages(CGPages&& other) noexcept : mBytes(std::exchange(other.mBytes, {})) {}
    CGPages& operator=(CGPages&& other) noexcept
    {
        std::swap(mBytes, other.mBytes);
        return *this;
    }
    ~CGPages();
    std::uint8_t* bytes() const { return mBytes.data(); } ///< null where there are none, or they were refused

private:
    std::span<std::uint8_t> mBytes;
};
/// Takes the block over; null for null.
RetainPtr<CGDataProvider> CGDataProviderCreateWithBlock(CGBlock block, std::size_t size);
/// Rows of 4 * width; takes the block over; null for null.
/// @param isOpaque  whether every alpha is 255
RetainPtr<CGImage> CGImageCreateWithBlock(std::size_t width, std::size_t height, CGBlock pixels, bool isOpaque = false);

/// A reference to an object given as a Ref: colours, images and gradients never change, only their counts do.
template <typename T> RetainPtr<T> CGRetained(const T* object) { return RetainPtr<T>(const_cast<T*>(object)); }

struct CGImage::Contents {
    std::size_t width, height, bytesPerRow;
    const std::uint8_t* firstPixel;     ///< of `provider`
    RetainPtr<CGDataProvider> provider; ///< shared by the pictures that were cut out of this one
    bool isOpaque;                      ///< known to be; `surface` then has no alpha, and copying takes mixing's place
    CairoSurface surface;               ///< over the provider's bytes; only ever read
    std::uint64_t serialNumber;
};

struct CGColor::Contents {
    std::array<CGFloat, 4> components{};
    RetainPtr<CGImage> pattern; ///< null for a plain colour
    CGFloat patternScale = 1;   ///< image pixels a point
};

struct CGGradient::Contents {
    struct Stop {
        CGFloat location;
        std::array<CGFloat, 4> components;
    };
    std::vector<Stop> stops;
};

struct CGContext::State {
    /// What Cairo doesn't keep itself. The transformation is ours since Cairo gives up on one that has no inverse.
    struct GState {
        CGAffineTransform ctm;
        CGRect clip;            ///< pixels of the device; the clip may leave less, never more
        bool clipIsRect = true; ///< it leaves these, and they are whole ones
        RetainPtr<CGColor> fill, stroke;
        CGFloat alpha = 1;
        CGFloat lineWidth = 1;
        CGSize patternPhase;
    };

    CGPages pages; ///< the surface's own pixels, where they are many
    CairoSurface surface;
    CairoContext cairo;
    GState current;
    std::vector<GState> saved;
    CGPathElements path;                ///< in device space
    CGAffineTransform textMatrix;       ///< neither saved nor restored, as the path
    std::uint8_t* alphaFirst = nullptr; ///< the owner's pixels, where they have another order than `surface`
};

/// Saves Cairo's state and sets the context's transformation for one drawing; tells whether there is anything to draw
/// with.
class CGDrawing {
public:
    explicit CGDrawing(CGContextRef context);
    ~CGDrawing();
    CGDrawing(const CGDrawing&) = delete;
    CGDrawing& operator=(const CGDrawing&) = delete;

    explicit operator bool() const { return mCairo != nullptr; }
    cairo_t* cairo() const { return mCairo; }

private:
    cairo_t* mCairo = nullptr;
};

constexpr CGFloat kCGSamePlace = 1e-6; ///< pixels
inline bool CGIsWhole(CGFloat value) { return std::abs(value - std::round(value)) < kCGSamePlace; }
/// Whether all edges are whole.
bool CGIsOnWholePixels(CGRect pixels);

// Drawing in which no pixel is mixed of two, done without Cairo, which takes long to find that out and needs much of
// its code for it. Both answer false, and draw nothing, where only Cairo can.
/// Fills pixels of the device with the fill colour.
bool CGFillWholePixels(CGContextRef context, CGRect pixels);
/// Draws the image, a pixel for a pixel, with its top left at `place`.
bool CGDrawWholePixels(CGContextRef context, CGImageRef image, CGPoint place);

/// Whether both sides are 1 to 32767.
inline bool CGIsImageSize(std::uint64_t width, std::uint64_t height)
{
    return width > 0 && height > 0 && width <= kCGMaxSide && height <= kCGMaxSide;
}

CGFloat CGUnitValue(CGFloat value); ///< 0 to 1; 0 for not-a-number
bool CGIsFinite(CGRect rect);
/// Elements of rectangles of user space, ready for `CGReplay`; one that isn't finite is left out.
CGPathElements CGElementsOfRects(const CGAffineTransform& ctm, std::span<const CGRect> rects);
CGPathElements CGElementsOfRect(const CGAffineTransform& ctm, CGRect rect);
/// A line for each two points of user space; one with a point that isn't finite is left out.
CGPathElements CGElementsOfSegments(const CGAffineTransform& ctm, std::span<const CGPoint> points);
/// Makes `elements` Cairo's path; they are in device space whatever the transformation says.
void CGReplay(cairo_t* cairo, const CGPathElements& elements);
