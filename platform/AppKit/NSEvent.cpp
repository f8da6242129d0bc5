#include "AppKit/NSEvent.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSEvent, NSObject, "")
NS_CLASS_TABLE_END

RetainPtr<NSEvent> NSEvent::mouseEvent(NSEventType type, NSPoint location, std::uint32_t flags, double timestamp,
                                       NSWindow* window, int clickCount)
{
    auto event = make<NSEvent>();
    event->mType = type;
    event->mLocation = location;
    event->mFlags = flags;
    event->mTimestamp = timestamp;
    event->mWindow = window;
    event->mClickCount = clickCount;
    event->mCharacters = event->mCharactersIgnoringModifiers = make<NSString>();
    return event;
}

RetainPtr<NSEvent> NSEvent::keyEvent(NSEventType type, std::uint32_t flags, double timestamp, NSWindow* window,
                                     const NSString* characters, const NSString* charactersIgnoringModifiers,
                                     bool isARepeat)
{
    auto event = mouseEvent(type, {}, flags, timestamp, window, 0);
    if (characters) event->mCharacters = characters;
    if (charactersIgnoringModifiers) event->mCharactersIgnoringModifiers = charactersIgnoringModifiers;
    event->mIsARepeat = isARepeat;
    return event;
}

RetainPtr<NSEvent> NSEvent::scrollEvent(NSPoint location, std::uint32_t flags, double timestamp, NSWindow* window,
                                        CGFloat notchesX, CGFloat notchesY)
{
    auto event = mouseEvent(NSScrollWheel, location, flags, timestamp, window, 0);
    event->mDelta = {notchesX, notchesY};
    return event;
}

unichar NSEvent::keyCharacter() const
{
    return mCharactersIgnoringModifiers->length() ? mCharactersIgnoringModifiers->characterAtIndex(0) : unichar{0};
}
