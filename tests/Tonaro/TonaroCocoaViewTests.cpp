#include "EditorRig.h"

#include "Foundation/NSException.h"
#include "Foundation/NSNotification.h"

#include <cmath>
#include <limits>

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class TonaroCocoaViewTest : public EditorTest {};

TEST_F(TonaroCocoaViewTest, ShowsEveryParameterOfTheUnit)
{
    EXPECT_EQ(editor->outlet<NSPopUpButton>("mWaveformPopup").numberOfItems(), 3);
    EXPECT_EQ(editor->outlet<NSPopUpButton>("mWaveformPopup").indexOfSelectedItem(), 0);
    EXPECT_EQ(editor->text("mStartFrequencyText"), "440");
    EXPECT_NEAR(editor->start().freqValue(), 440, 1e-6);
    EXPECT_EQ(editor->text("mEndFrequencyText"), "8000");
    EXPECT_EQ(editor->outlet<NSButton>("mUseEndCheckbox").intValue(), 1);
    EXPECT_EQ(editor->outlet<NSButton>("mLogSweepCheckbox").intValue(), 0);
    EXPECT_EQ(editor->outlet<ZeGainFader>("mGainSlider").doubleValue(), -12);
    EXPECT_EQ(editor->outlet<ZeGainFader>("mGainSlider").minValue(), -120);
    EXPECT_EQ(editor->text("mGainText"), "-12.0");
    EXPECT_EQ(editor->text("mStartFreqRangeText"), "(.01 to 22050 Hz)");
    EXPECT_EQ(editor->text("mEndFreqRangeText"), "(.01 to 22050 Hz)");
    EXPECT_TRUE(scene.handler->reports.empty());
}

TEST_F(TonaroCocoaViewTest, FollowsTheUnitWithStepsThatSuitTheFrequency)
{
    const struct {
        float hz;
        double small, large;
    } kRows[] = {{99.9F, 1, 10}, {100, 10, 100}, {999.99F, 10, 100}, {1000, 100, 1000}, {kNaN, 100, 1000}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.hz);
        editor->show(kParamStartFrequency, row.hz);
        EXPECT_EQ(editor->start().smallStep(), row.small);
        EXPECT_EQ(editor->start().largeStep(), row.large);
    }
}

TEST_F(TonaroCocoaViewTest, AChangeOfTheRateChangesRangeAndLabels)
{
    for (const auto& [rate, nyquist] : {std::pair(48000, 24000), {0, 22050}, {8000, 4000}}) {
        SCOPED_TRACE(rate);
        changeRate(rate);
        for (const char* name : {"mStartFreqRangeText", "mEndFreqRangeText"})
            EXPECT_EQ(editor->text(name), "(.01 to " + std::to_string(nyquist) + " Hz)");
        for (const char* name : {"mStartFrequencySlider", "mEndFrequencySlider"}) {
            EXPECT_NEAR(editor->outlet<ZeFrequencySlider>(name).minFreqValue(), 0.01, 1e-9);
            EXPECT_NEAR(editor->outlet<ZeFrequencySlider>(name).maxFreqValue(), nyquist, 1e-6);
        }
    }
}

TEST_F(TonaroCocoaViewTest, MinusInfinityShowsForExactlyTheLowestGain)
{
    for (const auto& [gain, text] :
         {std::pair(-120.0F, "-Inf"), {-119.9F, "-119.9"}, {0.0F, "0.0"}, {-6.25F, "-6.25"}}) {
        unit.values[kParamGain] = gain;
        editor->show(kParamGain, gain);
        EXPECT_EQ(editor->text("mGainText"), text);
        EXPECT_EQ(editor->outlet<ZeGainFader>("mGainSlider").floatValue(), gain);
    }
}

TEST_F(TonaroCocoaViewTest, TheSwitchEnablesTheEndControlsTogether)
{
    for (const auto& [value, enabled] :
         {std::pair(0.0F, false), {0.5F, true}, {-1.0F, false}, {1.0F, true}, {kNaN, false}}) {
        SCOPED_TRACE(value);
        editor->show(kParamUseEnd, value);
        for (const char* name : {"mEndFrequencySlider", "mEndFrequencyText", "mLogSweepCheckbox"})
            EXPECT_EQ(editor->outlet<NSControl>(name).isEnabled(), enabled) << name;
        EXPECT_TRUE(editor->outlet<NSControl>("mEndFreqRangeText").isEnabled());
    }
}

TEST_F(TonaroCocoaViewTest, EventsThatAreNotForItLeaveItAlone)
{
    editor->show(kParamCount, 1);
    AudioUnitEvent event{kAudioUnitEvent_EndParameterChangeGesture, {.mParameter = {&unit, kParamGain, 0, 0}}};
    editor->view->_eventListener(nullptr, &event, -40);
    unit.sampleRate = 96000;
    event = {kAudioUnitEvent_PropertyChange, {.mProperty = {&unit, kPropertyInputLength, 0, 0}}};
    editor->view->_eventListener(nullptr, &event, 0);
    EXPECT_EQ(editor->text("mGainText"), "-12.0");
    EXPECT_EQ(editor->text("mStartFreqRangeText"), "(.01 to 22050 Hz)");
    EXPECT_EQ(settle(), "");
}

TEST_F(TonaroCocoaViewTest, WaveformsOutsideTheListAreIgnored)
{
    unit.lowestWaveform = 1;
    unit.values[kParamWaveform] = 2;
    open();
    const auto& popup = editor->outlet<NSPopUpButton>("mWaveformPopup");
    const struct {
        float value;
        int index;
    } kRows[] = {{3, 2}, {3.9F, 2}, {1, 0}, {4, 0}, {-1, 0}, {1e30F, 0}, {-1e30F, 0}, {kNaN, 0}, {2, 1}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.value);
        editor->show(kParamWaveform, row.value);
        EXPECT_EQ(popup.indexOfSelectedItem(), std::isnan(row.value) ? 0 : row.index);
    }
}

TEST_F(TonaroCocoaViewTest, TypedValuesAreFramedAndRoundedUpToAThousandth)
{
    const auto logged = [this](const char* field, float typed) {
        editor->enter(field, typed);
        const std::string log = unit.takeLog();
        settle();
        return log;
    };
    EXPECT_EQ(logged("mStartFrequencyText", 1000.0004F), "begin(1) set(1,1000.001) end(1)");
    EXPECT_EQ(logged("mStartFrequencyText", 440.0001F), "begin(1) set(1,440.001) end(1)");
    EXPECT_EQ(logged("mEndFrequencyText", 439.9999F), "begin(3) set(3,440) end(3)");
    EXPECT_EQ(logged("mEndFrequencyText", 1000), "begin(3) set(3,1000) end(3)");
    EXPECT_EQ(logged("mGainText", -33.333F), "begin(5) set(5,-33.333) end(5)");
}

TEST_F(TonaroCocoaViewTest, ADragIsOneGestureAndItsEchoDies)
{
    const auto& slider = editor->pressStart();
    EXPECT_EQ(unit.takeLog(), "begin(1)");
    editor->mouse(NSLeftMouseDragged, slider, MelFromHz(1000));
    EXPECT_EQ(unit.takeLog().substr(0, 6), "set(1,");
    editor->mouse(NSLeftMouseUp, slider, MelFromHz(1000));
    EXPECT_EQ(unit.takeLog(), "end(1)");
    scene.run();
    EXPECT_NEAR(unit.values[kParamStartFrequency], 1000, 0.01);
    EXPECT_EQ(editor->text("mStartFrequencyText").substr(0, 3), "100");
    settle();
    EXPECT_FALSE(AUEventListenersArePending());
    EXPECT_EQ(settle(), "");
}

TEST_F(TonaroCocoaViewTest, FallsSilentAtTheEndsOfTheRange)
{
    auto& slider = editor->start();
    for (const double end : {slider.minValue(), slider.maxValue()}) {
        SCOPED_TRACE(end);
        slider.setBoundObjectValue(end);
        EXPECT_EQ(unit.takeLog().substr(0, 6), "set(1,");
        settle();
        EXPECT_EQ(settle(), "");
    }
}

TEST_F(TonaroCocoaViewTest, ClosingTheWindowDuringADragEndsTheGesture)
{
    editor->pressStart();
    editor->window->close();
    EXPECT_EQ(unit.takeLog(), "begin(1) end(1)");
}

TEST_F(TonaroCocoaViewTest, BindingAnewDuringADragEndsTheGestureAtTheOldUnit)
{
    ScriptedUnit other;
    other.values[kParamGain] = -30;
    editor->pressStart();
    editor->view->setAU(&other);
    EXPECT_EQ(unit.takeLog(), "begin(1) end(1)");
    EXPECT_EQ(editor->text("mGainText"), "-30.0");
    editor->enter("mGainText", -20);
    EXPECT_EQ(unit.takeLog(), "");
    EXPECT_NE(other.takeLog().find("begin(5) set(5,-20) end(5)"), std::string::npos);
    editor->view->setAU(&unit);
}

TEST_F(TonaroCocoaViewTest, AnEditMayEndIt)
{
    unit.whenSet = [this] { editor->end(); };
    editor->enter("mGainText", -20);
    EXPECT_FALSE(editor->view);
    EXPECT_EQ(unit.takeLog(), "begin(5) set(5,-20) end(5)");

    open();
    unit.whenSet = [this] { editor->end(); };
    unit.values[kParamStartFrequency] = 1000;
    const AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange,
                               {.mParameter = {&unit, kParamStartFrequency, 0, 0}}};
    AUEventListenerNotify(nullptr, nullptr, &event); // the listener calls the view, whose slider answers
    EXPECT_EQ(settle(), "set(1,1000)");
    EXPECT_FALSE(editor->view);
}

TEST_F(TonaroCocoaViewTest, AnEditMayBindTheEditorAnew)
{
    ScriptedUnit other;
    unit.whenSet = [&] { editor->view->setAU(&other); };
    editor->enter("mGainText", -20);
    EXPECT_EQ(unit.takeLog(), "begin(5) set(5,-20) end(5)") << "the gesture ends at the unit at which it began";
    EXPECT_EQ(other.takeLog().find("(5"), std::string::npos);
    editor->view->setAU(&unit);
}

TEST_F(TonaroCocoaViewTest, SwitchesAndMenuSendFramedValues)
{
    editor->click(editor->outlet<NSButton>("mUseEndCheckbox"), {10, 10});
    EXPECT_EQ(unit.takeLog(), "begin(2) set(2,0) end(2)");
    EXPECT_FALSE(editor->outlet<NSControl>("mEndFrequencyText").isEnabled()) << "at once, before the event comes back";
    editor->click(editor->outlet<NSButton>("mUseEndCheckbox"), {10, 10});
    EXPECT_EQ(unit.takeLog(), "begin(2) set(2,1) end(2)");
    editor->click(editor->outlet<NSButton>("mLogSweepCheckbox"), {10, 10});
    EXPECT_EQ(unit.takeLog(), "begin(4) set(4,1) end(4)");

    auto& popup = editor->outlet<NSPopUpButton>("mWaveformPopup");
    popup.selectItemAtIndex(2);
    popup.sendAction(popup.action(), popup.target());
    EXPECT_EQ(unit.takeLog(), "begin(0) set(0,2) end(0)");
}

TEST_F(TonaroCocoaViewTest, TheHelpButtonAsksForItsTopic)
{
    std::string heard;
    const auto observer = NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
        NSString::string("ZeHelpNotification").get(), nullptr, [&heard](NSNotification& notification) {
            const auto* anchor = asKind<NSNumber>(notification.userInfo()->objectForKey("anchor"));
            heard += "help " + std::to_string(anchor->intValue());
        });
    editor->view->onHelp(nullptr);
    EXPECT_EQ(heard, "help 8");
}

TEST_F(TonaroCocoaViewTest, PaintsItsPatternInTheDirtyRectangleOnly)
{
    const auto context = CGBitmapContextCreate(8, 8);
    {
        const NSGraphicsContext::Scope scope(context);
        editor->view->drawRect(CGRectMake(2, 2, 3, 3));
    }
    const auto pixels = CGBitmapContextGetPixels(context);
    for (std::size_t y = 0; y < 8; ++y) {
        for (std::size_t x = 0; x < 8; ++x) {
            const bool inside = x >= 2 && x < 5 && y >= 2 && y < 5;
            EXPECT_EQ(pixels[(y * 8 + x) * 4 + 3], inside ? 255 : 0) << x << ' ' << y;
        }
    }
}

TEST_F(TonaroCocoaViewTest, TurnsDarkWhileItIsShown)
{
    const auto light = editor->pixels();
    NSAppearance::setCurrent(NSAppearanceName::dark);
    const auto changed = editor->pixels(), dark = Editor(&unit).pixels();
    NSAppearance::setCurrent(NSAppearanceName::light);
    EXPECT_EQ(changed, dark) << "everything follows";
    constexpr std::array<std::uint8_t, 4> kBackground = {0x1B, 0x1E, 0x23, 0xFF}; // between the pattern's dots
    EXPECT_TRUE(std::equal(kBackground.begin(), kBackground.end(), dark.begin()));
    EXPECT_EQ(editor->pixels(), light) << "and back";
}

TEST_F(TonaroCocoaViewTest, TwoEditorsFollowEachOtherAndComeToRest)
{
    const Editor &first = *editor, second(&unit);
    scene.run();
    const auto& slider = first.pressStart();
    for (int i = 0; i < 100; ++i) { // a thousand moves a second
        first.mouse(NSLeftMouseDragged, slider, MelFromHz(500 + 10 * i));
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.001, false);
    }
    first.mouse(NSLeftMouseUp, slider, MelFromHz(1490));
    scene.run(0.1);
    EXPECT_EQ(static_cast<float>(first.start().freqValue()), unit.values[kParamStartFrequency]);
    EXPECT_EQ(static_cast<float>(second.start().freqValue()), unit.values[kParamStartFrequency]);
    EXPECT_EQ(second.text("mStartFrequencyText"), first.text("mStartFrequencyText"));
    scene.run(0.1);
    unit.takeLog();
    EXPECT_FALSE(AUEventListenersArePending());
    scene.run(1);
    EXPECT_EQ(unit.takeLog(), "");
}

TEST_F(TonaroCocoaViewTest, ReportsEachFailureOfAUnitAndOpensAllTheSame)
{
    unit.failsAlways = true;
    open();
    std::vector<std::string> expected(2,
                                      "_synchronizeUIWithAU: [TonaroCocoaView synchronizeUIWithParameterValues] (x.1)");
    expected.insert(expected.end(), 7,
                    "_synchronizeUIWithAU: [StretchoCocoaView synchronizeUIWithParameterValues] (x.1)");
    EXPECT_EQ(scene.handler->reports, expected);
    EXPECT_NE(scene.handler->lastFile.find("AudioPlugins/Tonaro/TonaroCocoaView"), std::string::npos);
    EXPECT_GT(scene.handler->lastLine, 0);
    EXPECT_EQ(editor->text("mStartFreqRangeText"), "(.01 to 22050 Hz)");
    EXPECT_EQ(editor->outlet<NSPopUpButton>("mWaveformPopup").numberOfItems(), 0);

    editor->enter("mStartFrequencyText", 1000);
    EXPECT_EQ(unit.takeLog(), "begin(1) set(1,1000) end(1)") << "a refused edit still ends its gesture";
}

TEST(TonaroCocoaView, TheDefaultHandlersExceptionReachesTheCaller)
{
    EditorScene scene;
    NSAssertionHandler::setCurrentHandler(nullptr);
    NSLogSetSink([](std::string_view) {});
    ScriptedUnit unit;
    unit.failsAlways = true;
    const auto factory = make<TonaroCocoaViewFactory>();
    EXPECT_THROW(factory->uiViewForAudioUnit(&unit, {}), NSException);
    unit.failsAlways = false;
    EXPECT_NE(factory->uiViewForAudioUnit(&unit, {}), nullptr);
    NSLogSetSink(nullptr);
}

TEST_F(TonaroCocoaViewTest, SurvivesAUnitThatAnswersNonsense)
{
    unit.values.fill(kNaN);
    unit.waveformNames.clear();
    for (const double rate : {0.0, -1.0, std::numeric_limits<double>::infinity(), double{kNaN}, 1e-300}) {
        SCOPED_TRACE(rate);
        unit.sampleRate = rate;
        unit.lowestWaveform = static_cast<float>(rate);
        open();
        editor->pixels();
        const auto& slider = editor->pressStart();
        editor->mouse(NSLeftMouseUp, slider, slider.maxValue());
        EXPECT_FALSE(std::isnan(slider.doubleValue()));
    }
}

TEST_F(TonaroCocoaViewTest, ItsFactoryAnswersTheHost)
{
    const auto factory = make<TonaroCocoaViewFactory>();
    EXPECT_EQ(factory->interfaceVersion(), 0U);
    EXPECT_EQ(factory->description()->utf8(), " Cocoa View");
    const NSView* view = factory->uiViewForAudioUnit(&unit, {10, 10});
    EXPECT_GT(view->frame().size.width, 400) << "the preferred size counts for nothing";
    const NSView* second = factory->uiViewForAudioUnit(&unit, {10, 10});
    EXPECT_NE(second, view);
}

TEST(TonaroCocoaView, IgnoresItsActionsWithoutAUnit)
{
    EditorScene scene;
    auto view = make<TonaroCocoaView>(CGRectMake(0, 0, 10, 10));
    for (const NSClass::Action& action : TonaroCocoaView::staticClass().actions) {
        SCOPED_TRACE(action.selector);
        EXPECT_NO_THROW(view->performSelector(action.selector, nullptr));
        EXPECT_NO_THROW(view->performSelector(action.selector, make<NSButton>(CGRectMake(0, 0, 10, 10)).get()));
    }
    view.reset();
    EXPECT_TRUE(scene.handler->reports.empty());
}

TEST_F(TonaroCocoaViewTest, ANullUnitIsReportedAndCanBeReplaced)
{
    editor = std::make_unique<Editor>(nullptr);
    EXPECT_EQ(scene.handler->reports.size(), 9U + 2U + 7U) << "registrations, the waveforms, the parameters";
    editor->enter("mGainText", -20);
    scene.handler->reports.clear();
    editor->view->setAU(&unit);
    EXPECT_EQ(editor->text("mStartFrequencyText"), "440");
    editor.reset();
    EXPECT_TRUE(scene.handler->reports.empty());
}

} // namespace
