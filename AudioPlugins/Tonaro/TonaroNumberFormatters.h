#pragma once

/// Numbers as people write them into the editor's fields. What they write is what NSNumberFormatter writes.
///
/// Failure: text that can't be read is refused with a sentence in the user's language.

#include "Foundation/NSNumberFormatter.h"

/// Frequencies in hertz: "1000", "1k", "1.5 kHz", "440 Hz", and notes: "A4", "C#5+20c".
class TonaroFrequencyFormatter final : public NSNumberFormatter {
public:
    NS_CLASS(TonaroFrequencyFormatter)

    bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text, RetainPtr<NSString>* error) const override;
};

/// Gains in decibels: "-6", "-6 dB", "-inf", and ratios: "0.5x" is -6.02 dB, "0x" silence.
class TonaroGainFormatter final : public NSNumberFormatter {
public:
    NS_CLASS(TonaroGainFormatter)

    bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text, RetainPtr<NSString>* error) const override;
};
