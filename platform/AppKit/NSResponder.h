#pragma once

/// What receives events. What a responder doesn't handle goes to its next responder: the superview, at last the window.

#include "AppKit/NSEvent.h"

class NSMenu;

class NSResponder : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    virtual NSResponder* nextResponder() const { return nullptr; }

    virtual bool acceptsFirstResponder() const { return false; }
    virtual bool becomeFirstResponder() { return true; } ///< @return false to refuse
    virtual bool resignFirstResponder() { return true; } ///< @return false to stay

    // The defaults pass the event to the next responder.
    virtual void mouseDown(NSEvent& event);
    virtual void mouseDragged(NSEvent& event);
    virtual void mouseUp(NSEvent& event);
    virtual void rightMouseDown(NSEvent& event);
    virtual void mouseMoved(NSEvent& event);
    virtual void mouseEntered(NSEvent& event);
    virtual void mouseExited(NSEvent& event);
    virtual void scrollWheel(NSEvent& event);
    virtual void keyDown(NSEvent& event);
    virtual void keyUp(NSEvent& event);
    /// The end of the chain: nobody wanted the event.
    virtual void noResponderFor(NSEvent& event);
};
