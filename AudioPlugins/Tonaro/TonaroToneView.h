#pragma once

/// A picture of the tone: the path of its frequency over its length, the wave behind it. Where the tone doesn't sweep,
/// the path to the end frequency is grey. Its end points can be dragged: each drag is one gesture.

#include "AppKit/NSView.h"
#include "Foundation/NSClass.h"
#include "TonaroGraph.h"
#include "TonaroToneShape.h"
#include "TonaroUnitFollower.h"
#include "TonaroUnitListener.h"

#include <memory>
#include <optional>

class TonaroToneView final : public NSView, public TonaroUnitFollower {
public:
    NS_CLASS(TonaroToneView)

    void setAU(AudioUnit unit) override;

    const TonaroToneShape& shape() const { return mShape; }
    NSPoint startPoint() const; ///< in this view's coordinates
    NSPoint endPoint() const;

    NSRect opaqueRect() const override; ///< all but the corners
    void drawRect(NSRect dirty) override;
    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void trackingDidEnd(bool byRelease) override;
    bool abandonTracking() override;
    NSCursorShape cursorAtPoint(NSPoint point) const override;

private:
    struct Drag {
        AudioUnitParameterID parameter;
        CGFloat offset; ///< from the pointer to the point, points
        float before;   ///< Hz
    };

    /// What is drawn of a shape by a certain context.
    struct Curves {
        TonaroToneShape shape;
        NSSize size;
        CGAffineTransform ctm;
        TonaroGraph wave, sweep, level; ///< `level` where it doesn't sweep
    };

    CGRect plot() const;
    NSPoint pointOf(double part, double hz) const;
    std::optional<AudioUnitParameterID> parameterAt(NSPoint point) const;
    void heard(const AudioUnitEvent& event, float value);
    void show(AudioUnitParameterID parameter, float value);
    void send(float hz);
    void drawGrid(CGContextRef context) const;
    void updateCurves(const CGAffineTransform& ctm);
    void drawPoint(CGContextRef context, NSPoint center, bool isEnabled) const;

    std::unique_ptr<TonaroUnitListener> mListener;
    TonaroToneShape mShape;
    std::optional<Drag> mDrag;
    std::optional<Curves> mCurves; // as they were drawn last
};
