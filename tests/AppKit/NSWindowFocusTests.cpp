#include "AppKit/NSControl.h"
#include "ProbeView.h"

#include <gmock/gmock.h>

namespace {

struct FocusRig : ProbeRig {
    RetainPtr<ProbeView> a = add("a", {{0, 0}, {20, 20}});
    RetainPtr<ProbeView> b = add("b", {{30, 0}, {20, 20}});
    RetainPtr<ProbeView> c = add("c", {{60, 0}, {20, 20}});
    RetainPtr<ProbeView> part = add("part", {{5, 5}, {5, 5}}, a);

    FocusRig() { script.play("eager:a eager:b eager:c"); }
};

TEST(NSWindowFocus, GoesWhereItMay)
{
    ExpectLogs<FocusRig>({
        {"the old one may refuse to go", "focus:a keeps:a focus:b Tab press:back who",
         "a:gets a:keeps refused a:keeps a:keeps unwanted =a "},
        {"a press on who asks for no focus leaves it", "focus:a press:b who", "a:gets b:down =a "},
        {"a press on the background takes it away", "focus:a press:back who", "a:gets a:loses unwanted =window "},
        {"a view that is hidden gives up, whatever it wants", "focus:a keeps:a hide:a who",
         "a:gets a:aborts a:keeps =window "},
        {"one inside of what is hidden", "focus:a keeps:a hide:back who", "a:gets a:aborts a:keeps =window "},
        {"one that is removed", "focus:a keeps:a remove:a who", "a:gets a:aborts a:keeps =window "},
        {"one whose window closes", "focus:a keeps:a close who", "a:gets a:aborts a:keeps =window "},
        {"hidden views and views that don't take it are refused", "focus:c hide:a shy:b focus:a focus:b who",
         "c:gets refused refused =c "},
        {"views of no window, too", "focus:c remove:a focus:a who", "c:gets refused =c "},
        {"what lies inside a key view is a part of it", "eager:part focus:part Tab who",
         "part:gets part:loses b:gets =b "},
    });
}

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

TEST(NSWindowFocus, ADisabledControlGivesUpTheFocus)
{
    FocusRig t;
    auto* const control = t.rig.add(make<NSControl>(NSRect{{0, 50}, {20, 20}}));
    EXPECT_TRUE(t.window()->makeFirstResponder(control));
    control->setEnabled(false);
    EXPECT_EQ(t.focus(), "window");
    EXPECT_FALSE(t.window()->makeFirstResponder(control));
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
