#pragma once

/// A window without a display, and a person in front of it: for tests of views and controls.
///
///     OffscreenRig rig;
///     auto* slider = rig.add(make<NSSlider>(NSRect{{10, 10}, {100, 26}}));
///     rig.press(slider, {50, 13});
///     rig.dragTo(slider, {80, 13});
///     rig.release();
///     rig.key(NSTabCharacter);
///     rig.type("440");
///
/// Points are in the view's own coordinates. The clock stands still; `advance` moves it and turns the run loop.

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"

class OffscreenRig {
public:
    explicit OffscreenRig(NSSize size = {400, 300}, CGFloat scale = 1)
        : OffscreenRig(NSMakeOffscreenDisplay(scale), size)
    {
    }
    /// With a display of the test's own.
    OffscreenRig(std::unique_ptr<NSDisplay> display, NSSize size)
    {
        NSApplication::sharedApplication()->setDisplay(std::move(display));
        NSBackendWindowOptions options;
        options.contentSize = size;
        mWindow = make<NSWindow>(&NSWindow::initWithDisplay, NSApplication::sharedApplication()->display(), options);
        mContent = make<NSView>(NSRect{{0, 0}, size});
        mWindow->setContentView(mContent);
        mWindow->orderFront();
        turn();
    }
    ~OffscreenRig()
    {
        mWindow->close();
        mContent.reset();
        mWindow.reset();
        NSApplication::sharedApplication()->setDisplay(nullptr);
    }
    OffscreenRig(const OffscreenRig&) = delete;
    OffscreenRig& operator=(const OffscreenRig&) = delete;

    NSWindow* window() const { return mWindow; }
    NSView* content() const { return mContent; }

    template <typename T> T* add(const RetainPtr<T>& view)
    {
        mContent->addSubview(view);
        return view;
    }

    // --- the mouse. Each answers what NSWindow::sendEvent says.

    bool press(const NSView* view, NSPoint point, std::uint32_t flags = 0, int clickCount = 1)
    {
        return mouse(NSLeftMouseDown, view, point, flags, clickCount);
    }
    bool dragTo(const NSView* view, NSPoint point, std::uint32_t flags = 0)
    {
        return mouse(NSLeftMouseDragged, view, point, flags, 0);
    }
    /// Where the pointer is.
    bool release(std::uint32_t flags = 0) { return send(NSLeftMouseUp, flags, 1); }
    /// In the middle of the view; a double click with a `count` of 2.
    bool click(const NSView* view, int count = 1, std::uint32_t flags = 0)
    {
        const NSRect bounds = view->bounds();
        bool wanted = false;
        for (int i = 1; i <= count; ++i) {
            wanted = press(view, {CGRectGetMidX(bounds), CGRectGetMidY(bounds)}, flags, i);
            send(NSLeftMouseUp, flags, i);
        }
        return wanted;
    }
    bool rightPress(const NSView* view, NSPoint point, std::uint32_t flags = 0)
    {
        return mouse(NSRightMouseDown, view, point, flags, 1);
    }
    bool rightRelease() { return send(NSRightMouseUp, 0, 1); }
    bool moveTo(const NSView* view, NSPoint point, std::uint32_t flags = 0)
    {
        return mouse(NSMouseMoved, view, point, flags, 0);
    }
    bool scroll(const NSView* view, NSPoint point, CGFloat notchesY, std::uint32_t flags = 0)
    {
        mPointer = view->convertPointToWindow(point);
        const auto event = NSEvent::scrollEvent(mPointer, flags, CFAbsoluteTimeGetCurrent(), mWindow, 0, notchesY);
        return mWindow->sendEvent(*event);
    }

    // --- the keyboard

    /// Presses and releases a key: a character, or a function key's code. @return whether the press was wanted
    bool key(unichar character, std::uint32_t flags = 0, bool isARepeat = false)
    {
        const auto text = NSString::string(std::u16string(1, character));
        const auto press =
            NSEvent::keyEvent(NSKeyDown, flags, CFAbsoluteTimeGetCurrent(), mWindow, text, text, isARepeat);
        const bool wanted = mWindow->sendEvent(*press);
        const auto up = NSEvent::keyEvent(NSKeyUp, flags, CFAbsoluteTimeGetCurrent(), mWindow, text, text, false);
        mWindow->sendEvent(*up);
        return wanted;
    }
    void type(std::string_view utf8)
    {
        for (const char16_t unit : NSUTF16FromUTF8(utf8)) key(unit);
    }

    // --- time

    /// Does what is due now, drawing included.
    void turn() { CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false); }
    /// Lets time go by, timers on the way included.
    void advance(CFTimeInterval seconds)
    {
        const CFAbsoluteTime end = CFAbsoluteTimeGetCurrent() + seconds;
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false);
        mClock.advanceTo(std::max(end, CFAbsoluteTimeGetCurrent())); // a loop without timers returns at once
    }

    /// Red, green, blue and alpha, premultiplied, at a pixel of the window; drawn up to date.
    std::array<int, 4> pixel(std::size_t x, std::size_t y) const
    {
        const CGContextRef bitmap = mWindow->bitmap();
        const auto bytes = CGBitmapContextGetPixels(bitmap).subspan(4 * (y * CGBitmapContextGetWidth(bitmap) + x), 4);
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }

private:
    bool mouse(NSEventType type, const NSView* view, NSPoint point, std::uint32_t flags, int clickCount)
    {
        mPointer = view->convertPointToWindow(point);
        return send(type, flags, clickCount);
    }
    bool send(NSEventType type, std::uint32_t flags, int clickCount)
    {
        const auto event = NSEvent::mouseEvent(type, mPointer, flags, CFAbsoluteTimeGetCurrent(), mWindow, clickCount);
        return mWindow->sendEvent(*event);
    }

    CFManualClock mClock;
    NSAutoreleasePool mPool;
    RetainPtr<NSWindow> mWindow;
    RetainPtr<NSView> mContent;
    NSPoint mPointer;
};
