#include "AppKit/NSMenuItem.h"

#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

NS_CLASS_TABLE(NSMenuItem, NSObject, "")
NS_CLASS_TABLE_END

bool NSMenuItem::initWithTitle(const NSString* title, SEL action, const NSString*)
{
    setTitle(title);
    mAction = action;
    return true;
}

bool NSMenuItem::initWithCoder(NSCoder& coder)
{
    setTitle(coder.decodeStringForKey("title").get());
    const auto state = coder.decodeStringForKey("state");
    mState = state && state->utf8() == "on" ? NSOnState : NSOffState;
    mEnabled = coder.decodeBoolForKey("enabled", true);
    mTag = coder.decodeIntegerForKey("tag", 0);
    mSeparator = coder.decodeBoolForKey("isSeparatorItem", false);
    return true;
}

RetainPtr<NSMenuItem> NSMenuItem::separatorItem()
{
    auto item = make<NSMenuItem>();
    item->mSeparator = true;
    return item;
}

void NSMenuItem::setTitle(const NSString* title) { mTitle = title; }
