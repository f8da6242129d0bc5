#include "LV2/EditorProcess.h"

#include "AppKit/NSApplication.h"
#include "Foundation/NSBundle.h"
#include "Standalone/AssertionLog.h"
#include "Standalone/Bundles.h"
#include "Standalone/HelpWindow.h"
#include "TonaroCocoaView.h"
#include "X11/X11Display.h"

#include <stdexcept>

namespace {

int gEditors = 0;

/// While there are editors; then it goes, and takes its window along.
RetainPtr<HelpWindow>& Help()
{
    static RetainPtr<HelpWindow> help;
    return help;
}

} // namespace

EditorProcess::EditorProcess(const std::string& bundlePath, double scale)
{
    if (!NSBundle::bundleWithIdentifier(kTonaroViewBundleIdentifier)) {
        logAssertionFailures();
        registerBundles(bundlePath);
    }
    if (gEditors == 0) {
        std::string error;
        auto display = NSMakeX11Display(nullptr, &error);
        if (!display) throw std::runtime_error(error);
        NSApplication::sharedApplication()->setDisplay(std::move(display));
        Help() = make<HelpWindow>(&HelpWindow::initWithScale, scale);
    }
    ++gEditors;
}

EditorProcess::~EditorProcess()
{
    if (--gEditors > 0) return;
    if (const RetainPtr<HelpWindow> help = std::move(Help())) help->close();
    NSApplication::sharedApplication()->setDisplay(nullptr);
}
