#include "AppKit/NSPasteboard.h"

#include "AppKit/NSApplication.h"

void NSPasteboard::setString(const NSString* text)
{
    if (NSDisplay* display = NSApplication::sharedApplication()->display()) display->setClipboardText(text);
}

void NSPasteboard::readString(std::function<void(const NSString* text)> callback)
{
    if (NSDisplay* display = NSApplication::sharedApplication()->display())
        display->readClipboardText(std::move(callback));
    else
        callback(nullptr);
}
