#pragma once

/// A cell that a person presses: it knows whether it is pressed and whether the pointer is over it.

#include "AppKit/NSCell.h"

class NSActionCell : public NSCell {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    bool isHighlighted() const { return mHighlighted; } ///< drawn pressed
    void setHighlighted(bool highlighted) { mHighlighted = highlighted; }
    bool isHovered() const { return mHovered; }
    void setHovered(bool hovered) { mHovered = hovered; }

private:
    bool mHighlighted = false;
    bool mHovered = false;
};
