#include "TonaroToneView.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSRoundedRect.h"
#include "AppKit/NSStill.h"
#include "AppKit/NSWindow.h"

#include <algorithm>
#include <cmath>

NS_CLASS_TABLE(TonaroToneView, NSView, "")
NS_CLASS_TABLE_END

namespace {

using enum NSAppearanceColorName;

constexpr CGFloat kCorner = 5, kSide = 14, kLabelRoom = 44, kTop = 10, kBottom = 8;
constexpr CGFloat kWaveInset = 12; ///< of the wave from the plot's top and bottom
constexpr CGFloat kPointRadius = 5, kPathWidth = 2, kReach = 14;
constexpr struct {
    double hz;
    std::u16string_view label;
} kLines[] = {{100, u"100"}, {1000, u"1k"}, {10000, u"10k"}, {100000, u"100k"}};

CGFloat distance(NSPoint a, NSPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

} // namespace

// --- the unit

void TonaroToneView::setAU(AudioUnit unit)
{
    if (mDrag && window()) window()->endTracking(this); // its gesture ends at the unit at which it began
    mListener =
        std::make_unique<TonaroUnitListener>(unit, this, TonaroUnitListener::Gestures::no,
                                             [this](const AudioUnitEvent& event, float value) { heard(event, value); });
    mShape.highestHz = mListener->sampleRate() / 2;
    for (AudioUnitParameterID id = 0; id < kParamCount; ++id) show(id, mListener->value(id));
    setNeedsDisplay();
}

void TonaroToneView::heard(const AudioUnitEvent& event, float value)
{
    if (event.mEventType == kAudioUnitEvent_PropertyChange) {
        mShape.highestHz = mListener->sampleRate() / 2;
        setNeedsDisplay();
    } else {
        show(event.mArgument.mParameter.mParameterID, value);
    }
}

void TonaroToneView::show(AudioUnitParameterID parameter, float value)
{
    const double finite = std::isfinite(value) ? double{value} : 0;
    const TonaroToneShape before = mShape;
    switch (parameter) {
    case kParamWaveform:
        mShape.waveform = static_cast<int>(std::clamp(finite, 0.0, 3.0));
        break;
    case kParamStartFrequency:
        mShape.startHz = finite;
        break;
    case kParamUseEnd:
        mShape.sweeps = finite > 0;
        break;
    case kParamEndFrequency:
        mShape.endHz = finite;
        break;
    case kParamLogSweep:
        mShape.isLogarithmic = finite > 0;
        break;
    default:
        break;
    }
    if (mShape != before) setNeedsDisplay();
}

// --- where things are

CGRect TonaroToneView::plot() const
{
    const NSSize size = bounds().size;
    return CGRectMake(kSide, kTop, size.width - kSide - kLabelRoom, size.height - kTop - kBottom);
}

NSPoint TonaroToneView::pointOf(double part, double hz) const
{
    const CGRect inside = plot();
    return {inside.origin.x + part * inside.size.width,
            CGRectGetMaxY(inside) - mShape.heightOf(hz) * inside.size.height};
}

NSPoint TonaroToneView::startPoint() const { return pointOf(0, mShape.startHz); }
NSPoint TonaroToneView::endPoint() const { return pointOf(1, mShape.endHz); }

std::optional<AudioUnitParameterID> TonaroToneView::parameterAt(NSPoint point) const
{
    if (distance(point, startPoint()) <= kReach) return kParamStartFrequency;
    if (mShape.sweeps && distance(point, endPoint()) <= kReach) return kParamEndFrequency;
    return std::nullopt;
}

NSCursorShape TonaroToneView::cursorAtPoint(NSPoint point) const
{
    return mDrag || parameterAt(point) ? NSCursorShape::hand : NSCursorShape::arrow;
}

// --- dragging

void TonaroToneView::mouseDown(NSEvent& event)
{
    const RetainPtr<TonaroToneView> keep(this);
    const NSPoint pointer = convertPointFromWindow(event.locationInWindow());
    const auto parameter = parameterAt(pointer);
    const RetainPtr<NSWindow> in(window());
    if (!parameter || !mListener || !in) return NSView::mouseDown(event);
    // commits what was being typed, which may be refused, and may change anything, this view's window included
    if (!in->makeFirstResponder(nullptr)) return;
    in->beginTracking(this);
    if (in->trackingView() != this) return;
    const NSPoint point = *parameter == kParamStartFrequency ? startPoint() : endPoint();
    mDrag = {*parameter, point.y - pointer.y, mListener->value(*parameter)};
    setNeedsDisplay();
    mListener->begin(*parameter);
}

void TonaroToneView::mouseDragged(NSEvent& event)
{
    if (!mDrag) return;
    const CGRect inside = plot();
    const CGFloat y = convertPointFromWindow(event.locationInWindow()).y + mDrag->offset;
    const double hz = mShape.hzOf((CGRectGetMaxY(inside) - y) / inside.size.height);
    if (static_cast<float>(hz) != mListener->value(mDrag->parameter)) send(static_cast<float>(hz));
}

void TonaroToneView::send(float hz)
{
    const RetainPtr<TonaroToneView> keep(this);
    const AudioUnitParameterID parameter = mDrag->parameter;
    mListener->set(parameter, hz);
    if (mListener) show(parameter, mListener->value(parameter)); // this view's own sets don't come back to it
}

void TonaroToneView::trackingDidEnd(bool)
{
    const RetainPtr<TonaroToneView> keep(this);
    const auto drag = std::exchange(mDrag, std::nullopt);
    if (drag && mListener) mListener->end(drag->parameter);
    setNeedsDisplay();
}

bool TonaroToneView::abandonTracking()
{
    if (mDrag) send(mDrag->before);
    return true;
}

// --- drawing

void TonaroToneView::drawGrid(CGContextRef context) const
{
    const CTFontRef font = NSSmallSystemFont();
    CGContextSetFillColorWithColor(context, NSAppearanceColor(cardBorderColor));
    for (const auto& line : kLines)
        if (line.hz < mShape.highestHz)
            CGContextFillRect(context, CGRectMake(0, std::round(pointOf(0, line.hz).y), bounds().size.width, 1));
    for (const auto& line : kLines) {
        if (line.hz >= mShape.highestHz) continue;
        const auto text = CTLineCreate(std::u16string(line.label), font);
        const auto size = CTLineGetTypographicBounds(text);
        const CGFloat y = std::round(pointOf(0, line.hz).y) - size.descent;
        if (y - size.ascent < 0) continue;
        CTLineDraw(text, context, {bounds().size.width - kCorner - 2 - size.width, y},
                   NSAppearanceColor(secondaryLabelColor));
    }
}

void TonaroToneView::drawPoint(CGContextRef context, NSPoint center, bool isEnabled) const
{
    const CGFloat scale = NSGraphicsContext::currentScale();
    center.y = std::round(center.y * scale) / scale; // so that the point looks the same everywhere
    const auto disc = [&](CGContextRef on, CGFloat radius, CGColorRef color) {
        CGContextSetFillColorWithColor(on, color);
        CGContextBeginPath(on);
        CGContextAddEllipseInRect(on, CGSquareAround(center, radius));
        CGContextFillPath(on);
    };
    const std::array colors{NSAppearanceColor(isEnabled ? controlAccentColor : disabledAccentColor),
                            NSAppearanceColor(isEnabled ? knobColor : disabledKnobColor)};
    NSDrawStill(context, CGSquareAround(center, kPointRadius), {"point", colors}, [&](CGContextRef on) {
        disc(on, kPointRadius, colors[0]);
        disc(on, kPointRadius - 2, colors[1]);
    });
}

void TonaroToneView::updateCurves(const CGAffineTransform& ctm)
{
    const NSSize size = bounds().size;
    if (mCurves && mCurves->shape == mShape && mCurves->size == size && mCurves->ctm == ctm) return;
    const CGRect inside = plot(), area = CGRectMake(inside.origin.x, 0, inside.size.width, size.height);
    const CGFloat column = 1 / ctm.a, step = 4 * column; // a line of that length strays by less than a tenth of a pixel
    mCurves = {mShape,
               size,
               ctm,
               TonaroGraph(ctm, mShape.wave(CGRectInset(inside, 0, kWaveInset), column), inside, 1),
               TonaroGraph(ctm, mShape.path(inside, true, step), area, kPathWidth),
               TonaroGraph()};
    if (!mShape.sweeps) mCurves->level = TonaroGraph(ctm, mShape.path(inside, false, step), area, kPathWidth);
}

NSRect TonaroToneView::opaqueRect() const { return NSInsideOfRoundedRect(bounds(), kCorner); }

void TonaroToneView::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    NSDrawRoundedRect(context, bounds(), kCorner, disabledFieldColor);
    drawGrid(context);

    updateCurves(CGContextGetCTM(context));
    mCurves->wave.draw(context, tickColor);
    mCurves->sweep.draw(context, mShape.sweeps ? controlAccentColor : disabledAccentColor);
    drawPoint(context, endPoint(), mShape.sweeps);
    mCurves->level.draw(context, controlAccentColor);
    drawPoint(context, startPoint(), true);
}
