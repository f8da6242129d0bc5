// tonaro: the editor on a tone unit, in a window of its own.

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Standalone/AssertionLog.h"
#include "Standalone/Bundles.h"
#include "Standalone/Demo.h"
#include "Standalone/HelpWindow.h"
#include "Standalone/Interruption.h"
#include "Standalone/Rendering.h"
#include "Standalone/SoundDevices.h"
#include "X11/X11Display.h"

namespace {

enum ExitStatus { kDone = 0, kInputWrong = 1, kUsageWrong = 2 };

/// Gives the session the sound that was asked for.
void findSound(TonePlayer& player, const Options& options)
{
    const auto open = [name = options.device](double rate) { return openSoundDevice(name, rate); };
    const std::optional<SoundDevice> device = findSoundDevice(options.device);
    player.useDevice(device ? device->name : "", open);
}

void checkDevice(const Options& options)
{
    if (options.device.empty() || options.mute || findSoundDevice(options.device)) return;
    throw InputError{"--device: there is no sound device “" + options.device +
                     "”; --list-devices names those there are"};
}

void runWindows(const Options& options)
{
    checkDevice(options);
    NSApplication* application = NSApplication::sharedApplication();
    std::string error;
    std::unique_ptr<NSDisplay> display = NSMakeX11Display(nullptr, &error);
    if (!display) throw InputError{error + "; --demo and --screenshot need no display"};
    application->setDisplay(std::move(display));

    Session session(options);
    const auto help = make<HelpWindow>(&HelpWindow::initWithScale, options.scale);
    session.setLastClosedHandler([application, help] {
        help->close();
        application->stop();
    });
    for (int i = 0; i < options.editors; ++i) session.openEditor(options.scale)->orderFront();
    // looked for once the windows are there, since some machines take their time to tell
    const auto find = [&] { options.mute ? session.player().mute() : findSound(session.player(), options); };
    CFRunLoopPerformBlock(CFRunLoopGetCurrent(), kCFRunLoopDefaultMode, find);
    application->run();
}

void listDevices()
{
    const std::vector<SoundDevice> devices = findSoundDevices();
    for (const SoundDevice& device : devices)
        std::printf("%s  (%u channel%s, %.0f Hz)\n", device.name.c_str(), device.channels,
                    device.channels == 1 ? "" : "s", device.sampleRate);
    if (devices.empty()) std::fputs("tonaro: there is no sound device\n", stderr);
}

int runMode(const Options& options)
{
    switch (options.mode) {
    case Options::Mode::help:
        std::fputs(helpText().c_str(), stdout);
        break;
    case Options::Mode::version:
        std::puts("tonaro " TONARO_VERSION);
        break;
    case Options::Mode::screenshot:
        takeScreenshot(options);
        break;
    case Options::Mode::controls:
        printControls(options);
        break;
    case Options::Mode::demo:
        runDemo(options);
        break;
    case Options::Mode::render:
        renderTone(options);
        break;
    case Options::Mode::listDevices:
        listDevices();
        break;
    case Options::Mode::window:
        runWindows(options);
        break;
    }
    return kDone;
}

int run(int argc, char** argv)
{
    const Options options = parseOptions(argc, argv);
    const NSAutoreleasePool pool;
    logAssertionFailures();
    registerBundles(bundlesOfProgram());
    NSApplication::sharedApplication()->setAppearance(options.appearance);
    const int status = runMode(options);
    NSApplication::sharedApplication()->setDisplay(nullptr);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) throw InputError{"standard output can't be written"};
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const UsageError& error) {
        if (!error.message.empty()) std::fprintf(stderr, "tonaro: %s\n", error.message.c_str());
        std::fputs("Try 'tonaro --help'.\n", stderr);
        return kUsageWrong;
    } catch (const Interrupted& interrupted) {
        endBySignal(interrupted.signal);
    } catch (const InputError& error) {
        std::fprintf(stderr, "tonaro: %s\n", error.message.c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tonaro: %s\n", error.what());
    }
    return kInputWrong;
}
