#include "SliderRig.h"

#include "AppKit/NSWindow.h"
#include "Foundation/NSKeyValueBinding.h"

#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class LoggingSlider : public ZeSlider {
public:
    void valueDidChange() override { log.add("change"); }
    Log log;
};

/// What the slider passes on ends here.
class LoggingView : public NSView {
public:
    void keyDown(NSEvent&) override { log->add("passed"); }
    Log* log = nullptr;
};

/// A slider from 0 to 100 at 50, steps 2 and 10, default 25, in an off-screen window.
class ZeSliderTest : public testing::Test {
protected:
    explicit ZeSliderTest(NSRect frame = CGRectMake(10, 10, 220, 20))
    {
        window->setContentView(content);
        content->log = &log();
        slider = make<LoggingSlider>(frame);
        content->addSubview(slider);
        slider->setMaxValue(100);
        slider->setMinValue(0);
        slider->setDoubleValue(50);
        slider->setSmallStep(2);
        slider->setLargeStep(10);
        slider->setDefaultValue(25);
        target->log = &log();
        slider->setTarget(target);
        slider->setAction("changed:");
        content->log = &log();
        window->orderFront();
        log().take();
    }

    Log& log() { return slider ? slider->log : mEarly; }

    std::string press(unichar key, std::uint32_t flags = 0)
    {
        return press(NSString::string(std::u16string(1, key)), flags);
    }
    std::string press(const RetainPtr<NSString>& characters, std::uint32_t flags = 0)
    {
        slider->keyDown(*NSEvent::keyEvent(NSKeyDown, flags, 0, window, characters, characters, false));
        return log().take();
    }
    std::string mouse(NSEventType type, double value, int clicks)
    {
        const NSPoint point = slider->convertPointToWindow(slider->knobCenterForValue(value));
        window->sendEvent(*NSEvent::mouseEvent(type, point, 0, 0, window, clicks));
        return log().take();
    }
    void logNotifications()
    {
        for (const auto& [name, word] :
             {std::pair(ZeSliderMouseDownNotification, "down"), std::pair(ZeSliderMouseUpNotification, "up")})
            observers.push_back(NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
                NSString::string(name).get(), slider, [this, word = word](NSNotification&) { log().add(word); }));
    }

    const NSAutoreleasePool pool;
    std::unique_ptr<NSDisplay> display = NSMakeOffscreenDisplay();
    RetainPtr<NSWindow> window =
        make<NSWindow>(&NSWindow::initWithDisplay, display.get(), NSBackendWindowOptions{.contentSize = {300, 300}});
    RetainPtr<LoggingView> content = make<LoggingView>(CGRectMake(0, 0, 300, 300));
    RetainPtr<LoggingTarget> target = make<LoggingTarget>();
    RetainPtr<LoggingSlider> slider;
    std::vector<RetainPtr<NSObject>> observers;

private:
    Log mEarly;
};

class ZeVerticalSliderTest : public ZeSliderTest {
protected:
    ZeVerticalSliderTest() : ZeSliderTest(CGRectMake(10, 10, 20, 220)) {}
};

TEST_F(ZeSliderTest, KeysMoveByStepsAndToTheEnds)
{
    const auto moved = [this](unichar key, std::uint32_t flags = 0) {
        slider->setDoubleValue(50);
        log().take();
        return press(key, flags);
    };
    EXPECT_EQ(moved(NSUpArrowFunctionKey), "change action(52) change");
    EXPECT_EQ(moved(NSDownArrowFunctionKey), "change action(48) change");
    EXPECT_EQ(moved(NSLeftArrowFunctionKey), "change action(48) change");
    EXPECT_EQ(moved(NSRightArrowFunctionKey), "change action(52) change");
    EXPECT_EQ(moved(NSUpArrowFunctionKey, NSCommandKeyMask), "change action(100) change");
    EXPECT_EQ(moved(NSDownArrowFunctionKey, NSCommandKeyMask), "change action(0) change");
    EXPECT_EQ(moved(NSLeftArrowFunctionKey, NSCommandKeyMask), "change action(0) change");
    EXPECT_EQ(moved(NSRightArrowFunctionKey, NSCommandKeyMask), "change action(100) change");
    EXPECT_EQ(moved(NSHomeFunctionKey), "change action(100) change") << "the maximum";
    EXPECT_EQ(moved(NSEndFunctionKey), "change action(0) change") << "the minimum";
    EXPECT_EQ(moved(NSPageUpFunctionKey), "change action(60) change");
    EXPECT_EQ(moved(NSPageDownFunctionKey, NSCommandKeyMask), "change action(40) change");
}

TEST_F(ZeVerticalSliderTest, LeftRaisesAndRightLowers)
{
    EXPECT_EQ(press(NSLeftArrowFunctionKey), "change action(52) change");
    EXPECT_EQ(press(NSRightArrowFunctionKey), "change action(50) change");
    EXPECT_EQ(press(NSLeftArrowFunctionKey, NSCommandKeyMask), "change action(100) change");
    EXPECT_EQ(press(NSDownArrowFunctionKey), "change action(98) change");
}

TEST_F(ZeSliderTest, OtherKeysArePassedOnButNotOddOnes)
{
    EXPECT_EQ(press(u'x'), "passed change");
    EXPECT_EQ(press(NSBeginFunctionKey, NSCommandKeyMask), "passed change");
    EXPECT_EQ(press(NSString::string("")), "change");
    EXPECT_EQ(press(NSString::string("ab")), "change");
    EXPECT_EQ(slider->doubleValue(), 50);
}

TEST_F(ZeSliderTest, DoubleClickRestoresTheDefaultWithoutNotifications)
{
    logNotifications();
    EXPECT_EQ(mouse(NSLeftMouseDown, 50, 2), "change action(25)");
    EXPECT_EQ(mouse(NSLeftMouseUp, 50, 2), "");
    EXPECT_EQ(mouse(NSLeftMouseDown, 25, 2), "change") << "the value is the default already";
}

TEST_F(ZeSliderTest, ADragIsFramedByTheNotifications)
{
    logNotifications();
    EXPECT_EQ(mouse(NSLeftMouseDown, 50, 1), "down");
    EXPECT_EQ(window->firstResponder(), slider.get());
    EXPECT_EQ(mouse(NSLeftMouseDragged, 80, 0), "action(80)");
    EXPECT_EQ(mouse(NSLeftMouseDragged, 80, 0), "");
    EXPECT_EQ(mouse(NSLeftMouseUp, 80, 1), "up change");

    window->makeFirstResponder(nullptr);
    slider->setBecomeFirstResponderOnClick(false);
    mouse(NSLeftMouseDown, 80, 1);
    EXPECT_NE(window->firstResponder(), slider.get());
}

TEST_F(ZeSliderTest, WhateverCutsADragShortEndsItOnce)
{
    logNotifications();
    const std::pair<const char*, std::function<void()>> kEnds[] = {
        {"hidden", [this] { slider->setHidden(true); }},
        {"taken out", [this] { slider->removeFromSuperview(); }},
        {"window closed", [this] { window->close(); }},
    };
    for (const auto& [why, end] : kEnds) {
        SCOPED_TRACE(why);
        slider->setHidden(false);
        content->addSubview(slider);
        EXPECT_EQ(mouse(NSLeftMouseDown, slider->doubleValue(), 1), "down");
        end();
        EXPECT_EQ(log().take(), "up change");
    }
}

TEST_F(ZeSliderTest, ADragWhoseActionThrowsEndsToo)
{
    logNotifications();
    target->throws = true;
    for (const bool continuous : {true, false}) {
        SCOPED_TRACE(continuous);
        slider->setContinuous(continuous);
        slider->setDoubleValue(50);
        log().take();
        EXPECT_EQ(mouse(NSLeftMouseDown, 50, 1), "down");
        EXPECT_THROW(mouse(NSLeftMouseUp, 80, 1), std::runtime_error);
        EXPECT_EQ(log().take(), "action(80) up change");
    }
}

TEST_F(ZeSliderTest, APressWhoseBeginClosesTheWindowEndsToo)
{
    logNotifications();
    observers.push_back(NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
        NSString::string(ZeSliderMouseDownNotification).get(), slider, [this](NSNotification&) { window->close(); }));
    EXPECT_EQ(mouse(NSLeftMouseDown, 50, 1), "down up change");
}

TEST_F(ZeSliderTest, ADisabledOneStillPostsAndObeysDoubleClickAndKeys)
{
    logNotifications();
    slider->setEnabled(false);
    EXPECT_EQ(mouse(NSLeftMouseDown, 80, 1), "down up change");
    EXPECT_EQ(mouse(NSLeftMouseDragged, 90, 0), "");
    EXPECT_EQ(mouse(NSLeftMouseUp, 90, 1), "");
    EXPECT_NE(window->firstResponder(), slider.get());
    EXPECT_EQ(mouse(NSLeftMouseDown, 80, 2), "change action(25)");
    EXPECT_EQ(press(NSUpArrowFunctionKey), "change action(27) change");
    slider->scrollWheel(*NSEvent::scrollEvent({20, 20}, 0, 0, window, 0, 1));
    EXPECT_EQ(log().take(), "");
}

TEST_F(ZeSliderTest, TheWheelMovesBySmallSteps)
{
    const struct {
        double notchesX, notchesY;
        const char* log;
    } kRows[] = {{0, -3, "change action(44)"}, {-1, 0, "change action(46)"}, {0, 0, ""}};
    const auto turn = [this](double notchesX, double notchesY) {
        slider->scrollWheel(*NSEvent::scrollEvent({20, 20}, 0, 0, window, notchesX, notchesY));
        return log().take();
    };
    for (const auto& row : kRows) EXPECT_EQ(turn(row.notchesX, row.notchesY), row.log);
    mouse(NSLeftMouseDown, 46, 1);
    EXPECT_EQ(turn(0, 1), "") << "not while the mouse holds the knob";
}

TEST_F(ZeSliderTest, ABoundSliderGivesTheClampedValueToTheModel)
{
    const auto stored = [this](const char* keyPath, double value, const char* key) {
        const auto model = make<NSMutableDictionary>();
        const auto info =
            NSDictionary::dictionary({{NSString::string(NSObservedObjectKey).get(), model},
                                      {NSString::string(NSObservedKeyPathKey).get(), NSString::string(keyPath).get()}});
        slider->bindWithInfo(NSValueBinding, info);
        slider->setBoundObjectValue(value);
        slider->unbind(NSValueBinding);
        const auto* number = asKind<NSNumber>(model->objectForKey(key));
        return number ? number->doubleValue() : kNaN;
    };
    EXPECT_EQ(stored("level", 170, "level"), 100);
    EXPECT_EQ(stored("level", -3, "level"), 0);
    EXPECT_EQ(stored("self.level", 70, "level"), 70) << "the prefix is dropped";
    EXPECT_EQ(stored("my.self.level", 70, "my.self.level"), 70) << "it only counts in front";
    EXPECT_EQ(stored("self.self.level", 70, "self.level"), 70) << "it is dropped once";
}

TEST_F(ZeSliderTest, ABoundSliderFollowsItsModelAndSendsTheAction)
{
    const auto model = make<LevelModel>();
    model->setLevel(30);
    slider->bind(NSValueBinding, model, NSString::string("level").get());
    EXPECT_EQ(slider->doubleValue(), 30);
    log().take();
    press(NSPageUpFunctionKey);
    EXPECT_EQ(model->level(), 40);
    EXPECT_EQ(slider->doubleValue(), 40);
    slider->setBoundObjectValue(kNaN);
    EXPECT_TRUE(std::isnan(model->level())) << "a not-a-number passes the clamp";
    EXPECT_EQ(slider->doubleValue(), 40);
}

TEST_F(ZeSliderTest, ABindingThatLacksItsPartsChangesNothing)
{
    const auto path = NSString::string(NSObservedKeyPathKey);
    slider->bindWithInfo(NSValueBinding, NSDictionary::dictionary({{path, NSString::string("level").get()}}).get());
    slider->setBoundObjectValue(70);
    EXPECT_EQ(log().take(), "action(50)");
    slider->setBoundObjectValue(50);
    EXPECT_EQ(log().take(), "");
}

TEST_F(ZeSliderTest, AnUnboundSliderTakesTheNearestEnd)
{
    slider->setBoundObjectValue(170);
    EXPECT_EQ(log().take(), "change action(100)");
    slider->setBoundObjectValue(100);
    EXPECT_EQ(log().take(), "change");
}

TEST(ZeSlider, IsItsOwnTargetUntilItHasOne)
{
    const auto slider = make<LoggingSlider>(CGRectMake(0, 0, 100, 20));
    slider->sendAction(slider->action(), slider->target());
    EXPECT_EQ(slider->log.take(), "change");
    slider->changeValueBy(slider->smallStep());
    EXPECT_EQ(slider->doubleValue(), slider->defaultValue() + 1);
}

} // namespace
