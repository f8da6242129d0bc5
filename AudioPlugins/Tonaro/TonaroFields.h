#pragma once

/// The editor's fields, with tool tips that tell more about the value: the note of a frequency, the same length in the
/// other formats, and why a typed value wasn't taken as it was.

#include "AppKit/NSTextField.h"
#include "Foundation/NSClass.h"
#include "TextField/ZeTimeTextField.h"

/// Remembers a typed value until the unit answers it with another one.
class TonaroTypedValue {
public:
    void typed(NSObject* value) { mTyped = value; }
    /// The unit's answer to what was typed, or a change that came by itself.
    void shown(NSObject* value, double tolerance);
    /// "30000 is out of range; the nearest possible is 22050."; empty where nothing was changed.
    std::string reason(const NSFormatter* formatter) const;

private:
    RetainPtr<NSObject> mTyped, mRefused, mInstead;
};

/// A frequency or a gain.
class TonaroNumberField final : public NSTextField {
public:
    NS_CLASS(TonaroNumberField)

    RetainPtr<const NSString> toolTip() const override;
    void setFloatValue(float value) override;

protected:
    void valueWasTyped() override { mTyped.typed(objectValue()); }

private:
    TonaroTypedValue mTyped;
};

class TonaroLengthField final : public ZeTimeTextField {
public:
    NS_CLASS(TonaroLengthField)

    RetainPtr<const NSString> toolTip() const override;
    void setObjectValue(NSObject* value) override;

protected:
    void valueWasTyped() override { mTyped.typed(objectValue()); }

private:
    TonaroTypedValue mTyped;
};
