#pragma once

/// What a window needs of a window system. Two implementations: X11, and an off-screen one that tests, screenshots and
/// machines without a display use. Nothing here knows what a view is.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSCursor.h"
#include "AppKit/NSEvent.h"
#include "CoreGraphics/CGContext.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

/// Pixels of a content of `points` at `scale` pixels a point; what both sides of this seam reckon with. At least 1
/// by 1.
inline CGSize NSPixelSize(NSSize points, CGFloat scale)
{
    return {std::max(1.0, std::round(points.width * scale)), std::max(1.0, std::round(points.height * scale))};
}

/// Id of a window in the window system; 0 for none.
using NSNativeWindow = std::uintptr_t;

/// What the window system tells a window. Every call may destroy the backend that makes it.
class NSWindowBackendClient {
public:
    virtual void backendEvent(NSEvent& event) = 0; ///< whose window is filled in by the client
    virtual void backendResized(NSSize points, CGFloat scale) = 0;
    virtual void backendExposed() = 0; ///< the pixels on the screen were lost
    virtual void backendFocusChanged(bool focused) = 0;
    virtual void backendCloseRequested() = 0;
    virtual void backendGrabLost() = 0;  ///< a press will not be followed by its release
    virtual void backendDestroyed() = 0; ///< the native window is gone (its parent was destroyed)

protected:
    ~NSWindowBackendClient() = default;
};

class NSWindowBackend {
public:
    virtual ~NSWindowBackend() = default;
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual void setTitle(const NSString* title) = 0;
    virtual void setContentSize(NSSize points) = 0; ///< fixed size: the window can't be resized by hand
    virtual CGFloat backingScale() const = 0;
    /// Shows these pixels of `bitmap` (device rectangles); the bitmap is as large as the content.
    virtual void present(CGContextRef bitmap, std::span<const CGRect> pixelRects) = 0;
    virtual void setCursor(NSCursorShape shape) = 0;
    virtual void takeFocus() = 0; ///< asks for the keyboard
    virtual NSNativeWindow nativeWindow() const = 0;
    /// The part of the screen that may be covered, in points from the top left of this window's content.
    virtual NSRect screenFrame() const = 0;
};

struct NSBackendWindowOptions {
    NSSize contentSize;        ///< points
    CGFloat scale = 0;         ///< pixels per point; 0 asks the desktop
    NSNativeWindow parent = 0; ///< embeds the window there
    NSPoint origin{};          ///< points, from the top left of the screen; a window manager may know better
};

/// A connection to a window system.
class NSDisplay {
public:
    virtual ~NSDisplay() = default;
    virtual std::unique_ptr<NSWindowBackend> makeWindow(NSWindowBackendClient& client,
                                                        const NSBackendWindowOptions& options) = 0;
    /// A window above `parent` that no window manager touches, at `frame` (points, from the top left of the parent's
    /// content). While it is shown it holds pointer and keyboard; presses outside arrive with a location outside, and
    /// `backendGrabLost` when the grab breaks.
    virtual std::unique_ptr<NSWindowBackend> makePopUp(NSWindowBackendClient& client, NSWindowBackend& parent,
                                                       NSRect frame) = 0;
    virtual void setClipboardText(const NSString* text) = 0;
    /// Calls back once, at once or later; with null when there is no text.
    virtual void readClipboardText(std::function<void(const NSString*)> callback) = 0;
    /// What the desktop wants programs to look like; light where it doesn't say.
    virtual NSAppearanceName appearance() const { return NSAppearanceName::light; }
    /// Called from the run loop after `appearance` changed; null ends that.
    virtual void setAppearanceHandler(const std::function<void()>& /*changed*/) {}
};

/// Windows that exist only in memory. A window has the keyboard while it is shown. `scale` is what a window gets that
/// doesn't ask for another.
std::unique_ptr<NSDisplay> NSMakeOffscreenDisplay(CGFloat scale = 1);
