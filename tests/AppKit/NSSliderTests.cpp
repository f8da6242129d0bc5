#include "AppKit/NSSlider.h"

#include "Foundation/NSKeyValueBinding.h"
#include "Script.h"

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

/// Notes how each press ends, too.
class HookedSlider : public NSSlider {
public:
    void trackingDidEnd(bool byRelease) override
    {
        NSSlider::trackingDidEnd(byRelease);
        dynamic_cast<ActionLog&>(*target()).text += byRelease ? "released " : "broken ";
    }
    void setDoubleValue(double value) override
    {
        if (window() && window()->trackingView() == this) ADD_FAILURE() << "tracking sets the cell";
        NSSlider::setDoubleValue(value);
    }
};

/// With two points of travel for each unit; 0 stands at x = 10. A number in a script is a value's place;
/// "set:50" sets a value, "value" notes it.
struct Drag : ControlRig<HookedSlider> {
    explicit Drag(NSRect frame = {{20, 20}, {220, 26}}) : ControlRig(frame), slider(control)
    {
        slider->setMaxValue(100);
        script.verbs["set"] = [this](const Step& step) { slider->setDoubleValue(step.number()); };
        script.verbs["value"] = [this](const Step&) { log->text += "=" + slider->stringValue()->utf8() + " "; };
    }
    NSPoint at(double value) const override { return slider->knobCenterForValue(value); }

    NSSlider* slider;
};

TEST(NSSlider, KnobStandsWhereItsValueIs)
{
    Drag rig;
    EXPECT_EQ(rig.at(0), (NSPoint{10, 13.5}));
    EXPECT_EQ(rig.at(50), (NSPoint{110, 13.5}));
    EXPECT_EQ(rig.at(1000), (NSPoint{210, 13.5}));
    Drag tall({{0, 0}, {26, 120}});
    EXPECT_EQ(tall.at(0), (NSPoint{13.5, 110}));
    EXPECT_EQ(tall.at(100), (NSPoint{13.5, 10}));
}

TEST(NSSlider, SendsWhatAPersonDoes)
{
    ExpectLogs<Drag>({
        {"a press on the knob moves nothing", "set:50 press:117,20 drag:117,20 release value", "released =50 "},
        {"the place where it was taken stays under the pointer", "set:50 press:117,20 drag:119,5 release value",
         "51 released =51 "},
        {"a press on the track brings the knob and drags on", "press:25 drag:30 drag:99 release drag:10 value",
         "25 30 99 released =99 "},
        {"no further than its end", "press:25 drag:900,13 drag:950,13 drag:99 release value",
         "25 100 99 released =99 "},
        {"Shift moves a tenth; pressing and leaving it moves nothing",
         "press:40 drag:50 S-drag:50 S-drag:70 drag:70 drag:73 release value", "40 50 52 55 released =55 "},
        {"the wheel moves a hundredth of the range", "wheel:3 wheel:-1 wheel:-50 wheel:-1 value", "3 2 0 =0 "},
        {"hidden in a drag", "press:25 hide drag:30 release value", "25 broken =25 "},
        {"disabled in a drag", "press:80 disable drag:20 release value", "80 released =80 "},
        {"removed in a drag", "press:25 remove value", "25 broken =25 "},
        {"disabled before", "set:10 disable press:70 drag:80 release wheel:1 value", "broken =10 "},
    });
}

TEST(NSSlider, AVerticalOneRisesUpward)
{
    Drag rig({{0, 0}, {26, 120}});
    EXPECT_EQ(rig.play("press:13,110 drag:13,85 release wheel:2"), "25 released 27 ");
}

TEST(NSSlider, SendsOnceAtTheReleaseUnlessContinuous)
{
    Drag rig;
    rig.slider->setContinuous(false);
    EXPECT_EQ(rig.play("press:25 drag:60"), "");
    EXPECT_EQ(rig.slider->doubleValue(), 60);
    EXPECT_EQ(rig.play("release | press:60 release"), "60 released | released ");
}

TEST(NSSlider, SurvivesAnActionThatRemovesIt)
{
    Drag rig;
    rig.log->also = [&] { rig.slider->removeFromSuperview(); };
    EXPECT_EQ(rig.play("press:80 release"), "80 broken ");
    EXPECT_TRUE(rig.content()->subviews().empty());
}

TEST(NSSlider, WritesTheBoundValue)
{
    Drag rig;
    const auto model = make<NSMutableDictionary>();
    model->setValue(NSNumber::numberWithDouble(10).get(), "gain"_ns.get());
    rig.slider->bind(NSValueBinding, model, "gain"_ns.get());
    EXPECT_EQ(rig.slider->doubleValue(), 10);
    EXPECT_EQ(rig.play("press:75 release"), "75 released ");
    EXPECT_EQ(NSUnbox<double>(model->valueForKey("gain"_ns.get()).get()), 75);
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
