#include "Foundation/NSNumberFormatter.h"

#include "Foundation/NSCoder.h"
#include "Probe.h"

#include <cmath>
#include <cstdlib>
#include <map>

namespace {

RetainPtr<NSNumberFormatter> Formatter(const char* locale, const char* pattern = "#,##0.##")
{
    auto formatter = make<NSNumberFormatter>();
    formatter->setLocaleIdentifier(NSString::string(locale).get());
    formatter->setFormat(NSString::string(pattern).get());
    return formatter;
}

std::string Written(const NSNumberFormatter& formatter, double value)
{
    return formatter.stringFromNumber(NSNumber::numberWithDouble(value).get())->utf8();
}

/// The number a text reads as, or "no".
std::string Read(const NSNumberFormatter& formatter, std::string_view text)
{
    const auto number = formatter.numberFromString(NSString::string(text).get());
    return number ? number->stringValue()->utf8() : "no";
}

TEST(NSNumberFormatter, WritesAsTheLocaleDoes)
{
    static const struct {
        const char *locale, *text;
    } kRows[] = {
        {"en_US", "1,234,567.5"}, {"de_DE.UTF-8", "1.234.567,5"}, {"fr_FR", "1\u202F234\u202F567,5"},
        {"C", "1,234,567.5"},     {"de_CH@euro", "1’234’567.5"},  {"ar_EG", "١٬٢٣٤٬٥٦٧٫٥"},
        {"xx_YY", "1,234,567.5"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.locale);
        const auto formatter = Formatter(row.locale);
        EXPECT_EQ(Written(*formatter, 1234567.5), row.text);
        EXPECT_EQ(Read(*formatter, row.text), "1234567.5");
        const auto least = NSNumber::numberWithLongLong(INT64_MIN);
        EXPECT_TRUE(formatter->numberFromString(formatter->stringFromNumber(least).get())->isEqual(least));
    }
}

TEST(NSNumberFormatter, TakesTheUsersLocaleFromTheEnvironment)
{
    const char* const kNames[] = {"LC_ALL", "LC_NUMERIC", "LANG"};
    std::map<std::string, std::string> before;
    for (const char* name : kNames)
        if (const char* value = std::getenv(name)) before[name] = value;
    static const struct {
        const char *all, *numeric, *lang, *separator;
    } kRows[] = {
        {"de_DE.UTF-8", "en_US", "en_US", ","}, {"", "fr_FR", "en_US", ","}, {"", "", "pl_PL", ","}, {"", "", "", "."},
        {"C.UTF-8", "de_DE", "de_DE", "."},
    };
    for (const auto& row : kRows) {
        setenv("LC_ALL", row.all, 1);
        setenv("LC_NUMERIC", row.numeric, 1);
        setenv("LANG", row.lang, 1);
        EXPECT_EQ(make<NSNumberFormatter>()->decimalSeparator()->utf8(), row.separator) << row.all << row.lang;
    }
    for (const char* name : kNames) unsetenv(name);
    for (const auto& [name, value] : before) setenv(name.c_str(), value.c_str(), 1);
}

TEST(NSNumberFormatter, ReadsWhatAPersonTypesAndNothingElse)
{
    static const struct {
        const char *locale, *number;
        std::vector<const char*> texts;
    } kRows[] = {
        {"en_US", "1234", {" 1,234 "}},
        {"en_US", "-5", {"-5"}},
        {"en_US", "5", {"+5", "5."}},
        {"en_US", "0.5", {".5"}},
        {"en_US", "1.25", {"1.25"}},
        {"en_US", "1e+20", {"99999999999999999999"}},
        {"en_US", "-inf", {"-\u221E"}},
        {"de_DE", "1000.5", {"1000,5", "1000.5", "1.000,5"}},
        {"de_DE", "1.5", {"1.5"}},
        {"de_DE", "1000", {"1.000"}},
        {"fr_FR", "1000.5", {"1000.5", "1 000,5"}},
        {"en_US", "no", {"", " ", "abc", "5 samples", "1e3", "12,34", "1,5", "NaN", "nan", "inf", "0x10"}},
        {"en_US", "no", {"--5", "+-5", "+", "-", ".", "1.2.3"}},
        {"de_DE", "no", {"1.0.5", "1000.5,5"}},
    };
    for (const auto& row : kRows)
        for (const char* text : row.texts) {
            EXPECT_EQ(Read(*Formatter(row.locale), text), row.number) << row.locale << " " << text;
            EXPECT_EQ(Read(*Formatter(row.locale, "0.0"), text), row.number) << "ungrouped " << text;
        }
    const auto formatter = Formatter("en_US");
    EXPECT_EQ(Read(*formatter, std::string(300, '9')), "1e+300");
    EXPECT_EQ(Read(*formatter, std::string(900, '9')), "no"); // no infinity by digits alone
    EXPECT_EQ(Read(*formatter, "-" + std::string(900, '9')), "no");
    EXPECT_EQ(Read(*formatter, std::string(1000000, '9')), "no");
    EXPECT_EQ(Read(*formatter, "0." + std::string(900, '0') + "1"), "0");
}

TEST(NSNumberFormatter, RoundsHalvesToEven)
{
    const auto formatter = Formatter("en_US", "0.00");
    EXPECT_EQ(Written(*formatter, 2.125), "2.12");
    EXPECT_EQ(Written(*formatter, 2.375), "2.38");
    formatter->setMinimumFractionDigits(0);
    formatter->setMaximumFractionDigits(1);
    EXPECT_EQ(Written(*formatter, 2.0), "2");
    EXPECT_EQ(Written(*formatter, 1234.25), "1234.2");
    formatter->setUsesGroupingSeparator(true);
    EXPECT_EQ(Written(*formatter, 1234.25), "1,234.2");
    formatter->setFormat("0.00"_ns.get()); // applied anew, since digits were set meanwhile
    EXPECT_EQ(Written(*formatter, 1234.25), "1234.25");
    CaughtLog log;
    formatter->setFormat("0.0;;'"_ns.get());
    EXPECT_THAT(log.text(), testing::HasSubstr("0.0;;'"));
    EXPECT_EQ(Written(*formatter, 1234.25), "1234.25");
    EXPECT_EQ(formatter->stringFromNumber(NSNumber::numberWithUnsignedLongLong(UINT64_MAX).get())->utf8(),
              "18446744073709551615.00");
}

TEST(NSNumberFormatter, IgnoresPatternsThatCantBeReadBy)
{
    const CaughtLog log;
    const auto formatter = Formatter("en_US", "~0.000");
    EXPECT_EQ(Read(*formatter, "1.5"), "1.5") << "reading by it would end the process";
    EXPECT_THAT(log.text(), testing::HasSubstr("“~0.000” is no pattern"));
    EXPECT_EQ(Written(*Formatter("en_US", "'~'0.0"), 1.5), "~1.5");
}

TEST(NSNumberFormatter, MinusInfinityHasASymbol)
{
    const auto formatter = Formatter("de_DE", "0.0");
    formatter->setNegativeInfinitySymbol("-Inf"_ns.get());
    EXPECT_EQ(Written(*formatter, -HUGE_VAL), "-Inf");
    EXPECT_EQ(Written(*formatter, -119.9), "-119,9");
    for (const char* text : {"-Inf", "-inf", " -INF "}) EXPECT_EQ(Read(*formatter, text), "-inf") << text;
    EXPECT_EQ(Read(*formatter, "-Infinite"), "no");
}

TEST(NSNumberFormatter, RefusalsNameTextAndLimit)
{
    const auto formatter = Formatter("de_DE");
    formatter->setMinimum(NSNumber::numberWithDouble(0.5).get());
    formatter->setMaximum(NSNumber::numberWithInt(20000).get());
    const auto why = [&](const char* text) {
        RetainPtr<NSString> error = "none"_ns;
        RetainPtr<NSObject> value = formatter;
        const bool reads = formatter->getObjectValue(&value, NSString::string(text).get(), &error);
        EXPECT_EQ(reads && *text != '\0', bool(value));
        return error->utf8();
    };
    EXPECT_EQ(why("abc"), "“abc” is not a number.");
    EXPECT_EQ(why("%2$@"), "“%2$@” is not a number.");
    EXPECT_EQ(why("0,4"), "“0,4” is less than 0,5.");
    EXPECT_EQ(why("20001"), "“20001” is more than 20.000.");
    EXPECT_EQ(why("20000"), "none");
    EXPECT_EQ(why(""), "none");
    EXPECT_FALSE(formatter->getObjectValue(nullptr, "abc"_ns.get(), nullptr));
    EXPECT_EQ(formatter->stringForObjectValue("1000"_ns.get())->utf8(), "1.000");
    EXPECT_FALSE(formatter->stringForObjectValue("abc"_ns.get()));
    EXPECT_FALSE(formatter->stringForObjectValue(nullptr));
}

/// A description with these attributes.
class Attributes : public NSCoder {
public:
    std::map<std::string, std::string> texts;
    bool containsValueForKey(const char* key) const override { return texts.contains(key); }
    double decodeDoubleForKey(const char* key, double) const override { return std::stod(texts.at(key)); }
    bool decodeBoolForKey(const char* key, bool) const override { return texts.at(key) == "YES"; }
    long decodeIntegerForKey(const char* key, long) const override { return std::stol(texts.at(key)); }
    RetainPtr<NSString> decodeStringForKey(const char* key) const override
    {
        return texts.contains(key) ? NSString::string(texts.at(key)) : nullptr;
    }
    RetainPtr<NSObject> decodeObjectForKey(const char*) override { return nullptr; }
};

TEST(NSNumberFormatter, IsMadeFromADescription)
{
    Attributes attributes;
    attributes.texts = {{"positiveFormat", "0.000"},
                        {"maximumFractionDigits", "1"},
                        {"minimumFractionDigits", "1"},
                        {"usesGroupingSeparator", "YES"},
                        {"maximum", "20000"}};
    const auto formatter = make<NSNumberFormatter>(&NSNumberFormatter::initWithCoder, attributes);
    formatter->setLocaleIdentifier("en_US"_ns.get());
    EXPECT_EQ(Written(*formatter, 1234), "1,234.0");
    EXPECT_EQ(Read(*formatter, "20,001"), "no");
    EXPECT_EQ(Read(*formatter, "-1"), "-1");
}

} // namespace
