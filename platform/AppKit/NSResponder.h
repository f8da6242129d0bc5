#pragma once

/// What receives events. What a responder doesn't handle goes to its next responder: the superview, at last the window.

#include "AppKit/NSEvent.h"

class NSResponder : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    virtual NSResponder* nextResponder() const { return nullptr; }

    virtual bool acceptsFirstResponder() const { return false; }
    virtual bool becomeFirstResponder() { return true; } ///< @return false to refuse
    virtual bool resignFirstResponder() { return true; } ///< @return false to stay
    /// Gives up what a person has begun to type here. Comes before a `resignFirstResponder` whose answer doesn't count:
    /// the window closes, or the responder is being hidden or removed.
    virtual void abortEditing() {}

    // The defaults pass the event to the next responder.
    virtual void mouseDown(NSEvent& event);
    virtual void mouseDragged(NSEvent& event);
    virtual void mouseUp(NSEvent& event);
    virtual void rightMouseDown(NSEvent& event);
    virtual void rightMouseDragged(NSEvent& event);
    virtual void rightMouseUp(NSEvent& event);
    virtual void mouseMoved(NSEvent& event);
    virtual void mouseEntered(NSEvent&) {} ///< the pointer is over this view now; not passed on
    virtual void mouseExited(NSEvent&) {}
    virtual void scrollWheel(NSEvent& event);
    virtual void keyDown(NSEvent& event);
    virtual void keyUp(NSEvent& event);
    /// The end of the chain: nobody wanted the event.
    virtual void noResponderFor(NSEvent& event);
};
