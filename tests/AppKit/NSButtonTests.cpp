#include "AppKit/NSButton.h"

#include "AppKit/ActionLog.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

namespace {

struct Clicks : OffscreenRig {
    Clicks() : button(add(make<NSButton>(NSRect{{20, 20}, {120, 26}}))), log(make<ActionLog>()) { log->watch(*button); }

    NSButton* button;
    RetainPtr<ActionLog> log;
};

TEST(NSButton, ACheckBoxChangesWithEachClick)
{
    Clicks rig;
    rig.button->setButtonType(NSSwitchButton);
    rig.click(rig.button);
    rig.click(rig.button);
    rig.key(u' '); // the click gave it the keyboard
    EXPECT_EQ(rig.log->take(), "1 0 1 ");
}

TEST(NSButton, APushButtonHasNoState)
{
    Clicks rig;
    rig.click(rig.button);
    rig.key(NSCarriageReturnCharacter);
    EXPECT_EQ(rig.log->take(), "0 0 ");
}

TEST(NSButton, AReleaseOutsideIsNoClick)
{
    Clicks rig;
    rig.button->setButtonType(NSSwitchButton);
    rig.press(rig.button, {5, 5});
    EXPECT_TRUE(rig.button->isHighlighted());
    rig.dragTo(rig.button, {5, 50});
    EXPECT_FALSE(rig.button->isHighlighted());
    rig.release();
    EXPECT_EQ(rig.log->take(), "");

    rig.press(rig.button, {5, 5});
    rig.dragTo(rig.button, {5, 50});
    rig.dragTo(rig.button, {9, 5}); // and back
    rig.release();
    EXPECT_EQ(rig.log->take(), "1 ");
    EXPECT_FALSE(rig.button->isHighlighted());
}

TEST(NSButton, AHeldKeyClicksOnceAndLooksPressedForAMoment)
{
    Clicks rig;
    rig.window()->makeFirstResponder(rig.button);
    rig.key(u' ');
    rig.key(u' ', 0, true);
    EXPECT_EQ(rig.log->take(), "0 ");
    EXPECT_TRUE(rig.button->isHighlighted());
    rig.advance(0.2);
    EXPECT_FALSE(rig.button->isHighlighted());
}

TEST(NSButton, ReturnIsNotForCheckBoxes)
{
    Clicks rig;
    rig.button->setButtonType(NSSwitchButton);
    rig.window()->makeFirstResponder(rig.button);
    EXPECT_FALSE(rig.key(NSCarriageReturnCharacter));
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSButton, ADisabledOneDoesNothing)
{
    Clicks rig;
    rig.press(rig.button, {5, 5});
    rig.button->setEnabled(false); // in the middle of a click
    rig.release();
    rig.click(rig.button);
    rig.button->performClick(nullptr);
    EXPECT_EQ(rig.log->take(), "");
    EXPECT_FALSE(rig.button->isHighlighted());
}

TEST(NSButton, AHiddenOneIsNotClicked)
{
    Clicks rig;
    rig.press(rig.button, {5, 5});
    rig.button->setHidden(true);
    rig.release();
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSButton, AValueAboveZeroIsOn)
{
    static const struct {
        double value;
        int state;
    } kRows[] = {{0, 0}, {1, 1}, {0.25, 1}, {7, 1}, {-1, 0}};
    const auto button = make<NSButton>(NSRect{{0, 0}, {100, 26}});
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.value);
        button->setFloatValue(static_cast<float>(row.value));
        EXPECT_EQ(button->state(), row.state);
        EXPECT_EQ(button->floatValue(), static_cast<float>(row.state));
    }
}

} // namespace
