#include "Standalone/Demo.h"

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Standalone/ControlList.h"

namespace {

constexpr double kSettleSeconds = 0.2; ///< how long the unit's events may take to come back

/// An application whose windows exist only in memory, and a session with one open editor on it.
class OffscreenEditor {
public:
    explicit OffscreenEditor(const Options& options) : mSession(withOffscreenDisplay(options))
    {
        mWindow = mSession.openEditor(options.scale);
        mWindow->orderFront();
        settle();
    }

    NSWindow& window() { return *mWindow; }
    TonaroCocoaView& editor() { return *mSession.editor(0); }

    /// Lets the unit's events come back to the editor.
    static void settle() { CFRunLoopRunInMode(kCFRunLoopDefaultMode, kSettleSeconds, false); }

    void writePicture(const std::string& file)
    {
        const RetainPtr<CGImage> picture = CGBitmapContextCreateImage(mWindow->bitmap());
        if (!picture || !CGImageWritePNGFile(picture, file)) throw InputError{file + ": the picture can't be written"};
    }

private:
    static const Options& withOffscreenDisplay(const Options& options)
    {
        NSApplication::sharedApplication()->setDisplay(NSMakeOffscreenDisplay());
        return options;
    }

    Session mSession;
    NSWindow* mWindow;
};

const NSSlider* findSlider(const NSView& view, SEL action)
{
    const auto* slider = dynamic_cast<const NSSlider*>(&view);
    if (slider && slider->action() && std::string_view(slider->action()) == action) return slider;
    for (const RetainPtr<NSView>& subview : view.subviews())
        if (const NSSlider* found = findSlider(*subview, action)) return found;
    return nullptr;
}

void drag(NSWindow& window, const NSSlider& slider, double fromHz, double toHz)
{
    constexpr int kMoves = 5;
    const auto send = [&](NSEventType type, double hz, int clicks) {
        const NSPoint point = slider.convertPointToWindow(slider.knobCenterForValue(MelFromHz(hz)));
        window.sendEvent(*NSEvent::mouseEvent(type, point, 0, CFAbsoluteTimeGetCurrent(), &window, clicks));
    };
    send(NSLeftMouseDown, fromHz, 1);
    for (int i = 1; i <= kMoves; ++i) send(NSLeftMouseDragged, fromHz + (toHz - fromHz) * i / kMoves, 0);
    send(NSLeftMouseUp, toHz, 1);
}

} // namespace

void runDemo(const Options& options)
{
    Options traced = options;
    traced.trace = true;
    OffscreenEditor offscreen(traced);
    std::printf("The editor is drawn in memory.\nDragging its start frequency; this reaches the generator:\n");
    const NSSlider* slider = findSlider(offscreen.editor(), "startFrequencySliderChanged:");
    if (!slider) throw InputError{"the editor has no slider for the start frequency"};
    drag(offscreen.window(), *slider, HzFromMel(slider->doubleValue()), 2 * HzFromMel(slider->doubleValue()));
    OffscreenEditor::settle();
    offscreen.writePicture(options.file);
    std::printf("The editor after the drag: %s\n", options.file.c_str());
}

void takeScreenshot(const Options& options)
{
    OffscreenEditor offscreen(options);
    offscreen.writePicture(options.file);
}

void printControls(const Options& options)
{
    OffscreenEditor offscreen(options);
    std::printf("%s\n", controlList(offscreen.editor()).c_str());
}
