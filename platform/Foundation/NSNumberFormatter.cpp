#include "Foundation/NSNumberFormatter.h"

#include "Foundation/NSBundle.h"
#include "Foundation/NSCoder.h"
#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>

NS_CLASS_TABLE(NSNumberFormatter, NSFormatter, "")
NS_CLASS_TABLE_END

namespace {

constexpr std::size_t kLongestText = 1000; // reading takes longer than linear time
constexpr int kMostDigits = 300;

void Check(UErrorCode error, const char* what)
{
    if (U_FAILURE(error))
        throw NSException(NSInternalInconsistencyException, std::string(what) + ": " + u_errorName(error));
}

icu::Locale LocaleNamed(const std::string& name)
{
    if (name.empty() || name == "C" || name == "POSIX" || name.starts_with("C."))
        return icu::Locale::createCanonical("en_US_POSIX");
    return icu::Locale::createCanonical(name.c_str());
}

icu::Locale UsersLocale()
{
    for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"})
        if (const char* name = std::getenv(variable); name && *name) return LocaleNamed(name);
    return LocaleNamed("");
}

icu::DecimalFormatSymbols SymbolsOf(const icu::Locale& locale)
{
    UErrorCode error = U_ZERO_ERROR;
    icu::DecimalFormatSymbols symbols(locale, error);
    Check(error, "no symbols of numbers");
    return symbols;
}

icu::UnicodeString Unicode(std::u16string_view text)
{
    return icu::UnicodeString(text.data(), static_cast<std::int32_t>(text.size()));
}

RetainPtr<NSString> StringOf(const icu::UnicodeString& text)
{
    return NSString::string(std::u16string(text.getBuffer(), static_cast<std::size_t>(text.length())));
}

std::u16string_view Trimmed(std::u16string_view text)
{
    while (!text.empty() && u_isUWhiteSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && u_isUWhiteSpace(text.back())) text.remove_suffix(1);
    return text;
}

/// A '~' outside quotes. ICU prints its sign, but ends the process when it reads by such a pattern.
bool HasApproximateSign(std::u16string_view pattern)
{
    bool isQuoted = false;
    return std::any_of(pattern.begin(), pattern.end(), [&isQuoted](char16_t unit) {
        if (unit == u'\'') isQuoted = !isQuoted;
        return unit == u'~' && !isQuoted;
    });
}

/// Digits with at most one '.', as programs write them; the locale plays no part.
std::optional<double> PlainNumber(std::u16string_view text)
{
    const std::string ascii(text.begin(), text.end());
    const auto isPlain = [](char16_t unit) { return (unit >= '0' && unit <= '9') || unit == '.' || unit == '-'; };
    double value = 0.0;
    if (!std::all_of(text.begin(), text.end(), isPlain)) return std::nullopt;
    const auto [end, error] =
        std::from_chars(ascii.data(), ascii.data() + ascii.size(), value, std::chars_format::fixed);
    if (error != std::errc() || end != ascii.data() + ascii.size()) return std::nullopt;
    return value;
}

/// The sentence of that key in the user's language, its marks replaced.
RetainPtr<NSString> Sentence(const char* key, const NSString* text, const NSString* limit = nullptr)
{
    std::u16string sentence =
        NSBundle::mainBundle()->localizedStringForKey(NSString::string(key).get(), nullptr, nullptr)->units();
    const auto replace = [&sentence](std::u16string_view mark, const NSString* by) {
        const std::size_t at = sentence.find(mark);
        if (by && at != sentence.npos) sentence.replace(at, mark.size(), by->units());
    };
    replace(u"%2$@", limit);
    replace(u"%1$@", text);
    return NSString::string(std::move(sentence));
}

} // namespace

struct NSNumberFormatter::Backend {
    icu::Locale locale = UsersLocale();
    bool localizes = true;
    icu::DecimalFormat format = make(locale);
    std::u16string pattern;                             // as applied; empty once digits or grouping were set one by one
    mutable std::unique_ptr<icu::DecimalFormat> reader; // made when first needed

    static icu::DecimalFormat make(const icu::Locale& locale)
    {
        UErrorCode error = U_ZERO_ERROR;
        icu::DecimalFormat format(u"0.###", SymbolsOf(locale), error);
        Check(error, "no format of numbers");
        return format;
    }

    void changed()
    {
        pattern.clear();
        reader.reset();
    }

    void localeChanged()
    {
        format.setDecimalFormatSymbols(SymbolsOf(localizes ? locale : LocaleNamed("")));
        reader.reset();
    }

    void setGrouping(bool uses)
    {
        format.setGroupingUsed(uses);
        if (uses && format.getGroupingSize() <= 0) format.setGroupingSize(3);
        changed();
    }

    /// The same format, but with groups in threes wherever a person puts them.
    const icu::DecimalFormat& formatForReading() const
    {
        if (reader) return *reader;
        reader.reset(format.clone());
        reader->setGroupingUsed(true);
        if (reader->getGroupingSize() <= 0) reader->setGroupingSize(3);
        reader->setParseNoExponent(true);
        return *reader;
    }

    RetainPtr<NSNumber> parse(std::u16string_view text) const
    {
        const icu::UnicodeString whole = Unicode(text);
        icu::ParsePosition position;
        icu::Formattable result;
        formatForReading().parse(whole, result, position);
        if (position.getErrorIndex() >= 0 || position.getIndex() != whole.length()) return nullptr;
        UErrorCode error = U_ZERO_ERROR;
        const double value = result.getDouble(error);
        if (U_FAILURE(error) || std::isnan(value)) return nullptr;
        // more digits than a number can hold are not infinity
        if (std::isinf(value) && std::any_of(text.begin(), text.end(), [](char16_t unit) { return u_isdigit(unit); }))
            return nullptr;
        if (result.getType() != icu::Formattable::kDouble) return NSNumber::numberWithLongLong(result.getInt64());
        return NSNumber::numberWithDouble(value);
    }
};

NSNumberFormatter::NSNumberFormatter() : mBackend(std::make_unique<Backend>()) {}

NSNumberFormatter::~NSNumberFormatter() = default;

bool NSNumberFormatter::initWithCoder(NSCoder& coder)
{
    if (!NSFormatter::initWithCoder(coder)) return false;
    const auto integer = [&coder](const char* key) { return static_cast<int>(coder.decodeIntegerForKey(key, 0)); };
    const auto limit = [&coder](const char* key) {
        const bool has = coder.containsValueForKey(key);
        return has ? NSNumber::numberWithDouble(coder.decodeDoubleForKey(key, 0.0)) : RetainPtr<NSNumber>();
    };
    if (const RetainPtr<NSString> pattern = coder.decodeStringForKey("positiveFormat")) setFormat(pattern);
    if (coder.containsValueForKey("minimumFractionDigits")) setMinimumFractionDigits(integer("minimumFractionDigits"));
    if (coder.containsValueForKey("maximumFractionDigits")) setMaximumFractionDigits(integer("maximumFractionDigits"));
    if (coder.containsValueForKey("usesGroupingSeparator"))
        setUsesGroupingSeparator(coder.decodeBoolForKey("usesGroupingSeparator", false));
    mMinimum = limit("minimum");
    mMaximum = limit("maximum");
    return true;
}

void NSNumberFormatter::setLocaleIdentifier(const NSString* identifier)
{
    mBackend->locale = identifier ? LocaleNamed(identifier->utf8()) : UsersLocale();
    mBackend->localeChanged();
}

void NSNumberFormatter::setLocalizesFormat(bool localizes)
{
    if (mBackend->localizes == localizes) return;
    mBackend->localizes = localizes;
    mBackend->localeChanged();
}

void NSNumberFormatter::setFormat(const NSString* pattern)
{
    if (!pattern || pattern->units() == mBackend->pattern) return;
    UErrorCode error = HasApproximateSign(pattern->units()) ? U_UNSUPPORTED_ERROR : U_ZERO_ERROR;
    icu::DecimalFormat changed = mBackend->format; // a pattern that fails leaves a format half changed
    changed.applyPattern(Unicode(pattern->units()), error);
    if (U_FAILURE(error)) {
        NSLog("“%s” is no pattern of a number: %s", pattern->utf8().c_str(), u_errorName(error));
        return;
    }
    mBackend->format = changed;
    mBackend->changed();
    mBackend->pattern = pattern->units();
}

void NSNumberFormatter::setMinimumFractionDigits(int digits)
{
    mBackend->format.setMinimumFractionDigits(std::clamp(digits, 0, kMostDigits));
    mBackend->changed();
}

void NSNumberFormatter::setMaximumFractionDigits(int digits)
{
    mBackend->format.setMaximumFractionDigits(std::clamp(digits, 0, kMostDigits));
    mBackend->changed();
}

bool NSNumberFormatter::usesGroupingSeparator() const { return mBackend->format.isGroupingUsed(); }

void NSNumberFormatter::setUsesGroupingSeparator(bool uses) { mBackend->setGrouping(uses); }

RetainPtr<NSString> NSNumberFormatter::decimalSeparator() const
{
    using Symbols = icu::DecimalFormatSymbols;
    return StringOf(mBackend->format.getDecimalFormatSymbols()->getConstSymbol(Symbols::kDecimalSeparatorSymbol));
}

RetainPtr<NSString> NSNumberFormatter::groupingSeparator() const
{
    using Symbols = icu::DecimalFormatSymbols;
    return StringOf(mBackend->format.getDecimalFormatSymbols()->getConstSymbol(Symbols::kGroupingSeparatorSymbol));
}

void NSNumberFormatter::setNegativeInfinitySymbol(const NSString* symbol)
{
    mNegativeInfinity = symbol ? NSString::string(symbol->units()) : nullptr;
}

RetainPtr<NSString> NSNumberFormatter::stringFromNumber(const NSNumber* number) const
{
    if (!number) return nullptr;
    const std::string_view type = number->objCType();
    icu::UnicodeString text;
    if (type == "f" || type == "d") {
        const double value = number->doubleValue();
        if (mNegativeInfinity && std::isinf(value) && value < 0.0) return mNegativeInfinity;
        mBackend->format.format(value, text);
    } else if (type == "Q") {
        UErrorCode error = U_ZERO_ERROR;
        mBackend->format.format(icu::StringPiece(number->stringValue()->utf8()), text, nullptr, error);
        Check(error, "a number can't be written");
    } else {
        mBackend->format.format(number->longLongValue(), text);
    }
    return StringOf(text);
}

RetainPtr<NSNumber> NSNumberFormatter::numberFromString(const NSString* text) const { return read(text, nullptr); }

RetainPtr<NSNumber> NSNumberFormatter::read(const NSString* text, RetainPtr<NSString>* error) const
{
    const auto refuse = [&](const char* key, const NSNumber* limit = nullptr) {
        if (error) *error = Sentence(key, text, limit ? stringFromNumber(limit).get() : nullptr);
        return RetainPtr<NSNumber>();
    };
    if (!text) return nullptr;
    std::u16string_view trimmed = Trimmed(text->units());
    if (trimmed.size() > kLongestText) {
        if (error) *error = Sentence("The text is too long for a number.", nullptr);
        return nullptr;
    }
    RetainPtr<NSNumber> number;
    if (mNegativeInfinity && Unicode(trimmed).caseCompare(Unicode(mNegativeInfinity->units()), 0) == 0) {
        number = NSNumber::numberWithDouble(-HUGE_VAL);
    } else {
        if (trimmed.size() > 1 && trimmed[0] == '+' && trimmed[1] != '-') trimmed.remove_prefix(1);
        if (!trimmed.empty()) number = mBackend->parse(trimmed);
        if (const auto plain = number ? std::nullopt : PlainNumber(trimmed))
            number = NSNumber::numberWithDouble(*plain);
    }
    if (!number) return refuse("“%1$@” is not a number.");
    if (mMinimum && number->doubleValue() < mMinimum->doubleValue())
        return refuse("“%1$@” is less than %2$@.", mMinimum);
    if (mMaximum && number->doubleValue() > mMaximum->doubleValue())
        return refuse("“%1$@” is more than %2$@.", mMaximum);
    return number;
}

RetainPtr<NSString> NSNumberFormatter::stringForObjectValue(const NSObject* object) const
{
    if (const auto* text = asKind<NSString>(object)) return stringFromNumber(read(text, nullptr).get());
    return stringFromNumber(asKind<NSNumber>(object));
}

bool NSNumberFormatter::getObjectValue(RetainPtr<NSObject>* object, const NSString* text,
                                       RetainPtr<NSString>* error) const
{
    if (object) *object = nullptr;
    if (!text || Trimmed(text->units()).empty()) return true;
    RetainPtr<NSNumber> number = read(text, error);
    if (!number) return false;
    if (object) *object = std::move(number);
    return true;
}
