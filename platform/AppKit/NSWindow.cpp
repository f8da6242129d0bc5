#include "AppKit/NSWindow.h"

#include "AppKit/NSApplication.h"
#include "AppKit/NSDrawingPace.h"
#include "AppKit/NSFirstFailure.h"
#include "AppKit/NSMenu.h"
#include "AppKit/NSToolTipTracker.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSNotification.h"

NS_CLASS_TABLE(NSWindow, NSResponder, "")
NS_CLASS_TABLE_END

NSWindow::NSWindow() = default;
NSWindow::~NSWindow() = default;

bool NSWindow::initWithDisplay(NSDisplay* display, const NSBackendWindowOptions& options)
{
    return display && start(display->makeWindow(*this, options), options.contentSize);
}

bool NSWindow::initPopUp(NSWindow* parent, NSRect frame)
{
    NSDisplay* const display = NSApplication::sharedApplication()->display();
    if (!display || !parent || !parent->mBackend) return false;
    return start(display->makePopUp(*this, *parent->mBackend, frame), frame.size);
}

bool NSWindow::start(std::unique_ptr<NSWindowBackend> backend, NSSize size)
{
    mBackend = std::move(backend);
    if (!mBackend || mClosed) return false;
    mSize = size;
    mScale = mBackend->backingScale();
    mToolTips = std::make_unique<NSToolTipTracker>(*this);
    NSDrawingPace::current(); // comes before the windows
    mObserver = CFRunLoopAddBeforeWaiting(CFRunLoopGetCurrent(), [this] { displayAtPace(); });
    const auto redraw = [this](NSNotification&) { setNeedsDisplayInRect({{0, 0}, mSize}); };
    mAppearanceObserver = NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
        NSString::string(NSAppearanceDidChangeNotification).get(), nullptr, redraw);
    NSApplication::sharedApplication()->mWindows.push_back(this);
    return init();
}

void NSWindow::dealloc()
{
    NSFirstFailure failure;
    failure.attempt([this] { stop(); });
    if (mContentView) failure.attempt([this] { mContentView->moveToWindow(nullptr); });
    for (const auto& view : mOverlays) failure.attempt([&view] { view->moveToWindow(nullptr); });
    NSResponder::dealloc();
    failure.rethrow();
}

void NSWindow::close()
{
    if (mClosed) return;
    const RetainPtr<NSWindow> keep(this);
    const auto handler = std::exchange(mCloseHandler, nullptr);
    NSFirstFailure failure;
    failure.attempt([this] { stop(); });
    if (handler) failure.attempt(handler);
    failure.rethrow();
}

/// Ends all that goes on in the window, then the window's share in the window system.
void NSWindow::stop()
{
    if (std::exchange(mClosed, true)) return;
    NSFirstFailure failure;
    if (mContentView) {
        failure.attempt([this] { NSMenu::cancelTrackingInside(mContentView); });
        failure.attempt([this] { endTracking(); });
        failure.attempt([this] { resignFocusInside(mContentView); });
    }
    CFRunLoopRemoveBeforeWaiting(CFRunLoopGetCurrent(), mObserver);
    mAppearanceObserver.reset();
    std::erase(NSApplication::sharedApplication()->mWindows, this);
    mToolTips.reset();
    mVisible = mKey = false;
    const auto backend = std::move(mBackend); // so that nothing calls it while it goes
    if (backend) failure.attempt([&backend] { backend->hide(); });
    failure.rethrow();
}

void NSWindow::setCloseHandler(std::function<void()> handler) { mCloseHandler = std::move(handler); }

void NSWindow::setContentView(NSView* view)
{
    if (view == mContentView) return;
    const RetainPtr<NSWindow> keep(this);
    const RetainPtr<NSView> keepView(view);
    if (mContentView) {
        viewGoesAway(*mContentView);
        std::exchange(mContentView, nullptr)->moveToWindow(nullptr);
    }
    if (!view || mClosed) return;
    view->removeFromSuperview();
    mContentView = view;
    view->setFrame({{0, 0}, view->frame().size});
    view->moveToWindow(this);
    contentViewResized();
}

void NSWindow::contentViewResized()
{
    mSize = mContentView->frame().size;
    mBitmap.reset();
    markDirty({{0, 0}, mSize});
    if (mBackend) mBackend->setContentSize(mSize);
}

void NSWindow::setTitle(const NSString* title)
{
    if (mBackend) mBackend->setTitle(title);
}

NSNativeWindow NSWindow::nativeWindow() const { return mBackend ? mBackend->nativeWindow() : NSNativeWindow{0}; }
NSRect NSWindow::screenFrame() const { return mBackend ? mBackend->screenFrame() : NSRect{}; }

void NSWindow::orderFront()
{
    if (mClosed || mVisible) return;
    mVisible = true;
    setNeedsDisplayInRect({{0, 0}, mSize});
    mBackend->show();
}

void NSWindow::orderOut()
{
    if (mClosed || !mVisible) return;
    const RetainPtr<NSWindow> keep(this);
    mVisible = false;
    mBackend->hide();
    if (mToolTips) mToolTips->hide();
    if (mContentView) NSMenu::cancelTrackingInside(mContentView);
    endTracking();
}

// --- what the window system says

void NSWindow::backendResized(NSSize points, CGFloat scale)
{
    if (points == mSize && scale == mScale) return;
    mSize = points;
    mScale = scale;
    mBitmap.reset();
    setNeedsDisplayInRect({{0, 0}, mSize});
}

void NSWindow::backendFocusChanged(bool focused)
{
    if (focused == mKey || mClosed) return;
    mKey = focused;
    updateRing();
    auto* const view = asKind<NSView>(mFirstResponder.get());
    if (view) view->setNeedsDisplay(); // a caret or a selection looks different without the keyboard
}

void NSWindow::backendGrabLost()
{
    const RetainPtr<NSWindow> keep(this);
    mPressedView = nullptr;
    endTracking();
}

// --- the view tree

/// `view` is hidden now, or about to leave: whatever goes on in it ends.
void NSWindow::viewGoesAway(NSView& view)
{
    const RetainPtr<NSWindow> keep(this);
    const RetainPtr<NSView> keepView(&view);
    NSFirstFailure failure;
    failure.attempt([&view] { NSMenu::cancelTrackingInside(&view); });
    failure.attempt([this, &view] { endTracking(&view); });
    failure.attempt([this, &view] { resignFocusInside(&view); });
    if (mPressedView && mPressedView->isDescendantOf(&view)) mPressedView = nullptr;
    if (mHoveredView && mHoveredView->isDescendantOf(&view)) {
        const auto event = NSEvent::mouseEvent(NSMouseExited, {}, 0, CFAbsoluteTimeGetCurrent(), this, 0);
        failure.attempt([this, &event] { setHovered(nullptr, *event); });
    }
    failure.rethrow();
}
