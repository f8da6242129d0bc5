// bench_editor_views redraw|hundred: what a host can't measure from outside. Prints lines of a name and a number.
//
// redraw: the editor's whole window drawn anew at scale 2, and the same pixels filled by Cairo.
// hundred: a hundred editors on the display, each on a unit of its own whose values a thread changes a thousand times a
// second.

#include "AppKit/NSApplication.h"
#include "AppKit/NSWindow.h"
#include "AudioUnit/AUEventListener.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Figures.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Process.h"
#include "Standalone/Bundles.h"
#include "TonaroCocoaViewFactory.h"
#include "ToneUnit/ToneUnit.h"
#include "X11/X11Display.h"

#include <algorithm>
#include <atomic>
#include <cairo.h>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

namespace {

constexpr int kRounds = 101;
constexpr std::size_t kEditors = 100;
constexpr double kSeconds = 5, kChangesPerSecond = 1000;

template <auto Release> struct Releaser {
    void operator()(auto* object) const { Release(object); }
};
using Surface = std::unique_ptr<cairo_surface_t, Releaser<cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, Releaser<cairo_destroy>>;

struct Editor {
    ToneUnit unit;
    RetainPtr<NSWindow> window;

    Editor(NSDisplay& display, double scale)
    {
        const NSAutoreleasePool pool;
        const auto factory = make<TonaroCocoaViewFactory>();
        NSView* const view = factory->uiViewForAudioUnit(&unit, {});
        if (!view) throw std::runtime_error("the editor can't be opened");
        NSBackendWindowOptions options;
        options.contentSize = view->frame().size;
        options.scale = scale;
        window = make<NSWindow>(&NSWindow::initWithDisplay, &display, options);
        if (!window) throw std::runtime_error("the window can't be opened");
        window->setContentView(view);
        window->orderFront();
    }
    ~Editor() { window->close(); }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
};

template <typename Call> double secondsOf(Call&& call)
{
    const double before = ThreadSeconds();
    call();
    return ThreadSeconds() - before;
}

void measureRedraw()
{
    const auto display = NSMakeOffscreenDisplay(2);
    Editor editor(*display, 2);
    CGContextRef bitmap = editor.window->bitmap();
    const auto width = static_cast<int>(CGBitmapContextGetWidth(bitmap));
    const auto height = static_cast<int>(CGBitmapContextGetHeight(bitmap));
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    const Context cairo(cairo_create(surface.get()));
    std::vector<double> drawn, filled;
    for (int i = 0; i < kRounds; ++i) {
        drawn.push_back(secondsOf([&] {
            editor.window->setNeedsDisplayInRect({{0, 0}, editor.window->contentSize()});
            editor.window->displayIfNeeded();
        }));
        filled.push_back(secondsOf([&] {
            cairo_set_source_rgb(cairo.get(), 0.2, 0.4, 0.01 * i);
            cairo_paint(cairo.get());
            cairo_surface_flush(surface.get());
        }));
    }
    print("redraw-us", medianOf(drawn) * 1e6);
    print("fill-us", medianOf(filled) * 1e6);
}

/// Changes values of all units, each as often as it shall, until it is told to end.
void changeValues(const std::vector<std::unique_ptr<Editor>>& editors, const std::atomic<bool>& ends,
                  std::atomic<std::uint64_t>& changes)
{
    constexpr AudioUnitParameterID kChanged[] = {kParamGain, kParamStartFrequency, kParamLength};
    const double start = Now();
    for (std::uint64_t round = 0; !ends; ++round) {
        const AudioUnitParameterID id = kChanged[round % std::size(kChanged)];
        const auto step = static_cast<float>(round % 100);
        for (const auto& editor : editors) {
            const AudioUnitParameter parameter{&editor->unit, id, kAudioUnitScope_Global, 0};
            AUParameterSet(nullptr, nullptr, &parameter, id == kParamGain ? -step : 1 + step, 0);
        }
        changes += editors.size();
        SleepUntil(start + static_cast<double>(round + 1) / kChangesPerSecond);
    }
}

void measureHundred()
{
    std::string error;
    const auto display = NSMakeX11Display(nullptr, &error);
    if (!display) throw std::runtime_error(error);
    std::vector<std::unique_ptr<Editor>> editors;
    for (std::size_t i = 0; i < kEditors; ++i) editors.push_back(std::make_unique<Editor>(*display, 1));
    const auto isDrawn = [&] {
        return std::none_of(editors.begin(), editors.end(),
                            [](const auto& editor) { return editor->window->needsDisplay(); });
    };
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 2, false);

    std::atomic<bool> ends = false;
    std::atomic<std::uint64_t> changes = 0;
    std::thread audio([&] { changeValues(editors, ends, changes); });
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1, false);
    const double start = Now(), used = ThreadSeconds();
    const std::uint64_t changesBefore = changes;
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, kSeconds, false);
    const double percent = (ThreadSeconds() - used) / (Now() - start) * 100;
    print("changes-per-second-each", static_cast<double>(changes - changesBefore) / (Now() - start) / kEditors);
    print("hundred-percent", percent);
    ends = true;
    audio.join();
    const double stopped = Now();
    while (AUEventListenersArePending() && Now() < stopped + 5) CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, true);
    print("hundred-empty-ms", (Now() - stopped) * 1e3);
    while (!isDrawn() && Now() < stopped + 5) CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, true);
    print("hundred-drawn-ms", (Now() - stopped) * 1e3);
    editors.clear();
}

} // namespace

int main(int argc, char** argv)
{
    const NSAutoreleasePool pool;
    const std::string_view name = argc > 1 ? argv[1] : "";
    try {
        registerBundles(bundlesOfProgram());
        if (name == "redraw")
            measureRedraw();
        else if (name == "hundred")
            measureHundred();
        else
            return std::fprintf(stderr, "usage: bench_editor_views redraw|hundred\n"), 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_editor_views: %s\n", error.what());
        return 1;
    }
    return 0;
}
