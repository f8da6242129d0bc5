// A sound thread that changes the unit a thousand times a second, while a person drags and the sound is rendered.

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"
#include "TonaroCocoaViewFactory.h"
#include "ToneUnit/ToneRenderer.h"
#include "ToneUnit/ToneUnit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

void run(double seconds)
{
    const NSAutoreleasePool inner;
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false);
}

TEST(Threads, AUnitThatChangesWhileItsEditorIsDraggedComesToRest)
{
    const NSAutoreleasePool pool;
    const auto bundle = NSBundle::bundleWithPath(TONARO_BUNDLES "/org.tonaro.view.bundle");
    NSBundle::registerBundle(bundle);
    NSApplication::sharedApplication()->setDisplay(NSMakeOffscreenDisplay());
    ToneUnit unit;
    const auto factory = make<TonaroCocoaViewFactory>();
    RetainPtr<TonaroCocoaView> editor = asKind<TonaroCocoaView>(factory->uiViewForAudioUnit(&unit, {}));
    auto window = make<NSWindow>(&NSWindow::initWithDisplay, NSApplication::sharedApplication()->display(),
                                 NSBackendWindowOptions{.contentSize = editor->frame().size});
    window->setContentView(editor);
    window->orderFront();
    const auto& slider =
        dynamic_cast<const ZeFrequencySlider&>(*editor->classTable().findOutlet("mStartFrequencySlider")->get(editor));
    const auto& gain = dynamic_cast<const NSControl&>(*editor->classTable().findOutlet("mGainSlider")->get(editor));

    std::atomic<bool> goesOn = true;
    std::thread sound([&] {
        const AudioUnitParameter level{&unit, kParamGain, kAudioUnitScope_Global, 0};
        const AudioUnitParameter end{&unit, kParamEndFrequency, kAudioUnitScope_Global, 0};
        for (int i = 0; goesOn; ++i) {
            AUParameterSet(nullptr, nullptr, i % 2 == 0 ? &level : &end,
                           i % 2 == 0 ? static_cast<float>(-1 - i % 60) : static_cast<float>(100 + i % 9000), 0);
            (void)unit.settings();
            std::this_thread::sleep_for(1ms);
        }
        AUParameterSet(nullptr, nullptr, &level, -33, 0);
    });

    const auto mouse = [&](NSEventType type, double hz) {
        const NSPoint at = slider.convertPointToWindow(slider.knobCenterForValue(MelFromHz(hz)));
        window->sendEvent(*NSEvent::mouseEvent(type, at, 0, CFAbsoluteTimeGetCurrent(), window, 1));
    };
    mouse(NSLeftMouseDown, slider.freqValue());
    for (int i = 0; i < 100; ++i) {
        mouse(NSLeftMouseDragged, 200 + 100 * i);
        run(0.01);
        window->displayIfNeeded();
    }
    mouse(NSLeftMouseUp, 10000);
    goesOn = false;
    sound.join();

    const auto stopped = Clock::now();
    while (AUEventListenersArePending() && Clock::now() - stopped < 2s) run(0.01);
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - stopped).count(), 0.2) << "all queues are empty soon";
    float held = 0;
    AudioUnitGetParameter(&unit, kParamStartFrequency, kAudioUnitScope_Global, 0, &held);
    EXPECT_NEAR(slider.freqValue(), held, held * 1e-5);
    EXPECT_EQ(gain.floatValue(), -33);

    window->close();
    window.reset();
    editor.reset();
    NSApplication::sharedApplication()->setDisplay(nullptr);
}

} // namespace
