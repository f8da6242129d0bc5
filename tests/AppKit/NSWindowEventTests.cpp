#include "AppKit/NSApplication.h"
#include "ProbeView.h"

#include <gmock/gmock.h>

namespace {

/// A box that holds a knob, and a neighbour.
struct EventRig : ProbeRig {
    RetainPtr<ProbeView> box = add("box", {{10, 10}, {100, 50}});
    RetainPtr<ProbeView> knob = add("knob", {{20, 10}, {20, 20}}, box);
    RetainPtr<ProbeView> other = add("other", {{120, 10}, {50, 50}});

    EventRig() { knob->tracks = true; }
};

TEST(NSWindowEvents, GoToTheirView)
{
    ExpectLogs<EventRig>({
        {"a press goes to the deepest view", "press:knob release", "knob:down knob:up knob:released knob:in "},
        {"and upwards until one wants it", "deaf:knob press:knob", "box:down "},
        {"or nobody does", "deaf:knob deaf:box press:knob press:back", "unwanted unwanted "},
        {"a tracking view gets drags from anywhere", "press:knob drag:other rightClick:other move:other release",
         "knob:down knob:drag knob:up knob:released other:in "},
        {"also while other views go", "press:knob hide:other untrack:other release",
         "knob:down knob:up knob:released knob:in "},
        {"the pointer enters and leaves", "move:knob move:knob move:box move:back", "knob:in knob:out box:in box:out "},
        {"and leaves what is hidden", "move:knob hide:box move:box", "knob:in knob:out "},
        {"the wheel goes to the view under the pointer", "wheel:knob wheel:back", "knob:wheel unwanted "},
        {"keys go up from the first responder", "k eager:knob focus:knob k x", "unwanted knob:gets knob:key unwanted "},
    });
}

TEST(NSWindowEvents, ThePointerHasTheShapeOfItsView)
{
    EventRig t;
    t.play("move:knob move:box move:back");
    EXPECT_THAT(t.record.cursors, testing::ElementsAre(NSCursorShape::hand, NSCursorShape::arrow));
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
        {"another press comes", [](EventRig& t) { t.script.play("press:back"); }},
        {"another view tracks", [](EventRig& t) { t.rig.window()->beginTracking(t.other); }},
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
    EXPECT_EQ(t.takeLog(), "knob:down knob:drag knob:up knob:released ");

    t.rig.press(t.knob, {5, 5});
    EXPECT_THROW(t.box->removeFromSuperview(), std::runtime_error); // what trackingDidEnd threw
    EXPECT_EQ(t.takeLog(), "knob:down knob:ended ");
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
    t.play("press:knob release");
    EXPECT_EQ(t.rig.window()->trackingView(), t.other.get());
    EXPECT_THAT(t.play("release"), testing::HasSubstr("other:up other:released"));
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
