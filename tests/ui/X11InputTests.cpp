// What the pointer and the keyboard do to a window.
#include "ui/X11Rig.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Button = XClient::Button;
using Keys = std::vector<XClient::KeySymbol>;

class X11Input : public X11Test {
protected:
    LoggingClient client;
    std::unique_ptr<NSWindowBackend> window = makeWindow(client, {{100, 50}, {200, 100}});

    void SetUp() override
    {
        person.focus(XWindowOf(*window));
        runUntilLogged(client, "focus");
        settle(client, *window);
        client.log.clear();
    }
    std::vector<std::string> takeLog()
    {
        settle(client, *window);
        auto log = std::exchange(client.log, {});
        log.erase(std::unique(log.begin(), log.end()), log.end()); // the pointer may enter and move to one place
        return log;
    }
};

TEST_F(X11Input, PointerEventsArriveInOrder)
{
    person.moveTo({110, 60});
    person.press();
    person.moveTo({120, 65});
    EXPECT_THAT(takeLog(), ElementsAre("move 10,10", "down 10,10 x1", "drag 20,15"));
    person.moveTo({20, 10}); // outside: a drag goes on
    person.release();
    EXPECT_THAT(takeLog(), ElementsAre("drag -80,-40", "up -80,-40 x1", "exit"));
}

TEST_F(X11Input, ButtonsWheelsAndModifiers)
{
    person.moveTo({110, 60});
    person.pressKey(XKB_KEY_Control_L);
    person.press();
    person.release();
    person.releaseKey(XKB_KEY_Control_L);
    person.press(Button::middle);
    person.release(Button::middle);
    person.press(Button::right);
    person.moveTo({111, 60});
    person.release(Button::right);
    person.turnWheel(Button::wheelUp);
    person.turnWheel(Button::wheelDown);
    EXPECT_THAT(takeLog(),
                ElementsAre("move 10,10", "down 10,10 x1 control command", "up 10,10 x1 control command",
                            "right down 10,10", "right drag 11,10", "right up 11,10", "wheel 0,1", "wheel 0,-1"));
}

TEST_F(X11Input, ClicksAreCountedByTimeAndPlace)
{
    person.doubleClick({110, 60});
    person.click({150, 60}); // too far away
    EXPECT_THAT(takeLog(), ElementsAre("move 10,10", "down 10,10 x1", "up 10,10 x1", "move 10,10", "down 10,10 x2",
                                       "up 10,10 x2", "move 50,10", "down 50,10 x1", "up 50,10 x1"));
}

TEST_F(X11Input, OfManyMovesOnlyTheNewestIsDelivered)
{
    person.moveTo({110, 60});
    person.press();
    takeLog();
    for (int i = 0; i < 500; ++i) person.moveTo({110.0 + i % 100, 60});
    person.moveTo({150, 70});
    person.release();
    const auto log = takeLog();
    EXPECT_LT(log.size(), 100U);
    EXPECT_THAT(log, Contains("drag 50,20"));
    EXPECT_EQ(log.back(), "up 50,20 x1");
}

TEST_F(X11Input, KeysBecomeCharacters)
{
    const auto key = [this](XClient::KeySymbol symbol, const Keys& modifiers = {}) {
        person.key(symbol, modifiers);
        const auto log = takeLog();
        EXPECT_EQ(log.size(), 2U) << "modifiers alone say nothing: " << testing::PrintToString(log);
        return log.empty() ? "" : log.front();
    };
    EXPECT_EQ(key('a'), "key a types 'a'");
    EXPECT_EQ(key('A'), "key A types 'A' shift");
    EXPECT_EQ(key('a', {XKB_KEY_Control_L}), "key a types '' control command") << "a shortcut types nothing";
    EXPECT_EQ(key('v', {XKB_KEY_Super_L}), "key v types '' command");
    EXPECT_EQ(key('a', {XKB_KEY_Alt_L}), "key a types 'a' option");
    EXPECT_EQ(key(XKB_KEY_KP_Enter), "key 0003 pad");
    EXPECT_EQ(key(XKB_KEY_KP_Home), "key F729 pad") << "without Num Lock";
    EXPECT_EQ(key(XKB_KEY_BackSpace), "key 007F") << "the key that deletes backward";
    EXPECT_EQ(key(XKB_KEY_Delete), "key F728");
    EXPECT_EQ(key(XKB_KEY_Tab, {XKB_KEY_Shift_L}), "key 0019 shift");
    EXPECT_EQ(key(0x1000000 + 0x20AC), "key € types '€'") << "which no key had";
}

TEST_F(X11Input, NumLockTurnsThePadIntoDigits)
{
    person.key(XKB_KEY_Num_Lock);
    person.key(XKB_KEY_KP_Home);
    EXPECT_THAT(takeLog(), ElementsAre("key 7 types '7' pad", "key up 7 types '7' pad"));
}

TEST_F(X11Input, AnAccentWaitsForItsLetter)
{
    person.key(XKB_KEY_dead_acute);
    EXPECT_THAT(takeLog(), Not(Contains(testing::StartsWith("key ´"))));
    person.key('e');
    EXPECT_THAT(takeLog(), Contains("key e types 'é'"));
    person.key('e');
    EXPECT_THAT(takeLog(), Contains("key e types 'e'"));
}

TEST_F(X11Input, AHeldKeyRepeatsWithoutReleases)
{
    person.pressKey('x');
    ASSERT_TRUE(
        runUntil([&] { return std::count(client.log.begin(), client.log.end(), "key again x types 'x'") > 1; }));
    EXPECT_THAT(client.log, Not(Contains("key up x types 'x'")));
    EXPECT_EQ(client.log.front(), "key x types 'x'");
    person.releaseKey('x');
    EXPECT_THAT(takeLog(), Contains("key up x types 'x'"));
}

TEST_F(X11Input, TheFocusIsAskedForAndLost)
{
    const xcb_window_t other = person.makeWindow(600, 600, 50, 50);
    person.focus(other);
    EXPECT_TRUE(runUntilLogged(client, "no focus"));
    window->takeFocus();
    EXPECT_TRUE(runUntilLogged(client, "focus"));
}

TEST_F(X11Input, AHiddenWindowWillNotSeeTheRelease)
{
    person.moveTo({110, 60});
    person.press();
    takeLog();
    window->hide();
    EXPECT_TRUE(runUntilLogged(client, "grab lost"));
    person.release();
}

TEST_F(X11Input, AClientMayEndItsWindowInAnyCall)
{
    for (const char* last :
         {"down 10,10 x1", "up 10,10 x1", "key q types 'q'", "close", "focus", "wheel 0,1", "exit"}) {
        SCOPED_TRACE(last);
        person.moveTo({600, 600});
        LoggingClient mortal;
        auto doomed = makeWindow(mortal, {{100, 50}, {200, 100}});
        mortal.then = [&](const std::string& entry) {
            if (entry == last) doomed.reset();
        };
        const xcb_window_t id = XWindowOf(*doomed);
        person.focus(id);
        person.click({110, 60});
        person.key('q');
        person.turnWheel(Button::wheelUp);
        person.moveTo({600, 600});
        person.askToClose(id);
        EXPECT_TRUE(runUntilLogged(mortal, last));
        EXPECT_EQ(doomed, nullptr);
        EXPECT_EQ(mortal.log.back(), last);
        takeLog();
    }
}

} // namespace
