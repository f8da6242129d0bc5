#include "LV2/EditorProcess.h"

#include "AppKit/NSApplication.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSBundle.h"
#include "Foundation/NSLog.h"
#include "Standalone/HelpWindow.h"
#include "TonaroCocoaView.h"
#include "X11/X11Display.h"

#include <filesystem>
#include <stdexcept>

namespace {

constexpr const char* kHostBundleIdentifier = "org.tonaro.host";
int gEditors = 0;

/// While there are editors; then it goes, and takes its window along.
RetainPtr<HelpWindow>& Help()
{
    static RetainPtr<HelpWindow> help;
    return help;
}

/// Writes failures of the unit to the log; work goes on.
class LoggingAssertionHandler final : public NSAssertionHandler {
public:
    void handleFailureInMethod(SEL, NSObject*, const char* file, int line, const NSString* description) override
    {
        NSLog("%s:%d: %s", file, line, description->utf8().c_str());
    }
};

RetainPtr<NSBundle> BundleIn(const std::string& folder, const char* identifier)
{
    const auto path = std::filesystem::path(folder) / (std::string(identifier) + ".bundle");
    return NSBundle::bundleWithPath(path.string());
}

void RegisterBundles(const std::string& folder)
{
    if (NSBundle::bundleWithIdentifier(kTonaroViewBundleIdentifier)) return;
    NSAssertionHandler::setCurrentHandler(make<LoggingAssertionHandler>().get());
    if (const auto host = BundleIn(folder, kHostBundleIdentifier)) NSBundle::setMainBundle(host);
    if (const auto view = BundleIn(folder, kTonaroViewBundleIdentifier)) NSBundle::registerBundle(view);
}

} // namespace

EditorProcess::EditorProcess(const std::string& bundlePath, double scale)
{
    RegisterBundles(bundlePath);
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
