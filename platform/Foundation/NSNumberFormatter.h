#pragma once

/// Numbers as the user's locale writes them.
///
/// The locale is the first non-empty of LC_ALL, LC_NUMERIC and LANG; the operating system needs no locale installed.
/// The first formatter of a process takes about 30 ms, so keep one. An exact half rounds to the even digit: 2.665 gives
/// "2.66".
///
/// Reading trims blanks, must use up the text, knows no exponent and refuses not-a-number, and text of more than 1000
/// units. It accepts the locale's own writing, grouped or not, a leading '+', and plain digits with one '.' where that
/// is no grouping: in German "1000.5" is 1000.5, "1.5" is 1.5 and "1.000" is 1000. Minus infinity reads by its symbol,
/// in capitals or not.

#include "Foundation/NSFormatter.h"
#include "Foundation/NSNumber.h"

#include <memory>

class NSNumberFormatter : public NSFormatter {
public:
    NS_CLASS(NSNumberFormatter)

    NSNumberFormatter();
    ~NSNumberFormatter() override;

    /// Reads `minimumFractionDigits`, `maximumFractionDigits`, `usesGroupingSeparator`, `positiveFormat`, `minimum` and
    /// `maximum`.
    bool initWithCoder(NSCoder& coder) override;

    /// "de_DE", "en_US_POSIX" ...; null goes back to the user's.
    void setLocaleIdentifier(const NSString* identifier);
    void setLocalizesFormat(bool localizes); ///< false: as the C library writes; true at first

    /// A pattern such as "#,##0.##", which sets digits and grouping. One that can't be read is logged and ignored.
    void setFormat(const NSString* pattern);
    void setMinimumFractionDigits(int digits);
    void setMaximumFractionDigits(int digits);
    bool usesGroupingSeparator() const;
    void setUsesGroupingSeparator(bool uses);
    void setHasThousandSeparators(bool has) { setUsesGroupingSeparator(has); }

    RetainPtr<NSString> decimalSeparator() const;
    RetainPtr<NSString> groupingSeparator() const;
    RetainPtr<NSString> thousandSeparator() const { return groupingSeparator(); }

    /// What minus infinity is written as, "-∞" at first.
    void setNegativeInfinitySymbol(const NSString* symbol);

    // Numbers outside are refused when they are read; null for no limit.
    NSNumber* minimum() const { return mMinimum; }
    NSNumber* maximum() const { return mMaximum; }
    void setMinimum(NSNumber* minimum) { mMinimum = minimum; }
    void setMaximum(NSNumber* maximum) { mMaximum = maximum; }

    RetainPtr<NSString> stringFromNumber(const NSNumber* number) const;
    /// A 64-bit integer where the text stands for one, else a float; null for text that is refused.
    RetainPtr<NSNumber> numberFromString(const NSString* text) const;

    /// A text as object (what stands in a field) is read first.
    RetainPtr<NSString> stringForObjectValue(const NSObject* object) const override;
    /// Empty text answers true and a null object.
    bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text, RetainPtr<NSString>* error) const override;

private:
    struct Backend;
    /// @return null with a reason in `error`
    RetainPtr<NSNumber> read(const NSString* text, RetainPtr<NSString>* error) const;
    std::unique_ptr<Backend> mBackend;
    RetainPtr<NSNumber> mMinimum, mMaximum;
    RetainPtr<NSString> mNegativeInfinity;
};
