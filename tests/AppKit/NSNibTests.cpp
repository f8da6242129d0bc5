#include "AppKit/NSNib.h"

#include "AppKit/NSButton.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSPopUpButton.h"
#include "AppKit/NSSlider.h"
#include "AppKit/NSSliderCell.h"
#include "AppKit/NSStepper.h"
#include "AppKit/NSTextField.h"
#include "Support/CaughtLog.h"
#include "Support/OffscreenRig.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string theLog; // what the test classes did, in order

class NibView final : public NSView {
public:
    NS_CLASS(NibView)
    ~NibView() override { theLog += "gone(view) "; }
    Outlet<NSSlider> slider;
    Outlet<NSTextField> field;
    void moved(NSObject*) { theLog += "moved "; }
    void awakeFromNib() override
    {
        theLog += slider.get() && slider.get()->target() == this ? "awake(view) " : "awake(unconnected) ";
    }
};
NS_CLASS_TABLE(NibView, NSView, "")
    .outlet("slider", &NibView::slider).outlet("field", &NibView::field).action("moved:", &NibView::moved)
NS_CLASS_TABLE_END

class NibOwner final : public NSObject {
public:
    NS_CLASS(NibOwner)
    Outlet<NibView> view;
    void awakeFromNib() override { theLog += "awake(owner) "; }
};
NS_CLASS_TABLE(NibOwner, NSObject, "org.tonaro.nibtests")
    .outlet("view", &NibOwner::view)
NS_CLASS_TABLE_END

class NibCell final : public NSSliderCell {
public:
    NS_CLASS(NibCell)
};
NS_CLASS_TABLE(NibCell, NSSliderCell, "")
NS_CLASS_TABLE_END

class NibSlider final : public NSSlider {
public:
    NS_CLASS(NibSlider)
    bool initWithFrame(NSRect frame) override
    {
        theLog += cell() ? "frame(cell) " : "frame(no cell) ";
        return NSSlider::initWithFrame(frame);
    }
    bool initWithCoder(NSCoder& coder) override
    {
        const bool done = NSSlider::initWithCoder(coder);
        theLog += NSString::stringWithFormat("coder(%g) ", doubleValue())->utf8();
        return done;
    }
    void awakeFromNib() override { theLog += "awake(slider) "; }
};
NS_CLASS_TABLE(NibSlider, NSSlider, "")
NS_CLASS_TABLE_END

constexpr std::string_view kGood = R"(<?xml version="1.0" encoding="UTF-8"?>
<document>
  <objects>
    <customObject id="-2" customClass="NibOwner">
      <connections><outlet property="view" destination="1"/></connections>
    </customObject>
    <customObject id="-1" customClass="FirstResponder"/>
    <customObject id="-3" customClass="NSApplication"/>
    <customView id="1" customClass="NibView">
      <rect key="frame" x="7" y="9" width="200" height="100"/>
      <subviews>
        <box id="2"><rect key="frame" x="0" y="0" width="200" height="40"/>
          <subviews>
            <textField id="5" toolTip="Type here"><rect key="frame" x="10" y="5" width="50" height="20"/>
              <textFieldCell key="cell" title="dB" alignment="right" editable="YES">
                <font key="font" size="11" metaFont="smallSystem"/>
                <color key="textColor" red="1" green="0.5" blue="0" alpha="1"/>
                <numberFormatter key="formatter" minimumFractionDigits="1"/>
              </textFieldCell>
            </textField>
          </subviews>
        </box>
        <slider id="3" customClass="NibSlider"><rect key="frame" x="10" y="60" width="120" height="26"/>
          <sliderCell key="cell" minValue="-10" maxValue="10" doubleValue="2.5" continuous="NO" customClass="NibCell"/>
          <connections><action selector="moved:" target="1"/></connections>
        </slider>
        <slider id="4" customClass="NibSlider" initializer="frame"><rect key="frame" x="140" y="0" width="26" height="90"/>
          <sliderCell key="cell" maxValue="5"/>
        </slider>
        <popUpButton id="6"><rect key="frame" x="0" y="40" width="80" height="20"/>
          <popUpButtonCell key="cell"><menu key="menu"><items>
            <menuItem id="7" title="Sine"/><menuItem id="8" title="Square" state="on"/>
          </items></menu></popUpButtonCell>
        </popUpButton>
        <button id="9"><rect key="frame" x="0" y="0" width="100" height="26"/>
          <buttonCell key="cell" type="check" title="Log" state="on" enabled="NO"/></button>
        <button id="10"><rect key="frame" x="0" y="0" width="30" height="30"/>
          <buttonCell key="cell" type="push" bezelStyle="helpButton"/></button>
        <stepper id="11"><rect key="frame" x="0" y="0" width="24" height="28"/>
          <stepperCell key="cell" minValue="0.1" maxValue="3600" increment="0.25" doubleValue="2.5" valueWraps="YES"
           autorepeat="NO"/></stepper>
      </subviews>
      <connections>
        <outlet property="slider" destination="3"/>
        <outlet property="field" destination="5"/>
      </connections>
    </customView>
  </objects>
</document>
)";

struct Loaded {
    explicit Loaded(std::string_view xml, const NSBundle* bundle = nullptr)
    {
        theLog.clear();
        const CaughtLog log;
        success = NSLoadNibText(xml, "Panel.xib", bundle, owner);
        lines = log.lines;
    }
    NSAutoreleasePool pool;
    RetainPtr<NibOwner> owner = make<NibOwner>();
    bool success = false;
    std::vector<std::string> lines;
};

std::string Replaced(std::string_view text, std::string_view what, std::string_view with)
{
    std::string result(text);
    const std::size_t at = result.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? result : result.replace(at, what.size(), with);
}

TEST(NSNib, ObjectsAreMadeThenConnectedThenAwake)
{
    const Loaded nib(kGood);
    ASSERT_TRUE(nib.success);
    EXPECT_THAT(nib.lines, ElementsAre());
    EXPECT_EQ(theLog, "coder(2.5) frame(cell) awake(view) awake(slider) awake(slider) ");
    const NibView* const view = nib.owner->view.get();
    ASSERT_TRUE(view);
    NSSlider* const slider = view->slider.get();
    EXPECT_TRUE(slider->cell()->isKindOfClass<NibCell>());
    slider->sendAction(slider->action(), slider->target());
    EXPECT_THAT(theLog, testing::EndsWith("moved "));
}

TEST(NSNib, ControlsReadTheirCells)
{
    const Loaded nib(kGood);
    const auto& views = nib.owner->view.get()->subviews();
    const auto* const slider = asKind<NSSlider>(views.at(1).get());
    EXPECT_EQ(slider->minValue(), -10);
    EXPECT_EQ(slider->maxValue(), 10);
    EXPECT_FALSE(slider->isContinuous());
    const auto* const tall = asKind<NSSlider>(views.at(2).get());
    EXPECT_EQ(tall->maxValue(), 5);
    EXPECT_TRUE(tall->isVertical());

    const auto* const popUp = asKind<NSPopUpButton>(views.at(3).get());
    EXPECT_EQ(popUp->numberOfItems(), 2);
    EXPECT_EQ(popUp->titleOfSelectedItem()->utf8(), "Square");

    const auto* const check = asKind<NSButton>(views.at(4).get());
    EXPECT_EQ(check->state(), NSOnState);
    EXPECT_EQ(check->title()->utf8(), "Log");
    EXPECT_FALSE(check->isEnabled());
    EXPECT_EQ(check->focusRingBounds().size, (NSSize{18, 18})) << "the ring goes around the box";
    EXPECT_EQ(asKind<NSButton>(views.at(5).get())->focusRingBounds(), (NSRect{{3, 3}, {24, 24}}));

    const auto* const stepper = asKind<NSStepper>(views.at(6).get());
    EXPECT_EQ(stepper->minValue(), 0.1);
    EXPECT_EQ(stepper->maxValue(), 3600);
    EXPECT_EQ(stepper->increment(), 0.25);
    EXPECT_EQ(stepper->doubleValue(), 2.5);
    EXPECT_TRUE(stepper->valueWraps());
    EXPECT_FALSE(stepper->autorepeat());
}

TEST(NSNib, FramesAreTurnedOverInsideTheirSuperview)
{
    const Loaded nib(kGood);
    const NSView& view = *nib.owner->view.get();
    EXPECT_EQ(view.frame(), CGRectMake(7, 9, 200, 100));
    EXPECT_EQ(view.subviews().at(0)->frame(), CGRectMake(0, 60, 200, 40));
    EXPECT_EQ(view.subviews().at(0)->subviews().at(0)->frame(), CGRectMake(10, 15, 50, 20));
    EXPECT_EQ(view.subviews().at(1)->frame(), CGRectMake(10, 14, 120, 26));
}

TEST(NSNib, ACellReadsItsLooksAndItsFormatter)
{
    const Loaded nib(kGood);
    const NSTextField* const field = nib.owner->view.get()->field.get();
    EXPECT_EQ(field->toolTip()->utf8(), "Type here");
    EXPECT_EQ(field->cell()->alignment(), NSRightTextAlignment);
    EXPECT_EQ(CTFontGetSize(field->cell()->font()), 11);
    EXPECT_EQ(CGColorGetComponents(field->cell()->textColor()->CGColorForScale(1).get())[1], 0.5);
    field->cell()->setIntValue(3);
    EXPECT_THAT(field->stringValue()->utf8(), testing::AnyOf("3.0", "3,0")); // by the person's locale
}

TEST(NSNib, WhatIsWrongIsNamedWithItsLineAndTheRestIsLoaded)
{
    static const struct {
        const char* what;
        const char* with;
        const char* line;
    } kRows[] = {
        {"customClass=\"NibView\"", "customClass=\"Nib\"", "Panel.xib:9: unknown class “Nib”"},
        {"customClass=\"NibView\"", "customClass=\"NibOwner\"", "Panel.xib:9: the class “NibOwner” is no NSView"},
        {"customClass=\"NibCell\"", "customClass=\"NibView\"", "Panel.xib:24: the class “NibView” is no NSSliderCell"},
        {"customClass=\"NibOwner\"", "customClass=\"NibView\"", "Panel.xib:4: the owner is a NibOwner, not a NibView"},
        {"customClass=\"NibOwner\"", "customClass=\"Nobody\"", "Panel.xib:4: unknown class “Nobody”"},
        {"<box id=\"2\">", "<box id=\"2\"><frob/>", "Panel.xib:12: unknown element “frob”"},
        {"<font key", "<fount key", "Panel.xib:16: unknown element “fount”"},
        {"<box id=\"2\">", "<box id=\"3\">", "Panel.xib:23: the id “3” is used twice"},
        {"property=\"view\"", "property=\"vieww\"", "Panel.xib:5: unknown outlet “vieww” of NibOwner"},
        {"property=\"view\"", "property=\"vieww\"", "Panel.xib:4: the outlet “view” of NibOwner is not connected"},
        {"property=\"slider\" destination=\"3\"", "property=\"slider\" destination=\"99\"",
         "Panel.xib:44: no element has the id “99”"},
        {"property=\"slider\" destination=\"3\"", "property=\"slider\" destination=\"5\"",
         "Panel.xib:44: the outlet “slider” of NibView takes a NSSlider, not a NSTextField"},
        {"<outlet property=\"field\" destination=\"5\"/>", "",
         "Panel.xib:9: the outlet “field” of NibView is not connected"},
        {"<outlet property=\"field\" destination=\"5\"/>", "<binding name=\"value\"/>",
         "Panel.xib:45: unknown connection “binding”"},
        {"selector=\"moved:\"", "selector=\"move:\"", "Panel.xib:25: unknown action “move:” of NibView"},
        {"target=\"1\"", "target=\"-1\"", "Panel.xib:25: no element has the id “-1”"},
        {"minValue=\"-10\"", "minValue=\"-1O\"", "Panel.xib:24: “-1O” in “minValue” is no number"},
        {"width=\"120\"", "width=\"nan\"", "Panel.xib:23: “nan” in “width” is no number"},
        {"width=\"120\"", "width=\"1e99\"", "Panel.xib:23: “1e99” in “width” is out of range"},
        {"height=\"40\"", "height=\"-40\"", "Panel.xib:12: “-40” in “height” is out of range"},
        {"<rect key=\"frame\" x=\"0\" y=\"40\" width=\"80\" height=\"20\"/>", "",
         "Panel.xib:30: “popUpButton” has no frame"},
        {"minimumFractionDigits=\"1\"", "minimumFractionDigits=\"1.5\"",
         "Panel.xib:18: “1.5” in “minimumFractionDigits” is no integer"},
        {"editable=\"YES\"", "editable=\"yes\"", "Panel.xib:15: “yes” in “editable” is neither YES nor NO"},
        {"metaFont=\"smallSystem\"", "metaFont=\"huge\"", "Panel.xib:16: unknown font “huge”"},
        {"red=\"1\"", "name=\"mauve\"", "Panel.xib:17: can't make “color”"},
        {"<sliderCell key=\"cell\" maxValue=\"5\"/>", "<buttonCell key=\"cell\"/>",
         "Panel.xib:28: “buttonCell” is no cell of a “slider”"},
        {"<popUpButton id=\"6\">", "<menuItem/><popUpButton id=\"6\">", "Panel.xib:30: “menuItem” is no view"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.with);
        const Loaded nib(Replaced(kGood, row.what, row.with));
        EXPECT_TRUE(nib.success);
        EXPECT_THAT(nib.lines, testing::Contains(row.line));
        EXPECT_THAT(theLog, HasSubstr("coder("));
    }
}

TEST(NSNib, BrokenTextMakesNothing)
{
    for (std::size_t length = 0; length < kGood.rfind("</document>"); length += 50) {
        SCOPED_TRACE(length);
        const Loaded nib(kGood.substr(0, length));
        EXPECT_FALSE(nib.success);
        EXPECT_THAT(nib.lines, ElementsAre(testing::StartsWith("Panel.xib:")));
        EXPECT_EQ(theLog, "");
    }
    EXPECT_THAT(Loaded("<plist/>").lines, ElementsAre("Panel.xib:1: no “objects” in a “document”"));
}

TEST(NSNib, ByteDamageNeverCrashes)
{
    std::uint32_t random = 1;
    const auto next = [&random](std::size_t limit) {
        random = random * 1664525U + 1013904223U;
        return (random >> 8) % limit;
    };
    for (int round = 0; round < 300; ++round) {
        std::string text(kGood);
        for (int i = 0; i < 4; ++i) text[next(text.size())] = static_cast<char>(next(256));
        const Loaded nib(text);
    }
}

TEST(NSNib, NestingIsBounded)
{
    std::string text = "<document><objects>";
    constexpr int kLevels = 100000;
    for (int i = 0; i < kLevels; ++i) text += "<view><rect key=\"frame\"/><subviews>";
    for (int i = 0; i < kLevels; ++i) text += "</subviews></view>";
    text += "</objects></document>";
    const Loaded nib(text);
    EXPECT_THAT(nib.lines, testing::Contains("Panel.xib:1: elements lie deeper than 64"));
}

TEST(NSNib, WhatNobodyHoldsIsReleased)
{
    const Loaded nib(
        "<document><objects><view id='1' customClass='NibView'><rect key='frame'/></view></objects></document>");
    EXPECT_TRUE(nib.success);
    EXPECT_THAT(theLog, testing::EndsWith("gone(view) "));
}

class NSNibInABundle : public testing::Test {
protected:
    NSNibInABundle()
    {
        mFolder.write("Contents/Info.plist", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
                                             "<key>CFBundleIdentifier</key><string>org.tonaro.nibtests</string>"
                                             "</dict></plist>");
        mFolder.write("Contents/Resources/Panel.xib", kGood);
        mFolder.write("Contents/Resources/de.lproj/Panel.strings",
                      "\"5.title\" = \"Pegel\"; \"5.toolTip\" = \"Hier tippen\";\n"
                      "\"7.title\" = \"Sinus\"; \"3.toolTip\" = \"Neu\";");
        NSBundle::setPreferredLanguages({"de"});
        NSBundle::registerBundle(NSBundle::bundleWithPath(mFolder.path()).get());
    }
    ~NSNibInABundle() override { NSBundle::setPreferredLanguages({}); }

private:
    TemporaryFolder mFolder;
};

TEST_F(NSNibInABundle, TextsComeInTheLanguageOfThePerson)
{
    const CaughtLog log;
    const auto owner = make<NibOwner>();
    ASSERT_TRUE(NSLoadNibNamed("Panel"_ns.get(), owner));
    const NibView* const view = owner->view.get();
    EXPECT_EQ(view->field.get()->cell()->title()->utf8(), "Pegel");
    EXPECT_EQ(view->field.get()->toolTip()->utf8(), "Hier tippen");
    EXPECT_EQ(view->slider.get()->toolTip()->utf8(), "Neu");
    const auto* const popUp = asKind<NSPopUpButton>(view->subviews().at(3).get());
    EXPECT_EQ(popUp->itemTitleAtIndex(0)->utf8(), "Sinus");
    EXPECT_EQ(popUp->itemTitleAtIndex(1)->utf8(), "Square");
    EXPECT_THAT(log.lines, ElementsAre());
}

TEST_F(NSNibInABundle, AMissingDescriptionIsNamed)
{
    const CaughtLog log;
    const auto owner = make<NibOwner>();
    EXPECT_FALSE(NSLoadNibNamed("Pannel"_ns.get(), owner));
    EXPECT_THAT(log.lines, ElementsAre(testing::AllOf(HasSubstr("“Pannel”"), HasSubstr("NibOwner"))));
}

} // namespace
