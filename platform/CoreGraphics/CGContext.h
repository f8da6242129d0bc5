#pragma once

/// A drawing context over a bitmap: state stack, transformation, clip, paths, colours, images.
///
/// Every context has (0, 0) at its top left and y down. Pixels are premultiplied R, G, B, A bytes. Types ending in Ref
/// are objects: keep them in a `RetainPtr`.
///
/// Failure: calls on a null context do nothing, as does drawing with a null colour or image. An element of a path, a
/// rectangle or a transformation that isn't finite is left out; the context stays usable whatever it is given.

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGeometry.h"
#include "CoreGraphics/CGGradient.h"
#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGPath.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class CGContext final : public NSObject {
public:
    struct State; // complete inside this folder only
    explicit CGContext(std::unique_ptr<State> state);
    State& state() { return *mState; }

private:
    ~CGContext() override;

    std::unique_ptr<State> mState;
};
using CGContextRef = CGContext*;

/// x' = a x + c y + tx, y' = b x + d y + ty
struct CGAffineTransform {
    CGFloat a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    bool operator==(const CGAffineTransform&) const = default;
};

// --- birth and pixels

/// A bitmap of `width` by `height` pixels of its own, all transparent; null for sizes below 1 or above 32767.
RetainPtr<CGContext> CGBitmapContextCreate(std::size_t width, std::size_t height);
/// The same over the caller's pixels, rows of 4 * width at `data`; they stay as they are, and must outlive the context.
RetainPtr<CGContext> CGBitmapContextCreate(void* data, std::size_t width, std::size_t height);
enum CGImageAlphaInfo { kCGImageAlphaPremultipliedLast = 1, kCGImageAlphaPremultipliedFirst = 2 };
/// The same over the caller's pixels with their alpha byte last or first. Where it comes first, they are read now, and
/// written by `CGBitmapContextGetData` only.
RetainPtr<CGContext> CGBitmapContextCreate(void* data, std::size_t width, std::size_t height, CGImageAlphaInfo alpha);
/// The pixels in the order they were given in, up to date with all that was drawn, to be read. Null for a null context.
void* CGBitmapContextGetData(CGContextRef context);
std::size_t CGBitmapContextGetWidth(CGContextRef context);
std::size_t CGBitmapContextGetHeight(CGContextRef context);
/// The pixels, rows of 4 * width, up to date with all that was drawn.
std::span<const std::uint8_t> CGBitmapContextGetPixels(CGContextRef context);
/// A snapshot that outlives the context.
RetainPtr<CGImage> CGBitmapContextCreateImage(CGContextRef context);

// --- state; everything here is kept and brought back by the first two

void CGContextSaveGState(CGContextRef context);
void CGContextRestoreGState(CGContextRef context); ///< without a saved state: nothing
void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
CGAffineTransform CGContextGetCTM(CGContextRef context);
/// In user space, what drawing can reach: a rectangle around the clip, within the bitmap. CGRectNull for a null
/// context, where the clip leaves nothing, and where the transformation has no inverse.
CGRect CGContextGetClipBoundingBox(CGContextRef context);
/// A pattern colour repeats from this point of the device (pixels); the view system puts it at the window's corner.
void CGContextSetPatternPhase(CGContextRef context, CGSize phase);

void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color); ///< black at first
void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
void CGContextSetLineWidth(CGContextRef context, CGFloat width); ///< user space; 1 at first
enum CGLineCap { kCGLineCapButt, kCGLineCapRound, kCGLineCapSquare };
enum CGLineJoin { kCGLineJoinMiter, kCGLineJoinRound, kCGLineJoinBevel };
void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
/// Strokes with `count` lengths of user space, line and gap in turn from `phase` into the pattern; solid for a null
/// `lengths`, a count of 0, and lengths that aren't finite, are negative or sum to 0.
void CGContextSetLineDash(CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count);
enum CGBlendMode { kCGBlendModeNormal = 0, kCGBlendModeDifference = 10, kCGBlendModeCopy = 17 };
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode); ///< nothing for other modes
void CGContextSetShouldAntialias(CGContextRef context, bool antialias);
void CGContextSetAlpha(CGContextRef context, CGFloat alpha); ///< factor on everything drawn from here on

// --- text; neither saved nor restored

/// Letters are y-up: (1, -1) draws them upright, the identity, there at first, mirrored. A matrix that isn't finite is
/// left out.
void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix);
void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y); ///< the matrix' tx and ty
CGAffineTransform CGContextGetTextMatrix(CGContextRef context);

// --- the current path; drawing or clipping consumes it
//
// Its points pass through the transformation when they are added. A line or curve without a point before it starts the
// path.

void CGContextBeginPath(CGContextRef context);
void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
void CGContextAddCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat x,
                              CGFloat y);
void CGContextAddQuadCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x, CGFloat y);
/// From `startAngle` to `endAngle`, radians from the positive x axis toward positive y, at most once around. A line
/// leads to its start where the path has a point already.
void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle);
void CGContextAddRect(CGContextRef context, CGRect rect);
void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
/// Corners of `radius`, at most half of the smaller side.
void CGContextAddRoundedRect(CGContextRef context, CGRect rect, CGFloat radius);
void CGContextClosePath(CGContextRef context);
/// What was added since the path began, in pixels of the device.
CGPathElements CGContextCopyPath(CGContextRef context);
void CGContextFillPath(CGContextRef context);
void CGContextStrokePath(CGContextRef context);
void CGContextClip(CGContextRef context);
void CGContextClipToRect(CGContextRef context, CGRect rect);
/// To all of them together; where they overlap, it is clipped once.
void CGContextClipToRects(CGContextRef context, std::span<const CGRect> rects);

// --- drawing that leaves the current path alone

void CGContextFillRect(CGContextRef context, CGRect rect);
/// How much of each pixel is covered, 255 for all of it: the first pixel first, rows `bytesPerRow` apart.
struct CGCoverage {
    std::size_t width, height, bytesPerRow; ///< the last a multiple of 4
    const std::uint8_t* bytes;
};
/// Fills what is covered, wherever the transformation would put it: the first pixel lies at `devicePixel`, which is
/// whole. Nothing for a size that no picture has.
void CGContextFillCoverage(CGContextRef context, CGPoint devicePixel, const CGCoverage& coverage);
/// A line from each point of even index to the one after it.
void CGContextStrokeLineSegments(CGContextRef context, const CGPoint* points, std::size_t count);
/// A line of the state's width along the edges of `rect`.
void CGContextStrokeRect(CGContextRef context, CGRect rect);
/// Frames the inside of `rect` with a line of `width`, in the stroke colour.
void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
void CGContextClearRect(CGContextRef context, CGRect rect); ///< makes it transparent
/// Upright, the first row at the smallest y. Exact where image and device pixels coincide, else interpolated.
void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);
/// Nothing is drawn beyond the two points' perpendiculars.
void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start, CGPoint end);

/// Keeps the graphics state for as long as it lives.
class ScopedGState {
public:
    explicit ScopedGState(CGContextRef context) : mContext(context) { CGContextSaveGState(mContext); }
    ~ScopedGState() { CGContextRestoreGState(mContext); }
    ScopedGState(const ScopedGState&) = delete;
    ScopedGState& operator=(const ScopedGState&) = delete;

private:
    CGContextRef mContext;
};
