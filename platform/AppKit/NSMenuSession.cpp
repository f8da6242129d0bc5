#include "AppKit/NSMenuSession.h"

#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSLog.h"

NS_CLASS_TABLE(NSMenuSession, NSObject, "")
NS_CLASS_TABLE_END

namespace {

constexpr CGFloat kAnchorGap = 2;

/// A menu without the pointer would stay open for ever: nothing would tell it of a press elsewhere.
class NSMenuWindow final : public NSWindow {
    void backendGrabLost() override { close(); }
};

RetainPtr<NSMenuSession>& Current()
{
    // never destroyed: a menu that is open when the process ends must not look for windows that are gone
    static auto& session = *new RetainPtr<NSMenuSession>;
    return session;
}

void SendActionOf(NSMenuItem& item)
{
    const RetainPtr<NSObject> target = item.target();
    if (!target || !item.action()) return;
    if (target->respondsToSelector(item.action()))
        target->performSelector(item.action(), &item);
    else
        NSLog("menu item has the action \"%s\", which its target does not know", item.action());
}

/// `wanted` where it fits between `low` and `high`, as near as possible otherwise.
CGFloat Fitted(CGFloat wanted, CGFloat length, CGFloat low, CGFloat high)
{
    return std::max(std::min(wanted, high - length), low);
}

} // namespace

NSRect NSMenuFrame(NSSize size, NSRect anchor, NSRect screen)
{
    const CGFloat gap = CGRectIsEmpty(anchor) ? 0 : kAnchorGap;
    NSRect frame = {{anchor.origin.x, CGRectGetMaxY(anchor) + gap}, size};
    if (CGRectIsEmpty(screen)) return frame;
    frame.size.width = std::min(size.width, screen.size.width);
    frame.size.height = std::min(size.height, screen.size.height);
    const CGFloat above = anchor.origin.y - gap - size.height;
    if (CGRectGetMaxY(frame) > CGRectGetMaxY(screen) && above >= screen.origin.y) frame.origin.y = above;
    frame.origin.x = Fitted(frame.origin.x, frame.size.width, screen.origin.x, CGRectGetMaxX(screen));
    frame.origin.y = Fitted(frame.origin.y, frame.size.height, screen.origin.y, CGRectGetMaxY(screen));
    return frame;
}

NSMenuSession* NSMenuSession::current() { return Current(); }

bool NSMenuSession::begin(NSMenu& menu, const NSMenuPlacement& placement, NSView& owner, NSMenu::Completion completion)
{
    const RetainPtr<NSView> keep(&owner); // what hears of the end of another menu may remove the view
    if (const RetainPtr<NSMenuSession> other = Current()) other->end(nullptr);
    auto session = make<NSMenuSession>();
    session->mMenu = &menu;
    session->mOwner = &owner;
    session->mCompletion = std::move(completion);
    Current() = session; // first: the window may lose the pointer while it is being shown
    const bool opened = session->open(placement);
    if (!opened && Current() == session) Current() = nullptr;
    return opened;
}

bool NSMenuSession::open(const NSMenuPlacement& placement)
{
    const RetainPtr<NSWindow> parent = mOwner->window();
    if (!parent || !parent->isVisible() || mOwner->isHiddenOrHasHiddenAncestor()) return false;
    const auto rows = make<NSMenuView>(&NSMenuView::initWithItems, mMenu->itemArray(), placement.minimumWidth);
    const NSRect anchor = mOwner->convertRectToWindow(placement.anchor);
    NSRect start = anchor;
    if (placement.overAnchor) start = {{anchor.origin.x, anchor.origin.y - rows->topOfItem(placement.overAnchor)}, {}};
    const NSRect frame = NSMenuFrame(rows->frame().size, start, parent->screenFrame());

    mWindow = make<NSMenuWindow>(&NSMenuWindow::initPopUp, parent, frame);
    if (!mWindow) return false;
    rows->setFrame({{0, 0}, frame.size});
    rows->highlightItem(placement.highlighted);
    if (placement.opener) {
        const NSPoint spot = placement.opener->locationInWindow();
        rows->setOpening({spot.x - frame.origin.x, spot.y - frame.origin.y},
                         CGRectOffset(anchor, -frame.origin.x, -frame.origin.y));
    }
    // a session outlives its window's events: `end` keeps it until it has told everybody
    rows->setFinish([this](NSMenuItem* chosen) { end(chosen); });
    mWindow->setCloseHandler([this] { end(nullptr); });
    mWindow->setContentView(rows);
    mWindow->makeFirstResponder(rows);
    mWindow->orderFront();
    return true;
}

void NSMenuSession::end(NSMenuItem* chosen)
{
    if (Current() != this) return;
    const RetainPtr<NSMenuSession> self = std::exchange(Current(), nullptr);
    const RetainPtr<NSMenuItem> item = chosen;
    const NSMenu::Completion completion = std::exchange(mCompletion, nullptr);
    mWindow->setCloseHandler(nullptr);
    mWindow->close();
    if (completion) completion(item);
    if (item) SendActionOf(*item);
}
