#pragma once

// An editor in an off-screen window, on a scripted unit.

#include "AppKit/NSApplication.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSLog.h"
#include "ScriptedUnit.h"
#include "Support/BundleScene.h"
#include "TonaroCocoaViewFactory.h"

#include <gtest/gtest.h>

/// Collects what is reported, and returns.
class CollectingHandler : public NSAssertionHandler {
public:
    void handleFailureInMethod(SEL method, NSObject*, const char* file, int line, const NSString* description) override
    {
        reports.push_back(std::string(method) + ": " + description->utf8());
        lastFile = file;
        lastLine = line;
    }
    std::vector<std::string> reports;
    std::string lastFile;
    int lastLine = 0;
};

/// The scene that every editor needs, with a handler that returns.
class EditorScene : public BundleScene {
public:
    EditorScene() { NSAssertionHandler::setCurrentHandler(handler); }
    ~EditorScene() { NSAssertionHandler::setCurrentHandler(nullptr); }

    RetainPtr<CollectingHandler> handler = make<CollectingHandler>();
};

/// One editor and its window.
class Editor {
public:
    explicit Editor(AudioUnit edited) : unit(edited)
    {
        const NSAutoreleasePool pool;
        const auto factory = make<TonaroCocoaViewFactory>();
        view = asKind<TonaroCocoaView>(factory->uiViewForAudioUnit(unit, {1, 1}));
        window = make<NSWindow>(&NSWindow::initWithDisplay, display.get(),
                                NSBackendWindowOptions{.contentSize = view->frame().size});
        window->setContentView(view);
        window->orderFront();
    }
    ~Editor() { window->close(); }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    /// The control behind an outlet.
    template <typename T> T& outlet(const char* name) const
    {
        const NSClass::OutletEntry* entry = view->classTable().findOutlet(name);
        auto* control = entry ? dynamic_cast<const T*>(entry->get(view)) : nullptr;
        if (!control) throw std::runtime_error(std::string("no outlet ") + name);
        return const_cast<T&>(*control);
    }
    ZeFrequencySlider& start() const { return outlet<ZeFrequencySlider>("mStartFrequencySlider"); }
    std::string text(const char* name) const { return outlet<NSControl>(name).stringValue()->utf8(); }
    /// The one view of a kind without an outlet.
    template <typename T> T& only() const
    {
        if (T* const found = firstIn<T>(*view)) return *found;
        throw std::runtime_error("no such view");
    }
    template <typename T> static T* firstIn(const NSView& outer)
    {
        for (const RetainPtr<NSView>& inner : outer.subviews()) {
            if (auto* found = asKind<T>(inner.get())) return found;
            if (auto* found = firstIn<T>(*inner)) return found;
        }
        return nullptr;
    }

    void show(AudioUnitParameterID parameter, float value) const
    {
        const AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange, {.mParameter = {nullptr, parameter, 0, 0}}};
        view->_eventListener(nullptr, &event, value);
    }
    /// What typing that number and Return would do, without the field editor.
    void enter(const char* field, float value) const
    {
        auto& control = outlet<NSControl>(field);
        control.setFloatValue(value);
        control.sendAction(control.action(), control.target());
    }
    void mouse(NSEventType type, const NSView& at, NSPoint point) const
    {
        window->sendEvent(*NSEvent::mouseEvent(type, at.convertPointToWindow(point), 0, CFAbsoluteTimeGetCurrent(),
                                               window, type == NSLeftMouseDragged ? 0 : 1));
    }
    void mouse(NSEventType type, const NSSlider& slider, double value) const
    {
        mouse(type, slider, slider.knobCenterForValue(value));
    }
    /// On its knob, which moves nothing.
    const ZeFrequencySlider& pressStart() const
    {
        mouse(NSLeftMouseDown, start(), start().doubleValue());
        return start();
    }
    void click(const NSView& clicked, NSPoint point) const
    {
        for (const NSEventType type : {NSLeftMouseDown, NSLeftMouseUp}) mouse(type, clicked, point);
    }
    /// @return whether somebody wanted the key
    bool key(unichar character, std::uint32_t flags = 0) const
    {
        const auto text = NSString::string(std::u16string(1, character));
        return window->sendEvent(*NSEvent::keyEvent(NSKeyDown, flags, 0, window, text, text, false));
    }
    std::vector<std::uint8_t> pixels() const
    {
        const auto bytes = CGBitmapContextGetPixels(window->bitmap());
        return {bytes.begin(), bytes.end()};
    }
    /// What the host may do whenever it is called.
    void end()
    {
        window->setContentView(nullptr);
        view.reset();
    }

    AudioUnit unit;
    std::unique_ptr<NSDisplay> display = NSMakeOffscreenDisplay();
    RetainPtr<TonaroCocoaView> view;
    RetainPtr<NSWindow> window;
};

/// An editor that has come to rest after opening.
class EditorTest : public testing::Test {
protected:
    EditorTest()
    {
        NSApplication::sharedApplication()->setDisplay(NSMakeOffscreenDisplay()); // for its clipboard
        open();
    }
    ~EditorTest() override { NSApplication::sharedApplication()->setDisplay(nullptr); }

    void open()
    {
        editor = std::make_unique<Editor>(&unit);
        settle();
    }
    /// @return what reached the unit
    std::string settle()
    {
        scene.run();
        return unit.takeLog();
    }
    /// As a host does.
    void automate(AudioUnitParameterID parameter, float value)
    {
        const AudioUnitParameter automated{&unit, parameter, kAudioUnitScope_Global, 0};
        AUParameterSet(nullptr, nullptr, &automated, value, 0);
        scene.run();
    }
    void changeRate(double rate)
    {
        unit.sampleRate = rate;
        AudioUnitEvent event{kAudioUnitEvent_PropertyChange,
                             {.mProperty = {&unit, kAudioUnitProperty_SampleRate, 0, 0}}};
        AUEventListenerNotify(nullptr, nullptr, &event);
        scene.run();
    }

    EditorScene scene;
    ScriptedUnit unit;
    std::unique_ptr<Editor> editor;
};
