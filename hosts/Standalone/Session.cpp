#include "Standalone/Session.h"

#include "AppKit/NSApplication.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Standalone/Settings.h"
#include "TonaroCocoaViewFactory.h"

namespace {

constexpr CGFloat kLayerShift = 24; ///< points between windows that lie over each other

/// A view with `upper` above `lower`, as wide as `lower`. Tab reaches `lower` first.
RetainPtr<NSView> stacked(NSView& upper, NSView& lower)
{
    const NSSize size = lower.frame().size;
    const CGFloat height = upper.frame().size.height;
    auto both = make<NSView>(CGRectMake(0, 0, size.width, height + size.height));
    lower.setFrame(CGRectMake(0, height, size.width, size.height));
    upper.setFrame(CGRectMake(0, 0, size.width, height));
    both->addSubview(&lower);
    both->addSubview(&upper);
    return both;
}

} // namespace

void UnitTrace::gestureBegan(AudioUnitParameterID parameter)
{
    std::fprintf(mFile, "begin %u\n", parameter);
    std::fflush(mFile);
}

void UnitTrace::parameterSet(AudioUnitParameterID parameter, float requested)
{
    std::fprintf(mFile, "set %u %s\n", parameter, shortestText(requested).c_str());
    std::fflush(mFile);
}

void UnitTrace::gestureEnded(AudioUnitParameterID parameter)
{
    std::fprintf(mFile, "end %u\n", parameter);
    std::fflush(mFile);
}

Session::Session(const Options& options)
{
    applySettings(mUnit, options.settings);
    if (options.trace) mUnit.setObserver(&mTrace);
    mPlayer.setChangeHandler([this] { updateTransports(); });
}

Session::~Session()
{
    mLastClosed = nullptr;
    while (!mWindows.empty()) mWindows.back().window->close();
    mUnit.setObserver(nullptr);
}

NSWindow* Session::openEditor(double scale)
{
    const NSAutoreleasePool pool; // the factory's view belongs to the window alone when this returns
    const auto factory = make<TonaroCocoaViewFactory>();
    NSView* view = factory->uiViewForAudioUnit(&mUnit, {});
    if (!view) throw InputError{"the editor can't be opened"};

    const auto transport = make<Transport>(&Transport::initWithPlayer, &mPlayer);
    if (!transport) throw InputError{"the strip above the editor can't be opened"};
    const RetainPtr<NSView> content = stacked(*transport->view(), *view);
    NSBackendWindowOptions options;
    options.contentSize = content->frame().size;
    options.scale = scale;
    options.origin = placeForNext(options.contentSize);
    const auto window =
        make<NSWindow>(&NSWindow::initWithDisplay, NSApplication::sharedApplication()->display(), options);
    if (!window) throw InputError{"the window can't be opened"};
    window->setTitle(NSString::string("Tonaro").get());
    window->setContentView(content);
    window->setCloseHandler([this, closed = window.get()] { forget(closed); });
    mWindows.push_back({window, RetainPtr<TonaroCocoaView>(asKind<TonaroCocoaView>(view)), transport});
    return window;
}

NSPoint Session::placeForNext(NSSize size) const
{
    if (mWindows.empty()) return {};
    const NSSize screen = mWindows.front().window->screenFrame().size;
    const auto fitting = [](CGFloat room, CGFloat length) {
        return std::max<std::int64_t>(1, NSTruncate(room / length));
    };
    const std::int64_t columns = fitting(screen.width, size.width), rows = fitting(screen.height, size.height);
    const auto count = static_cast<std::int64_t>(mWindows.size());
    const std::int64_t cell = count % (columns * rows), layer = count / (columns * rows);
    const std::int64_t column = cell % columns, row = cell / columns;
    const CGFloat shift = kLayerShift * static_cast<CGFloat>(layer);
    return {static_cast<CGFloat>(column) * size.width + shift, static_cast<CGFloat>(row) * size.height + shift};
}

TonaroCocoaView* Session::editor(std::size_t index) const { return mWindows.at(index).editor; }

void Session::forget(NSWindow* window)
{
    std::erase_if(mWindows, [window](const OpenEditor& open) { return open.window == window; });
    if (mWindows.empty() && mLastClosed) mLastClosed();
}

void Session::updateTransports()
{
    for (const OpenEditor& open : mWindows) open.transport->update();
}
