#include "AppKit/NSStepper.h"

#include "AppKit/ActionLog.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

TEST(NSStepperCell, StepsWithinItsRange)
{
    static const struct {
        const char* why;
        bool wraps;
        double value;
        int steps;
        double after;
    } kRows[] = {
        {"one up", false, 3, 1, 3.5},
        {"several down", false, 3, -3, 1.5},
        {"stops at the top", false, 9.75, 1, 10},
        {"stops at the bottom", false, 1, -2, 1},
        {"goes round at the top", true, 10, 1, 1},
        {"goes round at the bottom", true, 1, -1, 10},
        {"reaches the end before it goes round", true, 9.5, 1, 10},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto cell = make<NSStepperCell>();
        cell->setMinValue(1);
        cell->setMaxValue(10);
        cell->setIncrement(0.5);
        cell->setValueWraps(row.wraps);
        cell->setDoubleValue(row.value);
        EXPECT_EQ(cell->valueAfterSteps(row.steps), row.after);
    }
}

TEST(NSStepperCell, HoldsValuesWithinItsRange)
{
    const auto cell = make<NSStepperCell>();
    cell->setFloatValue(60.5F);
    EXPECT_EQ(cell->floatValue(), 59);
    cell->setDoubleValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(cell->doubleValue(), 59);
    cell->setMaxValue(10);
    EXPECT_EQ(cell->doubleValue(), 10);
    cell->setMinValue(20);
    EXPECT_EQ(cell->doubleValue(), 10); // the maximum wins
}

struct Steps : OffscreenRig {
    Steps() : stepper(add(make<NSStepper>(NSRect{{20, 20}, {24, 28}}))), log(make<ActionLog>())
    {
        log->watch(*stepper);
    }

    NSPoint up{12, 5}, down{12, 22};
    NSStepper* stepper;
    RetainPtr<ActionLog> log;
};

TEST(NSStepper, StepsByMouseKeysAndWheel)
{
    Steps rig;
    rig.press(rig.stepper, rig.up);
    rig.release();
    rig.key(NSUpArrowFunctionKey);
    rig.scroll(rig.stepper, rig.up, 2);
    rig.press(rig.stepper, rig.down);
    rig.release();
    rig.key(NSDownArrowFunctionKey);
    EXPECT_EQ(rig.log->take(), "1 2 4 3 2 ");
}

TEST(NSStepper, PartsOfANotchAddUp)
{
    Steps rig;
    for (int i = 0; i < 4; ++i) rig.scroll(rig.stepper, rig.up, 0.5);
    EXPECT_EQ(rig.log->take(), "1 2 ");
}

TEST(NSStepper, AHeldButtonRepeatsWhileThePointerIsOverIt)
{
    Steps rig;
    rig.press(rig.stepper, rig.up);
    rig.advance(0.45);
    EXPECT_EQ(rig.log->take(), "1 ");
    rig.advance(0.30); // at 0.5, 0.6 and 0.7
    EXPECT_EQ(rig.log->take(), "2 3 4 ");
    rig.dragTo(rig.stepper, rig.down);
    rig.advance(1);
    EXPECT_EQ(rig.log->take(), "");
    rig.dragTo(rig.stepper, rig.up);
    rig.advance(0.1);
    EXPECT_EQ(rig.log->take(), "5 ");
    rig.release();
    rig.advance(1);
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSStepper, RepeatsOnlyWhereItShall)
{
    Steps rig;
    rig.stepper->setAutorepeat(false);
    rig.press(rig.stepper, rig.up);
    rig.advance(2);
    EXPECT_EQ(rig.log->take(), "1 ");
    rig.release();
    rig.stepper->setAutorepeat(true);
    rig.press(rig.stepper, rig.up);
    rig.stepper->setHidden(true); // ends the press
    rig.advance(2);
    EXPECT_EQ(rig.log->take(), "2 ");
}

TEST(NSStepper, AnActionMayRemoveIt)
{
    Steps rig;
    rig.log->also = [&] { rig.stepper->removeFromSuperview(); };
    rig.press(rig.stepper, rig.up);
    rig.advance(2);
    EXPECT_EQ(rig.log->take(), "1 ");
}

TEST(NSStepper, AtAnEndNothingIsSent)
{
    Steps rig;
    rig.press(rig.stepper, rig.down);
    rig.release();
    rig.stepper->setEnabled(false);
    rig.press(rig.stepper, rig.up);
    rig.release();
    EXPECT_EQ(rig.log->take(), "");
}

} // namespace
