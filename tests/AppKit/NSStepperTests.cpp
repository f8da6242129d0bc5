#include "AppKit/NSStepper.h"

#include "Script.h"

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

/// A positive number in a script is the upper arrow, a negative one the lower.
struct Steps : ControlRig<NSStepper> {
    Steps() : ControlRig({{20, 20}, {24, 28}}) {}
    NSPoint at(double way) const override { return {12, way > 0 ? 5.0 : 22.0}; }
};

TEST(NSStepper, SendsWhatAPersonDoes)
{
    ExpectLogs<Steps>({
        {"mouse, keys and wheel", "press:1 release Up wheel:2 press:-1 release Down", "1 2 4 3 2 "},
        {"parts of a notch add up", "wheel:0.5 wheel:0.5 wheel:0.5 wheel:0.5", "1 2 "},
        {"a held button repeats at 0.5, 0.6 and 0.7", "press:1 wait:0.45 | wait:0.30", "1 | 2 3 4 "},
        {"while the pointer is over it", "press:1 drag:-1 wait:1 | drag:1 wait:0.1", "1 | 2 "},
        {"until its release", "press:1 wait:0.5 release | wait:1", "1 2 | "},
        {"or the press is ended", "press:1 hide wait:2", "1 "},
        {"nothing is sent at an end", "press:-1 release", ""},
        {"nor when disabled", "disable press:1 release", ""},
    });
}

TEST(NSStepper, RepeatsOnlyWhereItShall)
{
    Steps rig;
    rig.control->setAutorepeat(false);
    EXPECT_EQ(rig.play("press:1 wait:2"), "1 ");
}

TEST(NSStepper, AnActionMayRemoveIt)
{
    Steps rig;
    rig.log->also = [&] { rig.control->removeFromSuperview(); };
    EXPECT_EQ(rig.play("press:1 wait:2"), "1 ");
}

} // namespace
