// Views into the bitmap, and what changed to the window system.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSDrawingPace.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSTemporarily.h"
#include "AppKit/NSWindow.h"
#include "CoreFoundation/CFRunLoop.h"

#include <algorithm>
#include <cmath>

namespace {

/// The pixels that lie in `rect` as a whole; without extent, or a negative one, where there are none.
NSRect WholePixelsInside(NSRect rect, const CGAffineTransform& ctm)
{
    const CGFloat left = std::ceil(CGRectGetMinX(rect) * ctm.a + ctm.tx),
                  right = std::floor(CGRectGetMaxX(rect) * ctm.a + ctm.tx),
                  top = std::ceil(CGRectGetMinY(rect) * ctm.d + ctm.ty),
                  bottom = std::floor(CGRectGetMaxY(rect) * ctm.d + ctm.ty);
    return CGRectMake((left - ctm.tx) / ctm.a, (top - ctm.ty) / ctm.d, (right - left) / ctm.a, (bottom - top) / ctm.d);
}

/// Whether `view`, or one in it, fills all of `dirty`, which is in the coordinates of its superview.
bool Covers(const NSView& view, NSRect dirty)
{
    const NSPoint origin = view.frame().origin;
    const NSRect part = CGRectOffset(dirty, -origin.x, -origin.y);
    if (view.isHidden() || !CGRectContainsRect(view.bounds(), part)) return false;
    if (CGRectContainsRect(view.opaqueRect(), part)) return true;
    const auto& subviews = view.subviews();
    return std::any_of(subviews.begin(), subviews.end(), [&](const auto& subview) { return Covers(*subview, part); });
}

/// Leaving little out takes longer than drawing it.
bool IsWorthLeavingOut(NSRect rect, const CGAffineTransform& ctm)
{
    constexpr CGFloat kFewPixels = 1 << 13;
    return !CGRectIsEmpty(rect) && rect.size.width * ctm.a * rect.size.height * ctm.d >= kFewPixels;
}

/// Adds what views inside of `view` fill: rectangles in its coordinates, of whole pixels, within `visible`.
void CollectCovered(const NSView& view, NSPoint offset, NSRect visible, const CGAffineTransform& ctm,
                    std::vector<NSRect>& covered)
{
    for (const auto& subview : view.subviews()) {
        const NSPoint origin{offset.x + subview->frame().origin.x, offset.y + subview->frame().origin.y};
        const NSRect inside = CGRectIntersection(CGRectOffset(subview->bounds(), origin.x, origin.y), visible);
        if (subview->isHidden() || CGRectIsEmpty(inside)) continue;
        if (const NSRect opaque = subview->opaqueRect(); !CGRectIsEmpty(opaque)) {
            const NSRect filled = CGRectIntersection(CGRectOffset(opaque, origin.x, origin.y), inside);
            const NSRect pixels = WholePixelsInside(filled, ctm);
            if (IsWorthLeavingOut(pixels, ctm)) covered.push_back(pixels);
        }
        CollectCovered(*subview, origin, inside, ctm, covered);
    }
}

/// The parts of `rect` outside `hole`.
void Subtract(NSRect rect, NSRect hole, std::vector<NSRect>& parts)
{
    const NSRect shared = CGRectIntersection(rect, hole);
    if (CGRectIsEmpty(shared)) return parts.push_back(rect);
    const CGFloat left = CGRectGetMinX(rect), right = CGRectGetMaxX(rect), top = CGRectGetMinY(shared),
                  bottom = CGRectGetMaxY(shared);
    const auto add = [&](CGFloat x, CGFloat y, CGFloat maxX, CGFloat maxY) {
        if (maxX > x && maxY > y) parts.push_back(CGRectMake(x, y, maxX - x, maxY - y));
    };
    add(left, CGRectGetMinY(rect), right, top);
    add(left, top, CGRectGetMinX(shared), bottom);
    add(CGRectGetMaxX(shared), top, right, bottom);
    add(left, bottom, right, CGRectGetMaxY(rect));
}

/// What of `part` nothing inside of `view` fills; in a few rectangles, else all of it.
std::vector<NSRect> UncoveredParts(const NSView& view, NSRect part, const CGAffineTransform& ctm)
{
    constexpr std::size_t kMost = 16;
    std::vector<NSRect> covered, parts{part};
    CollectCovered(view, {}, part, ctm, covered);
    for (const NSRect& hole : covered) {
        std::vector<NSRect> rest;
        for (const NSRect& rect : parts) Subtract(rect, hole, rest);
        if (rest.size() > kMost) break;
        parts = std::move(rest);
    }
    return parts;
}

/// Draws `view` and what is in it, without what others in it cover. Context and `dirty` are in the coordinates of its
/// superview.
void DrawTree(NSView& view, CGContextRef context, NSRect dirty)
{
    const NSPoint origin = view.frame().origin;
    const NSRect part = CGRectIntersection(CGRectOffset(dirty, -origin.x, -origin.y), view.bounds());
    if (view.isHidden() || CGRectIsEmpty(part)) return;
    const ScopedGState state(context);
    CGContextTranslateCTM(context, origin.x, origin.y);
    CGContextClipToRect(context, view.bounds());
    std::vector<RetainPtr<NSView>> touched; // a view may change the tree while it draws
    for (const auto& subview : view.subviews())
        if (CGRectIntersectsRect(subview->frame(), part)) touched.push_back(subview);
    const bool isWhole = NSStandsOnPixels(context, part); // of a pixel that an edge cuts, nobody fills the rest
    const auto covering = std::find_if(touched.rbegin(), touched.rend(),
                                       [&](const auto& subview) { return isWhole && Covers(*subview, part); });
    auto first = touched.begin();
    if (covering != touched.rend()) {
        first = std::prev(covering.base());
    } else {
        const std::vector<NSRect> uncovered = UncoveredParts(view, part, CGContextGetCTM(context));
        const ScopedGState ofTheView(context);
        CGContextClipToRects(context, uncovered);
        if (!uncovered.empty()) view.drawRect(part);
    }
    for (; first != touched.end(); ++first) DrawTree(**first, context, part);
}

} // namespace

void NSWindow::setNeedsDisplayInRect(NSRect rect) { markDirty(CGRectIntersection(rect, {{0, 0}, mSize})); }

void NSWindow::markDirty(NSRect rect)
{
    if (mClosed || CGRectIsEmpty(rect)) return;
    if (mVisible) CFRunLoopWakeUp(CFRunLoopGetCurrent());
    mDirty.add(rect);
}

void NSWindow::displayIfNeeded()
{
    if (!mVisible || mDrawing || mDirty.empty()) return;
    const RetainPtr<NSWindow> keep(this);
    const std::vector<CGRect> pixelRects = draw();
    if (mBackend && mBitmap && !pixelRects.empty()) mBackend->present(mBitmap, pixelRects);
}

void NSWindow::displayAtPace()
{
    if (!mVisible || mDirty.empty() || !NSDrawingPace::current().mayDraw()) return;
    const CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
    displayIfNeeded(); // the window may be gone then
    NSDrawingPace::current().drew(CFAbsoluteTimeGetCurrent() - start);
}

CGContextRef NSWindow::bitmap()
{
    if (mVisible)
        displayIfNeeded();
    else if (!mClosed && !mDrawing)
        draw();
    return mClosed ? nullptr : mBitmap.get();
}

void NSWindow::backendExposed()
{
    displayIfNeeded();
    if (!mBackend || !mBitmap) return;
    const CGRect all[] = {{{0, 0}, NSPixelSize(mSize, mScale)}};
    mBackend->present(mBitmap, all);
}

/// @return what was drawn, in pixels
std::vector<CGRect> NSWindow::draw()
{
    const CGSize size = NSPixelSize(mSize, mScale);
    if (!mBitmap) {
        mBitmap = CGBitmapContextCreate(static_cast<std::size_t>(size.width), static_cast<std::size_t>(size.height));
        mDirty.add({{0, 0}, mSize});
    }
    updateRing();
    const NSDirtyRegion dirty = std::exchange(mDirty, {});
    const RetainPtr<CGContext> bitmap = mBitmap; // a view may resize the window while it draws
    std::vector<CGRect> pixelRects;
    if (!bitmap) return pixelRects;
    const NSTemporarily<bool> drawing(mDrawing, true);
    for (const NSRect& rect : dirty.rects()) {
        const CGRect pixels = CGRectIntersection(NSPixelsAround(rect, mScale), {{0, 0}, size});
        if (CGRectIsEmpty(pixels)) continue;
        drawPixels(bitmap, pixels);
        pixelRects.push_back(pixels);
    }
    return pixelRects;
}

void NSWindow::drawPixels(CGContextRef bitmap, CGRect pixels)
{
    const NSGraphicsContext::Scope current(bitmap);
    const ScopedGState state(bitmap);
    CGContextClipToRect(bitmap, pixels);
    CGContextScaleCTM(bitmap, mScale, mScale);
    const NSRect points = CGRectMake(pixels.origin.x / mScale, pixels.origin.y / mScale, pixels.size.width / mScale,
                                     pixels.size.height / mScale);
    const RetainPtr<NSView> content = mContentView;
    if (!content || !Covers(*content, points)) {
        CGContextSetFillColorWithColor(bitmap, NSAppearanceColor(NSAppearanceColorName::windowBackgroundColor));
        CGContextFillRect(bitmap, points);
    }
    if (content) DrawTree(*content, bitmap, points);
    drawRing(bitmap);
    const auto overlays = mOverlays;
    for (const auto& view : overlays) DrawTree(*view, bitmap, points);
}

// --- the focus ring

NSView* NSWindow::ringView() const
{
    auto* view = mKey ? asKind<NSView>(mFirstResponder.get()) : nullptr;
    while (view && CGRectIsEmpty(view->focusRingBounds())) view = view->superview();
    return view && view->window() == this && !view->isHiddenOrHasHiddenAncestor() ? view : nullptr;
}

/// Has the ring drawn where it is now, and what it covered drawn without it.
void NSWindow::updateRing()
{
    const NSView* const view = ringView();
    const NSRect ring = view ? CGRectInset(view->convertRectToWindow(view->focusRingBounds()), -NSView::kFocusRingReach,
                                           -NSView::kFocusRingReach)
                             : NSRect{};
    if (ring == mRing) return;
    setNeedsDisplayInRect(mRing);
    setNeedsDisplayInRect(ring);
    mRing = ring;
}

void NSWindow::drawRing(CGContextRef bitmap) const
{
    const RetainPtr<NSView> view = ringView();
    if (!view) return;
    const ScopedGState state(bitmap);
    const NSPoint origin = view->convertPointToWindow({});
    CGContextTranslateCTM(bitmap, origin.x, origin.y);
    view->drawFocusRing();
}

// --- overlays

void NSWindow::addOverlay(NSView* view)
{
    if (!view || mClosed || view->superview() || view->window()) return;
    mOverlays.emplace_back(view);
    view->moveToWindow(this);
    view->setNeedsDisplay();
}

void NSWindow::removeOverlay(NSView* view)
{
    const RetainPtr<NSView> keep(view);
    const auto found = std::find(mOverlays.begin(), mOverlays.end(), keep);
    if (found == mOverlays.end()) return;
    view->setNeedsDisplay();
    mOverlays.erase(found);
    view->moveToWindow(nullptr);
}
