#pragma once

/// A card: a rounded ground with a fine border, behind the views of a group.

#include "AppKit/NSView.h"

class NSBox : public NSView {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    void drawRect(NSRect dirty) override;
    NSRect opaqueRect() const override; ///< all but the border and the corners
};
