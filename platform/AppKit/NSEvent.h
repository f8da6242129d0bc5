#pragma once

/// One thing that a person did to a window. Immutable.

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/NSString.h"

class NSWindow;

enum NSEventType : unsigned {
    NSLeftMouseDown = 1,
    NSLeftMouseUp = 2,
    NSRightMouseDown = 3,
    NSRightMouseUp = 4,
    NSMouseMoved = 5,
    NSLeftMouseDragged = 6,
    NSRightMouseDragged = 7,
    NSMouseEntered = 8,
    NSMouseExited = 9,
    NSKeyDown = 10,
    NSKeyUp = 11,
    NSScrollWheel = 22,
};

/// On a PC keyboard Control sets the Control and the Command flag, Super the Command flag, Alt the Option flag.
enum NSEventModifierFlags : std::uint32_t {
    NSAlphaShiftKeyMask = 1U << 16, ///< Caps Lock
    NSShiftKeyMask = 1U << 17,
    NSControlKeyMask = 1U << 18,
    NSAlternateKeyMask = 1U << 19,
    NSCommandKeyMask = 1U << 20,
    NSNumericPadKeyMask = 1U << 21,
    NSFunctionKeyMask = 1U << 23,
};

/// Characters of keys that have none of their own.
enum : unichar {
    NSEnterCharacter = 0x0003, ///< Enter of the numeric pad
    NSBackspaceCharacter = 0x0008,
    NSTabCharacter = 0x0009,
    NSCarriageReturnCharacter = 0x000D,
    NSBackTabCharacter = 0x0019,
    NSEscapeCharacter = 0x001B,
    NSDeleteCharacter = 0x007F, ///< the key that deletes backward
    NSUpArrowFunctionKey = 0xF700,
    NSDownArrowFunctionKey = 0xF701,
    NSLeftArrowFunctionKey = 0xF702,
    NSRightArrowFunctionKey = 0xF703,
    NSF1FunctionKey = 0xF704, ///< F2 and so on follow
    NSF10FunctionKey = 0xF70D,
    NSInsertFunctionKey = 0xF727,
    NSDeleteFunctionKey = 0xF728, ///< deletes forward
    NSHomeFunctionKey = 0xF729,
    NSBeginFunctionKey = 0xF72A,
    NSEndFunctionKey = 0xF72B,
    NSPageUpFunctionKey = 0xF72C,
    NSPageDownFunctionKey = 0xF72D,
    NSMenuFunctionKey = 0xF735,
};

class NSEvent final : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// @param location    in points, from the top left of the window's content
    /// @param flags       NSEventModifierFlags
    /// @param timestamp   seconds; only differences mean something
    /// @param clickCount  1 for a single click, 2 for the second of a double click ...; 0 for moves
    static RetainPtr<NSEvent> mouseEvent(NSEventType type, NSPoint location, std::uint32_t flags, double timestamp,
                                         NSWindow* window, int clickCount);
    /// @param characters                   what the key types, after compose; may be empty
    /// @param charactersIgnoringModifiers  as if only Shift were held; function keys as their code above
    static RetainPtr<NSEvent> keyEvent(NSEventType type, std::uint32_t flags, double timestamp, NSWindow* window,
                                       const NSString* characters, const NSString* charactersIgnoringModifiers,
                                       bool isARepeat);
    /// @param notches  wheel steps, positive away from the person (up) and to the left
    static RetainPtr<NSEvent> scrollEvent(NSPoint location, std::uint32_t flags, double timestamp, NSWindow* window,
                                          CGFloat notchesX, CGFloat notchesY);

    NSEventType type() const { return mType; }
    NSPoint locationInWindow() const { return mLocation; }
    std::uint32_t modifierFlags() const { return mFlags; }
    double timestamp() const { return mTimestamp; }
    NSWindow* window() const { return mWindow; } ///< not retained; only valid while the event is handled
    int clickCount() const { return mClickCount; }
    const NSString* characters() const { return mCharacters; }
    const NSString* charactersIgnoringModifiers() const { return mCharactersIgnoringModifiers; }
    /// The first of the characters ignoring modifiers; 0 when there is none.
    unichar keyCharacter() const;
    bool isARepeat() const { return mIsARepeat; }
    CGFloat scrollingDeltaX() const { return mDelta.x; }
    CGFloat scrollingDeltaY() const { return mDelta.y; }

private:
    friend class NSWindow; // fills in itself
    NSEventType mType = NSMouseMoved;
    NSPoint mLocation;
    std::uint32_t mFlags = 0;
    double mTimestamp = 0;
    NSWindow* mWindow = nullptr;
    int mClickCount = 0;
    RetainPtr<const NSString> mCharacters, mCharactersIgnoringModifiers;
    bool mIsARepeat = false;
    NSPoint mDelta;
};
