#include "AppKit/NSSlider.h"

#include "AppKit/ActionLog.h"
#include "Foundation/NSKeyValueBinding.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

TEST(NSSliderCell, HoldsValuesWithinItsRange)
{
    static const struct {
        const char* why;
        double minimum, maximum, given, held;
    } kRows[] = {
        {"inside", 0, 100, 40, 40},
        {"above", 0, 100, 101, 100},
        {"below", -120, 20, -121, -120},
        {"a little above is held as given", 0, 100, 100.000001, 100.000001},
        {"a little below is held as given", 0, 100, -0.000009, -0.000009},
        {"more than a little", 0, 100, 100.00002, 100},
        {"nothing is a little in an empty range", 5, 5, 5.0000001, 5},
        {"plus infinity", 0, 100, kInfinity, 100},
        {"minus infinity", -120, 20, -kInfinity, -120},
        {"not a number leaves the old value", 0, 100, kNoNumber, 7},
        {"the maximum wins over a greater minimum", 50, 20, 60, 20},
        {"ends further apart than a number can say", -1.7e308, 1.7e308, 1.0, 1.0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto cell = make<NSSliderCell>();
        cell->setMinValue(-1000);
        cell->setMaxValue(row.maximum);
        cell->setDoubleValue(7);
        cell->setMinValue(row.minimum);
        cell->setDoubleValue(row.given);
        EXPECT_EQ(cell->doubleValue(), row.held);
    }
}

TEST(NSSliderCell, KeepsItsRangeWhenGivenNoNumber)
{
    const auto cell = make<NSSliderCell>();
    cell->setMaxValue(kInfinity);
    cell->setMinValue(kNoNumber);
    EXPECT_EQ(cell->minValue(), 0);
    EXPECT_EQ(cell->maxValue(), 1);
}

struct Drag : OffscreenRig {
    Drag() : slider(add(make<NSSlider>(NSRect{{20, 20}, {220, 26}}))), log(make<ActionLog>())
    {
        slider->setMaxValue(100);
        log->watch(*slider); // two points of travel for each unit; 0 stands at x = 10
    }
    NSPoint at(double value) const { return slider->knobCenterForValue(value); }

    NSSlider* slider;
    RetainPtr<ActionLog> log;
};

TEST(NSSlider, KnobStandsWhereItsValueIs)
{
    Drag rig;
    EXPECT_EQ(rig.at(0), (NSPoint{10, 13.5}));
    EXPECT_EQ(rig.at(50), (NSPoint{110, 13.5}));
    EXPECT_EQ(rig.at(1000), (NSPoint{210, 13.5}));
    const auto tall = make<NSSlider>(NSRect{{0, 0}, {26, 120}});
    EXPECT_TRUE(tall->isVertical());
    EXPECT_EQ(tall->knobCenterForValue(0), (NSPoint{13.5, 110}));
    EXPECT_EQ(tall->knobCenterForValue(1), (NSPoint{13.5, 10}));
}

TEST(NSSlider, APressOnTheKnobMovesNothing)
{
    Drag rig;
    rig.slider->setDoubleValue(50);
    rig.press(rig.slider, {117, 20});
    rig.dragTo(rig.slider, {117, 20});
    EXPECT_EQ(rig.log->take(), "");
    rig.dragTo(rig.slider, {119, 5}); // the place where it was taken stays under the pointer
    rig.release();
    EXPECT_EQ(rig.log->take(), "51 ");
}

TEST(NSSlider, APressOnTheTrackBringsTheKnobAndDragsOn)
{
    Drag rig;
    rig.press(rig.slider, rig.at(25));
    rig.dragTo(rig.slider, rig.at(30));
    rig.dragTo(rig.slider, {900, 13}); // far outside
    rig.dragTo(rig.slider, {950, 13}); // no further
    rig.dragTo(rig.slider, rig.at(99));
    rig.release();
    rig.dragTo(rig.slider, rig.at(10)); // nobody's drag
    EXPECT_EQ(rig.log->take(), "25 30 100 99 ");
}

TEST(NSSlider, ShiftMovesATenthOfTheWay)
{
    Drag rig;
    rig.press(rig.slider, rig.at(40));
    rig.dragTo(rig.slider, rig.at(50));
    rig.dragTo(rig.slider, rig.at(50), NSShiftKeyMask); // holding it moves nothing
    rig.dragTo(rig.slider, rig.at(70), NSShiftKeyMask);
    rig.dragTo(rig.slider, rig.at(70)); // nor does letting go
    rig.dragTo(rig.slider, rig.at(73));
    rig.release();
    EXPECT_EQ(rig.log->take(), "40 50 52 55 ");
}

TEST(NSSlider, AVerticalOneRisesUpward)
{
    OffscreenRig rig;
    auto* slider = rig.add(make<NSSlider>(NSRect{{0, 0}, {26, 120}}));
    slider->setMaxValue(100);
    const auto log = make<ActionLog>();
    log->watch(*slider);
    rig.press(slider, {13, 110}); // on the knob
    rig.dragTo(slider, {13, 85});
    rig.release();
    rig.scroll(slider, {13, 60}, 2);
    EXPECT_EQ(log->take(), "25 27 ");
}

TEST(NSSlider, SendsOnceAtTheReleaseUnlessContinuous)
{
    Drag rig;
    rig.slider->setContinuous(false);
    rig.press(rig.slider, rig.at(25));
    rig.dragTo(rig.slider, rig.at(60));
    EXPECT_EQ(rig.slider->doubleValue(), 60);
    EXPECT_EQ(rig.log->take(), "");
    rig.release();
    EXPECT_EQ(rig.log->take(), "60 ");
    rig.press(rig.slider, rig.at(60));
    rig.release();
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSSlider, TheWheelMovesAHundredthOfTheRange)
{
    Drag rig;
    rig.scroll(rig.slider, {5, 5}, 3);
    rig.scroll(rig.slider, {5, 5}, -1);
    rig.scroll(rig.slider, {5, 5}, -50);
    rig.scroll(rig.slider, {5, 5}, -1); // at the end
    EXPECT_EQ(rig.log->take(), "3 2 0 ");
}

class HookedSlider : public NSSlider {
public:
    void trackingDidEnd(bool byRelease) override
    {
        NSSlider::trackingDidEnd(byRelease);
        ends += byRelease ? "release " : "broken ";
    }
    void setDoubleValue(double) override { ADD_FAILURE() << "tracking sets the cell"; }
    std::string ends;
};

TEST(NSSlider, EveryPressEndsOnce)
{
    OffscreenRig rig;
    auto* slider = rig.add(make<HookedSlider>(NSRect{{0, 0}, {220, 26}}));
    const auto keep = RetainPtr<HookedSlider>(slider);
    rig.press(slider, {50, 13});
    rig.release();
    EXPECT_EQ(slider->ends, "release ");

    rig.press(slider, {60, 13});
    slider->setHidden(true);
    rig.release();
    EXPECT_EQ(slider->ends, "release broken ");

    slider->setHidden(false);
    slider->setEnabled(false);
    const double held = slider->doubleValue();
    rig.press(slider, {150, 13});
    rig.dragTo(slider, {160, 13});
    rig.release();
    rig.scroll(slider, {60, 13}, 1);
    EXPECT_EQ(slider->ends, "release broken broken ");
    EXPECT_EQ(slider->doubleValue(), held);

    slider->setEnabled(true);
    rig.press(slider, {60, 13});
    slider->removeFromSuperview();
    EXPECT_EQ(slider->ends, "release broken broken broken ");
}

TEST(NSSlider, SurvivesAnActionThatRemovesIt)
{
    Drag rig;
    rig.log->also = [&] { rig.slider->removeFromSuperview(); };
    rig.press(rig.slider, rig.at(80));
    rig.release();
    EXPECT_EQ(rig.log->take(), "80 ");
    EXPECT_TRUE(rig.content()->subviews().empty());
}

TEST(NSSlider, IsDisabledInMidDragWithoutMovingOn)
{
    Drag rig;
    rig.press(rig.slider, rig.at(80));
    rig.slider->setEnabled(false);
    rig.dragTo(rig.slider, rig.at(20));
    rig.release();
    EXPECT_EQ(rig.log->take(), "80 ");
}

TEST(NSSlider, WritesTheBoundValue)
{
    Drag rig;
    const auto model = make<NSMutableDictionary>();
    model->setValue(NSNumber::numberWithDouble(10).get(), "gain"_ns.get());
    rig.slider->bind(NSValueBinding, model, "gain"_ns.get());
    EXPECT_EQ(rig.slider->doubleValue(), 10);
    rig.press(rig.slider, rig.at(75));
    rig.release();
    EXPECT_EQ(NSUnbox<double>(model->valueForKey("gain"_ns.get()).get()), 75);
    EXPECT_EQ(rig.log->take(), "75 ");
}

TEST(NSSlider, ARangeIsAnnouncedAndTheValueFollowsSilently)
{
    class Scale : public NSObject {
    public:
        void observeValueForKeyPath(const NSString* keyPath, NSObject*, void*) override
        {
            seen += keyPath->utf8() + " ";
        }
        std::string seen;
    };
    Drag rig;
    rig.slider->setDoubleValue(80);
    const auto scale = make<Scale>();
    rig.slider->addObserverForKeyPath(scale, "minValue"_ns.get(), nullptr);
    rig.slider->addObserverForKeyPath(scale, "maxValue"_ns.get(), nullptr);
    rig.slider->setMaxValue(60);
    rig.slider->setMinValue(-20);
    EXPECT_EQ(scale->seen, "maxValue minValue ");
    EXPECT_EQ(rig.slider->doubleValue(), 60);
    EXPECT_EQ(rig.log->take(), "");
}

} // namespace
