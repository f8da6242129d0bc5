#pragma once

/// One row of a menu.

#include "AppKit/NSCell.h"
#include "Foundation/WeakPtr.h"

class NSMenuItem : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// @param keyEquivalent  kept for the reader only: menus of windows have no shortcuts here
    virtual bool initWithTitle(const NSString* title, SEL action, const NSString* keyEquivalent);
    /// Reads title, state ("on"), enabled, tag, isSeparatorItem.
    bool initWithCoder(NSCoder& coder) override;
    static RetainPtr<NSMenuItem> separatorItem();

    const NSString* title() const { return mTitle; }
    void setTitle(const NSString* title);
    SEL action() const { return mAction; } ///< null for none
    void setAction(SEL action) { mAction = action; }
    NSObject* target() const { return mTarget; } ///< not retained; null once it is gone
    void setTarget(NSObject* target) { mTarget = target; }
    std::int64_t tag() const { return mTag; }
    void setTag(std::int64_t tag) { mTag = tag; }
    int state() const { return mState; } ///< NSOnState shows a check mark
    void setState(int state) { mState = state; }
    bool isEnabled() const { return mEnabled && !mSeparator; }
    void setEnabled(bool enabled) { mEnabled = enabled; }
    bool isSeparatorItem() const { return mSeparator; }

private:
    RetainPtr<const NSString> mTitle;
    SEL mAction = nullptr;
    WeakPtr<NSObject> mTarget;
    std::int64_t mTag = 0;
    int mState = NSOffState;
    bool mEnabled = true;
    bool mSeparator = false;
};
