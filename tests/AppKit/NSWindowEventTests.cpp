#include "AppKit/NSApplication.h"
#include "ProbeView.h"
#include "RecordingDisplay.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

namespace {

/// A window with a box that holds a knob, and a neighbour.
struct EventRig {
    std::string log; // views write into it until the window is gone
    RecordedWindow record;
    OffscreenRig rig{std::make_unique<RecordingDisplay>(record), {200, 100}};
    RetainPtr<ProbeView> box = ProbeView::named("box", {{10, 10}, {100, 50}}, log);
    RetainPtr<ProbeView> knob = ProbeView::named("knob", {{20, 10}, {20, 20}}, log);
    RetainPtr<ProbeView> other = ProbeView::named("other", {{120, 10}, {50, 50}}, log);

    EventRig()
    {
        rig.add(box);
        box->addSubview(knob);
        rig.add(other);
        knob->tracks = true;
    }
    std::string takeLog()
    {
        if (!log.empty()) log.pop_back();
        return std::exchange(log, {});
    }
};

TEST(NSWindowEvents, APressGoesToTheDeepestViewAndUpwardsUntilOneWantsIt)
{
    EventRig t;
    EXPECT_TRUE(t.rig.press(t.knob, {5, 5}));
    t.rig.release();
    EXPECT_EQ(t.takeLog(), "knob:down knob:up knob:released knob:in");

    t.knob->takesMouse = false;
    EXPECT_TRUE(t.rig.press(t.knob, {5, 5}));
    EXPECT_EQ(t.takeLog(), "box:down");
    t.box->takesMouse = false;
    EXPECT_FALSE(t.rig.press(t.knob, {5, 5}));
    EXPECT_FALSE(t.rig.press(t.rig.content(), {1, 90}));
    EXPECT_EQ(t.takeLog(), "");
}

TEST(NSWindowEvents, ATrackingViewGetsDragsFromAnywhere)
{
    EventRig t;
    t.rig.press(t.knob, {5, 5});
    t.rig.dragTo(t.other, {5, 5});
    t.rig.rightPress(t.other, {5, 5});
    t.rig.rightRelease();
    t.rig.moveTo(t.other, {5, 5});
    t.rig.release();
    EXPECT_EQ(t.takeLog(), "knob:down knob:drag knob:up knob:released other:in");
    EXPECT_EQ(t.rig.window()->trackingView(), nullptr);
}

TEST(NSWindowEvents, ATrackingEndsOnceHoweverItEnds)
{
    static const struct {
        const char* how;
        void (*end)(EventRig&);
    } kRows[] = {
        {"the view is hidden", [](EventRig& t) { t.knob->setHidden(true); }},
        {"its superview is hidden", [](EventRig& t) { t.box->setHidden(true); }},
        {"the view leaves", [](EventRig& t) { t.knob->removeFromSuperview(); }},
        {"its superview leaves", [](EventRig& t) { t.box->removeFromSuperview(); }},
        {"the view moves to another place", [](EventRig& t) { t.other->addSubview(t.knob); }},
        {"the content is replaced", [](EventRig& t) { t.rig.window()->setContentView(nullptr); }},
        {"the window closes", [](EventRig& t) { t.rig.window()->close(); }},
        {"the window is hidden", [](EventRig& t) { t.rig.window()->orderOut(); }},
        {"the pointer is lost", [](EventRig& t) { t.record.client->backendGrabLost(); }},
        {"the native window is gone", [](EventRig& t) { t.record.client->backendDestroyed(); }},
        {"the person closes it", [](EventRig& t) { t.record.client->backendCloseRequested(); }},
        {"somebody else asks", [](EventRig& t) { t.rig.window()->endTracking(t.box); }},
        {"another press comes",
         [](EventRig& t) {
             t.rig.press(t.rig.content(), {1, 90});
         }},
        {"another view tracks",
         [](EventRig& t) {
             t.rig.window()->beginTracking(t.other);
             t.other->then = nullptr;
         }},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.how);
        EventRig t;
        t.rig.press(t.knob, {5, 5});
        row.end(t);
        t.rig.dragTo(t.knob, {6, 6});
        t.rig.window()->endTracking(t.knob);
        EXPECT_THAT(t.takeLog(), testing::StartsWith("knob:down knob:ended"));
        EXPECT_NE(t.rig.window()->trackingView(), t.knob.get());
    }
}

TEST(NSWindowEvents, ATrackingStaysWhileOtherViewsGo)
{
    EventRig t;
    t.rig.press(t.knob, {5, 5});
    t.other->setHidden(true);
    t.rig.window()->endTracking(t.other);
    t.rig.release();
    EXPECT_EQ(t.takeLog(), "knob:down knob:up knob:released knob:in");
}

TEST(NSWindowEvents, ATrackingEndsWhenTheWindowDies)
{
    std::string log;
    RetainPtr<ProbeView> view = ProbeView::named("v", {{0, 0}, {10, 10}}, log);
    const auto display = NSMakeOffscreenDisplay();
    {
        auto window = make<NSWindow>(&NSWindow::initWithDisplay, display.get(), NSBackendWindowOptions{});
        window->setContentView(view);
        window->beginTracking(view);
    }
    EXPECT_EQ(log, "v:ended ");
    EXPECT_EQ(view->window(), nullptr);
}

TEST(NSWindowEvents, HandlersMayThrow)
{
    EventRig t;
    bool throws = true;
    t.knob->then = [&](const char* what) {
        if (throws && what != std::string("down")) throw std::runtime_error(what);
    };
    t.rig.press(t.knob, {5, 5});
    EXPECT_THROW(t.rig.dragTo(t.knob, {6, 6}), std::runtime_error);
    EXPECT_EQ(t.rig.window()->trackingView(), t.knob.get());
    EXPECT_THROW(t.rig.release(), std::runtime_error);
    EXPECT_EQ(t.takeLog(), "knob:down knob:drag knob:up knob:released");

    t.rig.press(t.knob, {5, 5});
    EXPECT_THROW(t.box->removeFromSuperview(), std::runtime_error); // what trackingDidEnd threw
    EXPECT_EQ(t.takeLog(), "knob:down knob:ended");
    EXPECT_EQ(t.box->superview(), nullptr);
    EXPECT_EQ(NSApplication::sharedApplication()->currentEvent(), nullptr);

    t.rig.add(t.box);
    t.rig.press(t.knob, {5, 5});
    bool closed = false;
    t.rig.window()->setCloseHandler([&] { closed = true; });
    EXPECT_THROW(t.rig.window()->close(), std::runtime_error);
    EXPECT_TRUE(closed);
    EXPECT_EQ(t.record.client, nullptr);
}

TEST(NSWindowEvents, HandlersMayTakeEverythingAway)
{
    static const char* const kMoments[] = {"down", "drag", "up", "released", "in"};
    for (const char* moment : kMoments) {
        for (const bool closes : {false, true}) {
            SCOPED_TRACE(std::string(moment) + (closes ? " closes" : " removes"));
            EventRig t;
            t.knob->then = [&](const char* what) {
                if (what != std::string(moment)) return;
                t.knob->then = nullptr;
                if (closes)
                    t.rig.window()->close();
                else
                    t.rig.content()->subviews().front()->removeFromSuperview();
                t.box = nullptr;
            };
            t.rig.press(t.knob, {5, 5});
            t.rig.dragTo(t.rig.content(), {35, 25});
            t.rig.release();
            t.rig.turn();
            EXPECT_EQ(t.rig.window()->trackingView(), nullptr);
            const std::string log = t.takeLog();
            EXPECT_EQ(log.find("ended") != std::string::npos, log.find("released") == std::string::npos) << log;
        }
    }
}

TEST(NSWindowEvents, ATrackingThatBeginsWhileAnotherEndsIsKept)
{
    EventRig t;
    t.knob->then = [&](const char* what) {
        if (what == std::string("released")) t.rig.window()->beginTracking(t.other);
    };
    t.rig.press(t.knob, {5, 5});
    t.rig.release();
    EXPECT_EQ(t.rig.window()->trackingView(), t.other.get());
    t.rig.release();
    EXPECT_THAT(t.takeLog(), testing::HasSubstr("other:up other:released"));
}

TEST(NSWindowEvents, ThePointerEntersAndLeaves)
{
    EventRig t;
    t.rig.moveTo(t.knob, {5, 5});
    t.rig.moveTo(t.knob, {6, 6});
    t.rig.moveTo(t.box, {1, 1});
    t.rig.moveTo(t.rig.content(), {1, 90});
    EXPECT_EQ(t.takeLog(), "knob:in knob:out box:in box:out");
    EXPECT_THAT(t.record.cursors, testing::ElementsAre(NSCursorShape::hand, NSCursorShape::arrow));

    t.rig.moveTo(t.knob, {5, 5});
    t.box->setHidden(true);
    t.rig.moveTo(t.box, {1, 1});
    EXPECT_EQ(t.takeLog(), "knob:in knob:out");
}

TEST(NSWindowEvents, TheWheelGoesToTheViewUnderThePointer)
{
    EventRig t;
    EXPECT_TRUE(t.rig.scroll(t.knob, {5, 5}, 1));
    EXPECT_FALSE(t.rig.scroll(t.rig.content(), {1, 90}, 1));
    EXPECT_EQ(t.takeLog(), "knob:wheel");
}

TEST(NSWindowEvents, TheCurrentEventIsTheInnermost)
{
    EventRig t;
    NSApplication* const application = NSApplication::sharedApplication();
    std::vector<NSEventType> seen;
    t.box->then = [&](const char* what) {
        if (what != std::string("down")) return;
        seen.push_back(application->currentEvent()->type());
        t.rig.key(u'k');
        seen.push_back(application->currentEvent()->type());
        EXPECT_EQ(application->currentEvent()->window(), t.rig.window());
    };
    t.box->takesFocus = true;
    t.rig.window()->makeFirstResponder(t.knob);
    t.rig.press(t.box, {1, 1});
    EXPECT_THAT(seen, testing::ElementsAre(NSLeftMouseDown, NSLeftMouseDown));
    EXPECT_EQ(application->currentEvent(), nullptr);
}

TEST(NSWindowEvents, KeysGoUpFromTheFirstResponder)
{
    EventRig t;
    t.knob->takesFocus = true;
    EXPECT_FALSE(t.rig.key(u'k')); // the window has it
    t.rig.window()->makeFirstResponder(t.knob);
    t.takeLog();
    EXPECT_TRUE(t.rig.key(u'k'));
    EXPECT_FALSE(t.rig.key(u'x'));
    EXPECT_EQ(t.takeLog(), "knob:key");
}

TEST(NSWindowEvents, APressAsksForTheKeyboard)
{
    EventRig t;
    t.rig.press(t.knob, {5, 5});
    EXPECT_EQ(t.record.calls, "");
    t.record.client->backendFocusChanged(false);
    t.rig.press(t.knob, {5, 5});
    EXPECT_EQ(t.record.calls, "focus ");
}

} // namespace
