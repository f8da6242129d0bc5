// What controls take from an interface description.

#include "AppKit/NSButton.h"
#include "AppKit/NSNib.h"
#include "AppKit/NSPopUpButton.h"
#include "AppKit/NSSlider.h"
#include "AppKit/NSStepper.h"
#include "Foundation/NSClass.h"

#include <gmock/gmock.h>

namespace {

class DescribedControls : public NSObject {
public:
    NS_CLASS(DescribedControls)
    Outlet<NSView> view;
};

NS_CLASS_TABLE(DescribedControls, NSObject, "")
    .outlet("view", &DescribedControls::view) NS_CLASS_TABLE_END

    /// The only subview of the described view.
    template <typename Control>
    RetainPtr<Control> Described(const std::string& element)
{
    const auto owner = make<DescribedControls>();
    const std::string document =
        R"(<document><objects><customObject id="-2" customClass="DescribedControls">
           <connections><outlet property="view" destination="1"/></connections></customObject>
           <customView id="1"><rect key="frame" x="0" y="0" width="300" height="200"/><subviews>)" +
        element + "</subviews></customView></objects></document>";
    if (!NSLoadNibText(document, "controls.xib", nullptr, owner) || owner->view.get()->subviews().size() != 1)
        return nullptr;
    return asKind<Control>(owner->view.get()->subviews()[0].get());
}

TEST(ControlDescriptions, Slider)
{
    const auto slider = Described<NSSlider>(R"(<slider id="2"><rect key="frame" x="0" y="0" width="26" height="100"/>
        <sliderCell key="cell" continuous="NO" minValue="-120" maxValue="20" doubleValue="-12"/></slider>)");
    ASSERT_TRUE(slider);
    EXPECT_EQ(slider->minValue(), -120);
    EXPECT_EQ(slider->maxValue(), 20);
    EXPECT_EQ(slider->doubleValue(), -12);
    EXPECT_TRUE(slider->isVertical());
    EXPECT_FALSE(slider->isContinuous());
}

TEST(ControlDescriptions, Buttons)
{
    const auto check = Described<NSButton>(R"(<button id="2"><rect key="frame" x="0" y="0" width="100" height="26"/>
        <buttonCell key="cell" type="check" title="Log" state="on" enabled="NO"/></button>)");
    ASSERT_TRUE(check);
    EXPECT_EQ(check->state(), NSOnState);
    EXPECT_EQ(check->title()->utf8(), "Log");
    EXPECT_FALSE(check->isEnabled());
    EXPECT_EQ(check->focusRingBounds().size, (NSSize{18, 18})); // the ring goes around the box

    const auto help = Described<NSButton>(R"(<button id="2"><rect key="frame" x="0" y="0" width="30" height="30"/>
        <buttonCell key="cell" type="push" bezelStyle="helpButton"/></button>)");
    ASSERT_TRUE(help);
    EXPECT_EQ(help->focusRingBounds(), (NSRect{{3, 3}, {24, 24}}));
}

TEST(ControlDescriptions, Stepper)
{
    const auto stepper = Described<NSStepper>(R"(<stepper id="2"><rect key="frame" x="0" y="0" width="24" height="28"/>
        <stepperCell key="cell" minValue="0.1" maxValue="3600" increment="0.25" doubleValue="2.5" valueWraps="YES"
         autorepeat="NO"/></stepper>)");
    ASSERT_TRUE(stepper);
    EXPECT_EQ(stepper->minValue(), 0.1);
    EXPECT_EQ(stepper->maxValue(), 3600);
    EXPECT_EQ(stepper->increment(), 0.25);
    EXPECT_EQ(stepper->doubleValue(), 2.5);
    EXPECT_TRUE(stepper->valueWraps());
    EXPECT_FALSE(stepper->autorepeat());
}

TEST(ControlDescriptions, PopUpButton)
{
    const auto button = Described<NSPopUpButton>(R"(<popUpButton id="2">
        <rect key="frame" x="0" y="0" width="100" height="26"/>
        <popUpButtonCell key="cell"><menu key="menu"><items>
            <menuItem title="Sine" id="3"/><menuItem title="Square" state="on" id="4"/>
        </items></menu></popUpButtonCell></popUpButton>)");
    ASSERT_TRUE(button);
    EXPECT_EQ(button->numberOfItems(), 2);
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "Square");
}

} // namespace
