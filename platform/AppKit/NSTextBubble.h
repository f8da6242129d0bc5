#pragma once

/// A note beside a field, pointing at it: why what was typed is refused. Lies over the window's views as an overlay and
/// takes no events.

#include "AppKit/NSView.h"
#include "Foundation/NSClass.h"

#include <string>
#include <vector>

class NSTextBubble : public NSView {
public:
    NS_CLASS(NSTextBubble)

    /// @param anchor  what the note is about, in the window's coordinates
    /// @param room    the part of the window it may cover; the note goes below the anchor, above where it doesn't fit
    bool initWithText(const NSString* text, NSRect anchor, NSRect room);
    const NSString* text() const { return mText; }

    void drawRect(NSRect dirty) override;

private:
    void breakLines(CGFloat width);

    RetainPtr<const NSString> mText;
    std::vector<std::u16string> mLines;
    CGFloat mPointerX = 0; ///< of the tip, in this view's coordinates
    bool mBelow = true;
};
