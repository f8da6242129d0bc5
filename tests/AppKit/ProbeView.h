#pragma once

/// A view that writes what happens to it into a log, and does what a test tells it to.

#include "AppKit/NSWindow.h"

#include <functional>

class ProbeView final : public NSView {
public:
    static RetainPtr<ProbeView> named(const char* name, NSRect frame, std::string& log)
    {
        auto view = make<ProbeView>(frame);
        view->name = name;
        view->log = &log;
        return view;
    }

    std::string name;
    std::string* log = nullptr;
    bool takesMouse = true, tracks = false, takesFocus = false, keepsFocus = false;
    std::function<void(const char* what)> then; ///< called after the line is in the log

    void note(const char* what)
    {
        *log += name + ":" + what + " ";
        const auto call = then; // which may put another in its place
        if (call) call(what);
    }

    void mouseDown(NSEvent& event) override
    {
        if (!takesMouse) return NSView::mouseDown(event);
        if (tracks) window()->beginTracking(this);
        note("down");
    }
    void mouseDragged(NSEvent&) override { note("drag"); }
    void mouseUp(NSEvent&) override { note("up"); }
    void mouseEntered(NSEvent&) override { note("in"); }
    void mouseExited(NSEvent&) override { note("out"); }
    void scrollWheel(NSEvent&) override { note("wheel"); }
    void keyDown(NSEvent& event) override
    {
        if (event.keyCharacter() != u'k') return NSView::keyDown(event);
        note("key");
    }
    void trackingDidEnd(bool byRelease) override { note(byRelease ? "released" : "ended"); }
    bool acceptsFirstResponder() const override { return takesFocus; }
    bool becomeFirstResponder() override
    {
        note("gets");
        return true;
    }
    bool resignFirstResponder() override
    {
        note(keepsFocus ? "keeps" : "loses");
        return !keepsFocus;
    }
    void abortEditing() override { note("aborts"); }
    NSCursorShape cursorAtPoint(NSPoint) const override { return NSCursorShape::hand; }
    NSRect focusRingBounds() const override { return takesFocus ? bounds() : NSRect{}; }
};
