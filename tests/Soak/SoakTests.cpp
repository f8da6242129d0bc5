// A person who does anything, a unit that changes by itself, and a window system with moods: nothing breaks, and in the
// end the editor shows what the unit holds. TONARO_SOAK_SECONDS (60) says how long, TONARO_SOAK_SEED (1) which way.

#include "AppKit/NSApplication.h"
#include "AppKit/NSMenu.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSLog.h"
#include "Support/BundleScene.h"
#include "TonaroCocoaViewFactory.h"
#include "ToneUnit/ToneUnit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <numeric>
#include <random>

namespace {

/// Passes everything on, and keeps the windows' clients to play the window system with.
class MoodyDisplay final : public NSDisplay {
public:
    std::unique_ptr<NSWindowBackend> makeWindow(NSWindowBackendClient& client,
                                                const NSBackendWindowOptions& options) override
    {
        newest = &client;
        return mInner->makeWindow(client, options);
    }
    std::unique_ptr<NSWindowBackend> makePopUp(NSWindowBackendClient& client, NSWindowBackend& parent,
                                               NSRect frame) override
    {
        return mInner->makePopUp(client, parent, frame);
    }
    void setClipboardText(const NSString* text) override { mInner->setClipboardText(text); }
    void readClipboardText(std::function<void(const NSString*)> callback) override
    {
        mInner->readClipboardText(std::move(callback));
    }

    NSWindowBackendClient* newest = nullptr;

private:
    std::unique_ptr<NSDisplay> mInner = NSMakeOffscreenDisplay();
};

/// Counts the gestures that are open.
class GestureBook final : public ToneUnitObserver {
public:
    void gestureBegan(AudioUnitParameterID parameter) override
    {
        ++mOpen.at(parameter);
        ++total;
    }
    void parameterSet(AudioUnitParameterID, float) override { ++sets; }
    void gestureEnded(AudioUnitParameterID parameter) override { EXPECT_GE(--mOpen.at(parameter), 0); }
    int open() const { return std::accumulate(mOpen.begin(), mOpen.end(), 0); }

    long total = 0, sets = 0;

private:
    std::array<int, kParamCount> mOpen{};
};

class QuietHandler final : public NSAssertionHandler {
public:
    void handleFailureInMethod(SEL, NSObject*, const char*, int, const NSString*) override {}
};

long setting(const char* name, long otherwise)
{
    const char* text = std::getenv(name);
    return text ? std::atol(text) : otherwise;
}

constexpr unichar kKeys[] = {
    NSUpArrowFunctionKey, NSDownArrowFunctionKey, NSLeftArrowFunctionKey, NSRightArrowFunctionKey, NSHomeFunctionKey,
    NSEndFunctionKey,     NSPageUpFunctionKey,    NSPageDownFunctionKey,  NSMenuFunctionKey,       NSF10FunctionKey};
constexpr std::u16string_view kCharacters =
    u"\t\t\x19\r\r\x1B\x7F 1290.,:;-kA#xacvzy\xD834"; // Tab, Return and such too
constexpr std::uint32_t kCommand = NSControlKeyMask | NSCommandKeyMask;
constexpr std::uint32_t kFlags[] = {0, 0, 0, NSShiftKeyMask, kCommand, kCommand | NSShiftKeyMask, NSAlternateKeyMask};
constexpr double kRates[] = {0, 8000, 44100, 48000, 96000, 192000, 384000};
constexpr double kScales[] = {1, 1.25, 1.5, 2, 3};

class SoakTest : public testing::Test, protected BundleScene {
protected:
    SoakTest()
    {
        NSAssertionHandler::setCurrentHandler(handler);
        NSLogSetSink([](std::string_view) {});
        auto made = std::make_unique<MoodyDisplay>();
        display = made.get();
        NSApplication::sharedApplication()->setDisplay(std::move(made));
        unit.setObserver(&book);
        open();
    }
    ~SoakTest() override
    {
        if (window) window->close();
        window.reset();
        editor.reset();
        NSApplication::sharedApplication()->setDisplay(nullptr);
        NSLogSetSink(nullptr);
        NSAssertionHandler::setCurrentHandler(nullptr);
    }

    void open()
    {
        const NSAutoreleasePool inner;
        const auto factory = make<TonaroCocoaViewFactory>();
        editor = asKind<TonaroCocoaView>(factory->uiViewForAudioUnit(&unit, {}));
        window = make<NSWindow>(&NSWindow::initWithDisplay, static_cast<NSDisplay*>(display),
                                NSBackendWindowOptions{.contentSize = editor->frame().size});
        window->setContentView(editor);
        window->orderFront();
    }
    void close()
    {
        window->close();
        window.reset();
        editor.reset();
        EXPECT_EQ(book.open(), 0) << "an editor that goes leaves no gesture open";
    }

    template <typename T, std::size_t N> T any(const T (&values)[N]) { return values[below(N)]; }
    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random); }
    double part() { return std::uniform_real_distribution<double>(0, 1)(random); }
    NSPoint anywhere()
    {
        const NSSize size = window->contentSize();
        return {part() * (size.width + 20) - 10, part() * (size.height + 20) - 10};
    }
    /// The window that has the events: an open menu's, else the editor's.
    NSWindow* target()
    {
        const auto& windows = NSApplication::sharedApplication()->windows();
        return windows.empty() ? nullptr : windows.back();
    }
    void mouse(NSEventType type, NSPoint at, std::uint32_t flags, int clicks)
    {
        if (const RetainPtr<NSWindow> to = target())
            to->sendEvent(*NSEvent::mouseEvent(type, at, flags, CFAbsoluteTimeGetCurrent(), to, clicks));
    }

    void clickOrDrag()
    {
        const bool left = below(6) > 0;
        const std::uint32_t flags = any(kFlags);
        const int clicks = below(8) == 0 ? 2 : 1;
        NSPoint at = anywhere();
        mouse(left ? NSLeftMouseDown : NSRightMouseDown, at, flags, clicks);
        for (std::size_t moves = below(6); moves > 0; --moves) {
            at = below(3) == 0 ? anywhere() : NSPoint{at.x + 20 * part() - 10, at.y + 20 * part() - 10};
            mouse(left ? NSLeftMouseDragged : NSRightMouseDragged, at, any(kFlags), 0);
            if (below(4) == 0) anything();
            if (below(3) == 0) run(part() * 0.1);
        }
        if (below(12) > 0) mouse(left ? NSLeftMouseUp : NSRightMouseUp, at, flags, clicks); // else it gets lost
    }
    void key()
    {
        const RetainPtr<NSWindow> to = target();
        if (!to) return;
        const unichar pressed = below(3) == 0 ? any(kKeys) : kCharacters[below(kCharacters.size())];
        const auto text = NSString::string(std::u16string(1, pressed));
        for (const NSEventType type : {NSKeyDown, NSKeyUp})
            if (to->nativeWindow() || type == NSKeyDown)
                to->sendEvent(*NSEvent::keyEvent(type, any(kFlags), CFAbsoluteTimeGetCurrent(), to, text, text, false));
    }
    void turnWheel()
    {
        if (const RetainPtr<NSWindow> to = target())
            to->sendEvent(*NSEvent::scrollEvent(anywhere(), any(kFlags), CFAbsoluteTimeGetCurrent(), to, part() * 4 - 2,
                                                part() * 6 - 3));
    }
    void changeUnit()
    {
        const auto id = static_cast<AudioUnitParameterID>(below(kParamCount));
        const AudioUnitParameter parameter{&unit, id, kAudioUnitScope_Global, 0};
        const double value = below(20) == 0 ? std::nan("") : std::pow(10, 7 * part() - 2) * (below(3) == 0 ? -1 : 1);
        AUParameterSet(nullptr, nullptr, &parameter, static_cast<float>(value), 0);
    }
    void changeProperty()
    {
        const double rate = any(kRates);
        const auto format = static_cast<std::uint32_t>(below(25));
        if (below(2) == 0)
            AudioUnitSetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, sizeof rate);
        else
            AudioUnitSetProperty(&unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, sizeof format);
    }
    void moodOfTheWindowSystem()
    {
        switch (below(7)) {
        case 0:
            return display->newest->backendResized({400 + 400 * part(), 300 + 400 * part()}, any(kScales));
        case 1:
            return display->newest->backendExposed();
        case 2:
            return display->newest->backendFocusChanged(below(2) == 0);
        case 3:
            return display->newest->backendGrabLost();
        case 4:
            return below(2) == 0 ? window->orderOut() : window->orderFront();
        case 5:
            return editor->setAU(&unit);
        default:
            close();
            return open();
        }
    }
    void anything()
    {
        const NSAutoreleasePool inner;
        switch (below(5)) {
        case 0:
            return turnWheel();
        case 1:
            return changeUnit();
        case 2:
            return below(4) == 0 ? changeProperty() : changeUnit();
        default:
            return key();
        }
    }
    void step()
    {
        const NSAutoreleasePool inner;
        switch (below(8)) {
        case 0:
        case 1:
        case 2:
            clickOrDrag();
            break;
        case 3:
            if (below(5) == 0) moodOfTheWindowSystem();
            break;
        default:
            anything();
            break;
        }
        if (below(3) == 0) run(part() * 0.1);
        if (below(10) == 0) window->bitmap();
    }

    template <typename T> const T& outlet(const char* name) const
    {
        const NSClass::OutletEntry* entry = editor->classTable().findOutlet(name);
        return dynamic_cast<const T&>(*entry->get(editor));
    }
    float held(AudioUnitParameterID parameter)
    {
        float value = 0;
        AudioUnitGetParameter(&unit, parameter, kAudioUnitScope_Global, 0, &value);
        return value;
    }

    RetainPtr<QuietHandler> handler = make<QuietHandler>();
    std::mt19937_64 random{static_cast<std::uint64_t>(setting("TONARO_SOAK_SEED", 1))};
    GestureBook book;
    ToneUnit unit;
    MoodyDisplay* display = nullptr;
    RetainPtr<TonaroCocoaView> editor;
    RetainPtr<NSWindow> window;
};

TEST_F(SoakTest, EndsWithTheEditorShowingTheUnit)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(setting("TONARO_SOAK_SECONDS", 60));
    long steps = 0;
    for (; Clock::now() < end && !HasFatalFailure(); ++steps) step();

    NSMenu::cancelTrackingInside(editor);
    window->endTracking();
    window->orderFront();
    window->resignFocusInside(editor);
    EXPECT_EQ(book.open(), 0) << "every begin has its end";
    const AudioUnitParameter length{&unit, kParamLength, kAudioUnitScope_Global, 0};
    AUParameterSet(nullptr, nullptr, &length, held(kParamLength), 0); // told at the rate of now
    run(1);
    EXPECT_FALSE(AUEventListenersArePending());

    double rate = 0;
    std::uint32_t size = sizeof rate;
    AudioUnitGetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, &size);
    if (rate == 0) rate = 44100;
    const auto near = [](double a, double b) { return std::abs(a - b) <= 1e-5 * std::max(std::abs(a), std::abs(b)); };
    EXPECT_EQ(outlet<NSPopUpButton>("mWaveformPopup").indexOfSelectedItem(), int(held(kParamWaveform)));
    EXPECT_PRED2(near, outlet<ZeFrequencySlider>("mStartFrequencySlider").freqValue(), held(kParamStartFrequency));
    EXPECT_PRED2(near, outlet<NSControl>("mStartFrequencyText").doubleValue(), held(kParamStartFrequency));
    EXPECT_PRED2(near, outlet<ZeFrequencySlider>("mEndFrequencySlider").freqValue(), held(kParamEndFrequency));
    EXPECT_PRED2(near, outlet<NSControl>("mEndFrequencyText").doubleValue(), held(kParamEndFrequency));
    EXPECT_EQ(outlet<NSControl>("mUseEndCheckbox").doubleValue() > 0, held(kParamUseEnd) > 0);
    EXPECT_EQ(outlet<NSControl>("mEndFrequencyText").isEnabled(), held(kParamUseEnd) > 0);
    EXPECT_EQ(outlet<NSControl>("mLogSweepCheckbox").doubleValue() > 0, held(kParamLogSweep) > 0);
    EXPECT_PRED2(near, outlet<NSControl>("mGainSlider").doubleValue(), held(kParamGain));
    EXPECT_EQ(outlet<NSControl>("mLengthText").floatValue(), static_cast<float>(double{held(kParamLength)} * rate));
    EXPECT_EQ(outlet<NSControl>("mLengthStepper").floatValue(), held(kParamLength));
    RecordProperty("steps", std::to_string(steps));
    std::printf("%ld steps, %ld gestures, %ld sets\n", steps, book.total, book.sets);
    close();
}

} // namespace
