#include "AppKit/ActionLog.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

class CountingControl final : public NSControl {
public:
    void setDoubleValue(double value) override
    {
        ++doublesSet;
        NSControl::setDoubleValue(value);
    }
    int doublesSet = 0;
};

TEST(NSCell, ItsValueReadsAsNumberAndText)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* why;
        RetainPtr<NSObject> value;
        double number;
        int integer;
        const char* text;
    } rows[] = {
        {"none", nullptr, 0, 0, ""},
        {"an integer", NSNumber::numberWithInt(-7), -7, -7, "-7"},
        {"a 32-bit float keeps its type", NSNumber::numberWithFloat(0.1F), double{0.1F}, 0, "0.1"},
        {"too large for an int", NSNumber::numberWithDouble(infinity), infinity, -1, "inf"},
        {"text that begins with a number", "440 Hz"_ns, 440, 440, "440 Hz"},
        {"other text", "Sine"_ns, 0, 0, "Sine"},
        {"an object that is neither", make<NSMenuItem>(), 0, 0, nullptr},
    };
    const auto cell = make<NSCell>();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        cell->setObjectValue(row.value);
        EXPECT_EQ(cell->doubleValue(), row.number);
        EXPECT_EQ(cell->floatValue(), static_cast<float>(row.number));
        EXPECT_EQ(cell->intValue(), row.integer);
        if (row.text) {
            EXPECT_EQ(cell->stringValue()->utf8(), row.text);
        }
    }
    cell->setDoubleValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(cell->intValue(), 0);
}

TEST(NSControl, AFloatGoesToTheCellAndNotThroughTheDoubleSetter)
{
    const auto control = make<CountingControl>(NSRect{{0, 0}, {10, 10}});
    control->setFloatValue(0.1F);
    control->setIntValue(3);
    EXPECT_EQ(control->doublesSet, 0);
    EXPECT_EQ(control->doubleValue(), 3);
}

TEST(NSControl, AnActionNeedsATargetThatStillLives)
{
    const auto control = make<NSControl>(NSRect{{0, 0}, {10, 10}});
    auto receiver = make<ActionLog>();
    const auto sends = [&] { return control->sendAction(control->action(), control->target()); };
    control->setTarget(receiver);
    EXPECT_FALSE(sends());
    receiver->watch(*control);
    EXPECT_TRUE(sends());
    EXPECT_EQ(receiver->take(), "0 ");
    receiver.reset();
    EXPECT_EQ(control->target(), nullptr);
    EXPECT_FALSE(sends());
}

} // namespace
