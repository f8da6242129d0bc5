#pragma once

/// A small note that a window shows above its views, such as a tool tip: text on a rounded ground, in lines of at most
/// `kWidest` points. Show it with `NSWindow::addOverlay`.

#include "AppKit/NSView.h"
#include "CoreText/CTLine.h"

class NSBubble final : public NSView {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    static constexpr CGFloat kWidest = 280;

    /// Takes the size that the text needs.
    virtual bool initWithText(const NSString* text);
    /// Stands below `rect` (content coordinates), above where there is no room below, and inside of `window`.
    void placeAt(NSRect rect, NSSize window);
    void drawRect(NSRect dirty) override;

private:
    std::vector<RetainPtr<CTLine>> mLines;
};
