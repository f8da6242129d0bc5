#pragma once

/// A drawing context over a bitmap: state stack, transformation, clip, paths, colours, images.
///
/// Every context has (0, 0) at its top left and y down. Pixels are premultiplied R, G, B, A bytes. Calls on a null context
/// do nothing. Types ending in Ref are objects: keep them in a `RetainPtr`.

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/NSObject.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

class CGContext;
class CGImage;
class CGColor;
class CGGradient;
using CGContextRef = CGContext*;
using CGImageRef = const CGImage*;
using CGColorRef = const CGColor*;
using CGGradientRef = const CGGradient*;

/// x' = a x + c y + tx, y' = b x + d y + ty
struct CGAffineTransform {
    CGFloat a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
};

// --- colours: components 0 to 1, not premultiplied; sRGB

RetainPtr<CGColor> CGColorCreateRGBA(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// A colour that repeats `image` from (0, 0) of the window's content, one image pixel for each `1 / imageScale` points.
RetainPtr<CGColor> CGColorCreateWithPatternImage(CGImageRef image, CGFloat imageScale);
std::array<CGFloat, 4> CGColorGetComponents(CGColorRef color); ///< all 0 for a pattern

// --- images

/// A picture read from a PNG file; null when it can't be read. Hostile sizes (over 2^15 a side) are refused.
RetainPtr<CGImage> CGImageCreateWithPNGFile(const std::string& path);
/// @return success; the file is written beside its final name first, so that no half file appears
bool CGImageWritePNGFile(CGImageRef image, const std::string& path);
std::size_t CGImageGetWidth(CGImageRef image);
std::size_t CGImageGetHeight(CGImageRef image);
/// The premultiplied RGBA bytes, rows of 4 * width.
std::span<const std::uint8_t> CGImageGetPixels(CGImageRef image);

// --- contexts

/// A bitmap of `width` by `height` pixels of its own, all transparent; null for sizes below 1 or above 32767.
RetainPtr<CGContext> CGBitmapContextCreate(std::size_t width, std::size_t height);
std::size_t CGBitmapContextGetWidth(CGContextRef context);
std::size_t CGBitmapContextGetHeight(CGContextRef context);
/// The pixels, rows of 4 * width, up to date with all that was drawn.
std::span<const std::uint8_t> CGBitmapContextGetPixels(CGContextRef context);
/// A snapshot that outlives the context.
RetainPtr<CGImage> CGBitmapContextCreateImage(CGContextRef context);

void CGContextSaveGState(CGContextRef context);
void CGContextRestoreGState(CGContextRef context); ///< without a saved state: nothing
void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
CGAffineTransform CGContextGetCTM(CGContextRef context);
/// A pattern colour repeats from this point of the device (pixels); the view system puts it at the window's corner.
void CGContextSetPatternPhase(CGContextRef context, CGSize phase);

void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color);
void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
void CGContextSetLineWidth(CGContextRef context, CGFloat width); ///< user space; 1 at first
enum CGLineCap { kCGLineCapButt, kCGLineCapRound, kCGLineCapSquare };
enum CGLineJoin { kCGLineJoinMiter, kCGLineJoinRound, kCGLineJoinBevel };
void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
void CGContextSetShouldAntialias(CGContextRef context, bool antialias);
void CGContextSetAlpha(CGContextRef context, CGFloat alpha); ///< factor on everything drawn from here on

// The current path; drawing or clipping consumes it.
void CGContextBeginPath(CGContextRef context);
void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
void CGContextAddCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat x, CGFloat y);
/// From `startAngle` to `endAngle`, radians from the positive x axis toward positive y.
void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle);
void CGContextAddRect(CGContextRef context, CGRect rect);
void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
/// Corners of `radius`, at most half of the smaller side.
void CGContextAddRoundedRect(CGContextRef context, CGRect rect, CGFloat radius);
void CGContextClosePath(CGContextRef context);
void CGContextFillPath(CGContextRef context);
void CGContextStrokePath(CGContextRef context);
void CGContextClip(CGContextRef context);
void CGContextClipToRect(CGContextRef context, CGRect rect);

void CGContextFillRect(CGContextRef context, CGRect rect);
/// Frames the inside of `rect` with a line of `width`.
void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
void CGContextClearRect(CGContextRef context, CGRect rect); ///< makes it transparent

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);

/// Colours at positions 0 to 1, ascending.
RetainPtr<CGGradient> CGGradientCreate(std::span<const CGColorRef> colors, std::span<const CGFloat> locations);
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
