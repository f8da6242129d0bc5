#include "ui/X11Rig.h"

#include "CoreFoundation/CFRunLoop.h"
#include "X11/X11Display.h"

#include <map>

namespace {

std::string Number(double value) { return std::to_string(static_cast<int>(std::round(value))); }

std::string PointText(NSPoint point) { return Number(point.x) + "," + Number(point.y); }

std::string FlagsText(std::uint32_t flags)
{
    static constexpr struct {
        std::uint32_t flag;
        const char* text;
    } kFlags[] = {{NSAlphaShiftKeyMask, " caps"},  {NSShiftKeyMask, " shift"},     {NSControlKeyMask, " control"},
                  {NSAlternateKeyMask, " option"}, {NSCommandKeyMask, " command"}, {NSNumericPadKeyMask, " pad"}};
    std::string text;
    for (const auto& row : kFlags)
        if (flags & row.flag) text += row.text;
    return text;
}

std::string KeyText(const NSEvent& event)
{
    std::string text = event.isARepeat() ? "again " : "";
    const unichar key = event.keyCharacter();
    if (key < 0x20 || key == 0x7F || key >= 0xF700) {
        char code[8];
        std::snprintf(code, sizeof code, "%04X", key);
        text += code;
    } else {
        text += event.charactersIgnoringModifiers()->utf8() + " types '" + event.characters()->utf8() + "'";
    }
    return text + FlagsText(event.modifierFlags());
}

std::string TextOf(const NSEvent& event)
{
    static const std::map<NSEventType, std::string> kNames = {
        {NSLeftMouseDown, "down "},    {NSLeftMouseUp, "up "},
        {NSLeftMouseDragged, "drag "}, {NSRightMouseDown, "right down "},
        {NSRightMouseUp, "right up "}, {NSRightMouseDragged, "right drag "},
        {NSMouseEntered, "move "},     {NSMouseMoved, "move "},
        {NSScrollWheel, "wheel "},     {NSKeyDown, "key "},
        {NSKeyUp, "key up "}};
    if (event.type() == NSMouseExited) return "exit";
    std::string text = kNames.at(event.type());
    if (event.type() == NSKeyDown || event.type() == NSKeyUp) return text + KeyText(event);
    const bool isWheel = event.type() == NSScrollWheel;
    text += PointText(isWheel ? NSPoint{event.scrollingDeltaX(), event.scrollingDeltaY()} : event.locationInWindow());
    if (event.type() == NSLeftMouseDown || event.type() == NSLeftMouseUp)
        text += " x" + std::to_string(event.clickCount());
    return text + FlagsText(event.modifierFlags());
}

} // namespace

void LoggingClient::backendEvent(NSEvent& event) { note(TextOf(event)); }

void LoggingClient::backendResized(NSSize points, CGFloat)
{
    note("resized " + Number(points.width) + "x" + Number(points.height));
}

void LoggingClient::note(const std::string& entry)
{
    log.push_back(entry);
    if (then) then(entry);
}

X11Test::X11Test(const std::string& depth, const std::vector<std::string>& options)
    : server(depth, options), person(server.display())
{
    std::string error;
    display = NSMakeX11Display(server.display().c_str(), &error);
    if (!display) throw std::runtime_error(error);
}

std::unique_ptr<NSWindowBackend> X11Test::makeWindow(LoggingClient& client, NSRect place)
{
    auto window = display->makeWindow(client, XOptions(place.size));
    window->show();
    const xcb_window_t id = XWindowOf(*window);
    person.moveWindow(id, static_cast<int>(place.origin.x), static_cast<int>(place.origin.y));
    EXPECT_TRUE(runUntilLogged(client, "exposed"));
    return window;
}

bool X11Test::runUntil(const std::function<bool()>& isTrue, double seconds)
{
    const double until = SecondsNow() + seconds;
    while (!isTrue()) {
        if (SecondsNow() > until) return false;
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, true);
    }
    return true;
}

bool X11Test::runUntilLogged(const LoggingClient& client, const std::string& entry)
{
    const bool came = runUntil([&] { return client.has(entry); }, 5);
    EXPECT_TRUE(came) << "no \"" << entry << "\" in: " << testing::PrintToString(client.log);
    return came;
}

// A message goes to the window after everything that the server has sent it before.
void X11Test::settle(LoggingClient& client, NSWindowBackend& window)
{
    client.log.erase(std::remove(client.log.begin(), client.log.end(), "close"), client.log.end());
    person.synchronize();
    person.askToClose(XWindowOf(window));
    runUntilLogged(client, "close");
    client.log.erase(std::remove(client.log.begin(), client.log.end(), "close"), client.log.end());
}

NSBackendWindowOptions XOptions(NSSize pixels, xcb_window_t parent, CGFloat scale)
{
    NSBackendWindowOptions options;
    options.contentSize = {pixels.width / scale, pixels.height / scale};
    options.scale = scale;
    options.parent = parent;
    return options;
}

xcb_window_t XWindowOf(const NSWindowBackend& window) { return static_cast<xcb_window_t>(window.nativeWindow()); }
