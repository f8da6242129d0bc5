#include "AppKit/NSControl.h"
#include "ProbeView.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

namespace {

struct FocusRig {
    std::string log; // views write into it until the window is gone
    OffscreenRig rig{{200, 100}};
    RetainPtr<ProbeView> a = ProbeView::named("a", {{0, 0}, {20, 20}}, log);
    RetainPtr<ProbeView> b = ProbeView::named("b", {{30, 0}, {20, 20}}, log);
    RetainPtr<ProbeView> c = ProbeView::named("c", {{60, 0}, {20, 20}}, log);

    FocusRig()
    {
        for (const auto& view : {a, b, c}) {
            view->takesFocus = true;
            rig.add(view);
        }
    }
    NSWindow* window() { return rig.window(); }
    std::string focus()
    {
        const auto* const view = asKind<ProbeView>(window()->firstResponder());
        return view ? view->name : "window";
    }
    std::string takeLog() { return std::exchange(log, {}); }
};

TEST(NSWindowFocus, TabWalksTheViewsThatTakeIt)
{
    FocusRig t;
    const auto walk = [&t](unichar key, std::uint32_t flags, int times) {
        std::string names;
        for (int i = 0; i < times; ++i) {
            t.rig.key(key, flags);
            names += t.focus();
        }
        return names;
    };
    EXPECT_EQ(walk(NSTabCharacter, 0, 4), "abca");
    EXPECT_EQ(walk(NSTabCharacter, NSShiftKeyMask, 2), "cb");
    EXPECT_EQ(walk(NSBackTabCharacter, NSShiftKeyMask, 2), "ac");
    t.a->takesFocus = false;
    EXPECT_EQ(walk(NSTabCharacter, 0, 3), "bcb");
    t.c->setHidden(true);
    EXPECT_EQ(walk(NSTabCharacter, 0, 2), "bb");
    t.b->setHidden(true);
    EXPECT_EQ(walk(NSTabCharacter, 0, 2), "windowwindow");
}

TEST(NSWindowFocus, WhatLiesInsideAKeyViewIsAPartOfIt)
{
    FocusRig t;
    const auto part = ProbeView::named("part", {{0, 0}, {5, 5}}, t.log);
    part->takesFocus = true;
    t.a->addSubview(part);
    t.window()->makeFirstResponder(part);
    EXPECT_EQ(t.focus(), "part");
    t.rig.key(NSTabCharacter);
    EXPECT_EQ(t.focus(), "b");
}

TEST(NSWindowFocus, TheOldOneMayRefuseToGo)
{
    FocusRig t;
    t.window()->makeFirstResponder(t.a);
    t.a->keepsFocus = true;
    EXPECT_FALSE(t.window()->makeFirstResponder(t.b));
    t.rig.key(NSTabCharacter);
    t.rig.press(t.rig.content(), {1, 90});
    EXPECT_EQ(t.focus(), "a");
    EXPECT_EQ(t.takeLog(), "a:gets a:keeps a:keeps a:keeps ");
}

TEST(NSWindowFocus, APressOnTheBackgroundTakesTheFocusAway)
{
    FocusRig t;
    t.window()->makeFirstResponder(t.a);
    t.rig.press(t.b, {1, 1}); // wanted by b, which asks for no focus
    EXPECT_EQ(t.focus(), "a");
    t.rig.press(t.rig.content(), {1, 90});
    EXPECT_EQ(t.focus(), "window");
}

TEST(NSWindowFocus, AFirstResponderThatGoesAwayGivesUp)
{
    static const struct {
        const char* how;
        void (*go)(FocusRig&);
    } kRows[] = {
        {"hidden", [](FocusRig& t) { t.a->setHidden(true); }},
        {"inside of what is hidden", [](FocusRig& t) { t.rig.content()->setHidden(true); }},
        {"removed", [](FocusRig& t) { t.a->removeFromSuperview(); }},
        {"its window closes", [](FocusRig& t) { t.window()->close(); }},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.how);
        FocusRig t;
        t.window()->makeFirstResponder(t.a);
        t.a->keepsFocus = true;
        t.takeLog();
        row.go(t);
        EXPECT_EQ(t.focus(), "window");
        EXPECT_EQ(t.takeLog(), "a:aborts a:keeps ");
    }
}

TEST(NSWindowFocus, ADisabledControlGivesUpTheFocus)
{
    FocusRig t;
    auto* const control = t.rig.add(make<NSControl>(NSRect{{0, 50}, {20, 20}}));
    EXPECT_TRUE(t.window()->makeFirstResponder(control));
    control->setEnabled(false);
    EXPECT_EQ(t.focus(), "window");
    EXPECT_FALSE(t.window()->makeFirstResponder(control));
}

TEST(NSWindowFocus, ViewsThatCannotHaveItAreRefused)
{
    FocusRig t;
    t.window()->makeFirstResponder(t.c);
    t.takeLog();
    t.a->setHidden(true);
    t.b->takesFocus = false;
    const auto stranger = ProbeView::named("s", {}, t.log);
    stranger->takesFocus = true;
    for (NSResponder* responder : {t.a.get(), t.b.get(), stranger.get()})
        EXPECT_FALSE(t.window()->makeFirstResponder(responder));
    EXPECT_EQ(t.focus(), "c");
    EXPECT_EQ(t.takeLog(), "");
}

TEST(NSWindowFocus, HandlersMayChooseAnother)
{
    FocusRig t;
    t.b->then = [&](const char* what) {
        if (what == std::string("gets")) t.window()->makeFirstResponder(t.c);
    };
    EXPECT_FALSE(t.window()->makeFirstResponder(t.b));
    EXPECT_EQ(t.focus(), "c");
    EXPECT_EQ(t.takeLog(), "b:gets c:gets ");

    t.c->then = [&](const char* what) {
        if (what == std::string("loses")) t.window()->makeFirstResponder(t.a);
    };
    t.b->then = nullptr;
    EXPECT_FALSE(t.window()->makeFirstResponder(t.b));
    EXPECT_EQ(t.focus(), "a");
    EXPECT_EQ(t.takeLog(), "c:loses a:gets ");
}

TEST(NSWindowFocus, AViewThatDiesOrLeavesWhileItGetsTheFocusDoesNotKeepIt)
{
    FocusRig t;
    t.a->then = [&](const char* what) {
        if (what == std::string("gets")) t.a->removeFromSuperview();
    };
    EXPECT_FALSE(t.window()->makeFirstResponder(t.a));
    EXPECT_EQ(t.focus(), "window");
}

} // namespace
