#include "Foundation/NSStringsFile.h"

#include "Foundation/NSPropertyList.h"

#include <algorithm>
#include <optional>

namespace {

struct StringsError {
    std::size_t line;
    std::string what;
};

bool IsBlank(char16_t unit) { return unit == ' ' || (unit >= '\t' && unit <= '\r') || unit == 0x2028 || unit == 0xA0; }

bool IsBareword(char16_t unit)
{
    static constexpr std::u16string_view kMarks = u"_.-$:";
    const bool isLetter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
    return isLetter || (unit >= '0' && unit <= '9') || kMarks.find(unit) != kMarks.npos || unit > 0xFF;
}

int HexDigit(char16_t unit)
{
    if (unit >= '0' && unit <= '9') return unit - '0';
    const int lower = unit | 0x20;
    return unit < 0x80 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

class StringsReader {
public:
    explicit StringsReader(std::u16string_view text) : mText(text) {}

    RetainPtr<NSDictionary> read()
    {
        auto table = make<NSMutableDictionary>();
        for (skipBlanks(); mAt < mText.size(); skipBlanks()) {
            const RetainPtr<NSString> key = readText("a key");
            RetainPtr<NSString> value = key;
            skipBlanks();
            if (take('=')) {
                skipBlanks();
                value = readText("a value");
                skipBlanks();
            }
            if (!take(';')) fail("expected “;”");
            table->setObject(value, key);
        }
        return table;
    }

private:
    [[noreturn]] void fail(std::string what) const { failAt(mAt, std::move(what)); }

    [[noreturn]] void failAt(std::size_t at, std::string what) const
    {
        const auto end = mText.begin() + static_cast<std::ptrdiff_t>(std::min(at, mText.size()));
        throw StringsError{1 + static_cast<std::size_t>(std::count(mText.begin(), end, u'\n')), std::move(what)};
    }

    bool take(char16_t expected)
    {
        if (mAt == mText.size() || mText[mAt] != expected) return false;
        ++mAt;
        return true;
    }

    void skipBlanks()
    {
        while (mAt < mText.size()) {
            const std::u16string_view rest = mText.substr(mAt);
            if (IsBlank(rest.front()))
                ++mAt;
            else if (rest.starts_with(u"//"))
                mAt = std::min(mText.find(u'\n', mAt), mText.size());
            else if (rest.starts_with(u"/*"))
                skipComment();
            else
                return;
        }
    }

    void skipComment()
    {
        const std::size_t end = mText.find(u"*/", mAt + 2);
        if (end == mText.npos) fail("a comment has no end");
        mAt = end + 2;
    }

    RetainPtr<NSString> readText(const char* what)
    {
        const std::size_t start = mAt;
        if (take('"')) return readQuoted(start);
        while (mAt < mText.size() && IsBareword(mText[mAt])) ++mAt;
        if (mAt == start) fail(std::string("expected ") + what);
        return NSString::string(std::u16string(mText.substr(start, mAt - start)));
    }

    RetainPtr<NSString> readQuoted(std::size_t start)
    {
        std::u16string text;
        while (!take('"')) {
            if (mAt == mText.size()) failAt(start, "a text has no closing quote");
            const char16_t unit = mText[mAt++];
            text += unit == '\\' ? readEscape(start) : unit;
        }
        return NSString::string(std::move(text));
    }

    char16_t readEscape(std::size_t start)
    {
        static constexpr std::u16string_view kNames = u"ntrabfv0", kUnits = u"\n\t\r\a\b\f\v";
        if (mAt == mText.size()) failAt(start, "a text has no closing quote");
        const char16_t unit = mText[mAt++];
        if (unit == 'U' || unit == 'u') return readHex();
        const std::size_t name = kNames.find(unit);
        if (name == kNames.npos) return unit;
        return name < kUnits.size() ? kUnits[name] : u'\0';
    }

    char16_t readHex()
    {
        unsigned value = 0;
        for (int i = 0; i < 4; ++i, ++mAt) {
            const int digit = mAt < mText.size() ? HexDigit(mText[mAt]) : -1;
            if (digit < 0) fail("“\\U” needs four hexadecimal digits");
            value = value * 16 + static_cast<unsigned>(digit);
        }
        return static_cast<char16_t>(value);
    }

    std::u16string_view mText;
    std::size_t mAt = 0;
};

std::u16string UnitsOf(std::string_view bytes)
{
    const bool isBig = bytes.starts_with("\xFE\xFF"), isLittle = bytes.starts_with("\xFF\xFE");
    if (!isBig && !isLittle) return NSUTF16FromUTF8(bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0));
    std::u16string units;
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
        const auto first = static_cast<unsigned char>(bytes[at]), second = static_cast<unsigned char>(bytes[at + 1]);
        units += static_cast<char16_t>(isBig ? first << 8 | second : second << 8 | first);
    }
    return units;
}

bool IsPropertyList(std::string_view bytes)
{
    return bytes.starts_with("bplist") || bytes.starts_with("<?xml") || bytes.starts_with("\xEF\xBB\xBF<?xml");
}

/// A table of texts only; null otherwise.
RetainPtr<NSDictionary> TextsOf(const RetainPtr<NSObject>& list)
{
    auto* const dictionary = asKind<NSDictionary>(list.get());
    if (!dictionary) return nullptr;
    const RetainPtr<NSArray> keys = dictionary->allKeys();
    for (const auto& key : *keys)
        if (!asKind<NSString>(dictionary->objectForKey(key.get()))) return nullptr;
    return dictionary;
}

} // namespace

RetainPtr<NSDictionary> NSReadStrings(std::string_view bytes, const std::string& file, std::string* error)
{
    if (IsPropertyList(bytes)) {
        auto texts = TextsOf(NSReadPropertyList(bytes));
        if (!texts && error) *error = file + ": is no property list of texts";
        return texts;
    }
    const std::u16string units = UnitsOf(bytes);
    try {
        return StringsReader(units).read();
    } catch (const StringsError& failure) {
        if (error) *error = file + ":" + std::to_string(failure.line) + ": " + failure.what;
        return nullptr;
    }
}
