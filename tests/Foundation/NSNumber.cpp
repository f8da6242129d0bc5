#include "Foundation/NSNumber.h"

#include "Probe.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

TEST(NSNumber, ReadsAsOtherTypesWithoutUndefinedConversions)
{
    static const struct {
        const char* why;
        double value;
        std::int64_t wide;
        std::int32_t narrow;
    } kRows[] = {
        {"truncates toward zero", 2.9, 2, 2},
        {"below zero as well", -2.9, -2, -2},
        {"not-a-number is 0", std::nan(""), 0, 0},
        {"saturates above", 1e300, std::numeric_limits<std::int64_t>::max(), -1},
        {"saturates below", -HUGE_VAL, std::numeric_limits<std::int64_t>::min(), 0},
        {"the first float that does not fit", 0x1p63, std::numeric_limits<std::int64_t>::max(), -1},
        {"narrow keeps the low bits", 4294967297.0, 4294967297, 1},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto number = NSNumber::numberWithDouble(row.value);
        EXPECT_EQ(number->longLongValue(), row.wide);
        EXPECT_EQ(number->intValue(), row.narrow);
        EXPECT_EQ(NSUnbox<std::int32_t>(number.get()), row.narrow);
    }
    EXPECT_EQ(NSNumber::numberWithInt(-1)->unsignedIntValue(), 0xFFFFFFFFu);
    EXPECT_EQ(NSNumber::numberWithFloat(0.1f)->doubleValue(), double{0.1f});
    EXPECT_TRUE(NSNumber::numberWithDouble(0.1)->boolValue()); // not by way of an integer
}

TEST(NSNumber, EqualMeansTheSameValueAndHashesFollow)
{
    const RetainPtr<NSNumber> all[] = {
        NSNumber::numberWithBool(true),  NSNumber::numberWithInt(1),      NSNumber::numberWithUnsignedLongLong(1),
        NSNumber::numberWithFloat(1.0f), NSNumber::numberWithDouble(1.0),
    };
    for (const auto& a : all)
        for (const auto& b : all) {
            EXPECT_TRUE(a->isEqual(b));
            EXPECT_EQ(a->hash(), b->hash());
        }
    const RetainPtr<NSNumber> different[] = {
        NSNumber::numberWithDouble(0.1),
        NSNumber::numberWithFloat(0.1f),
        NSNumber::numberWithLongLong(-1),
        NSNumber::numberWithUnsignedLongLong(std::numeric_limits<std::uint64_t>::max()),
        NSNumber::numberWithDouble(0x1p64), // the one above, had it been compared as a float
        NSNumber::numberWithLongLong(0x7FFFFFFFFFFFFFFF),
        NSNumber::numberWithDouble(0x1p63),
    };
    for (const auto& a : different)
        for (const auto& b : different) EXPECT_EQ(a->isEqual(b), a == b) << a->stringValue()->utf8();
    EXPECT_TRUE(NSNumber::numberWithDouble(-0.0)->isEqual(NSNumber::numberWithInt(0).get()));
    EXPECT_TRUE(
        NSNumber::numberWithUnsignedLongLong(0x8000000000000000)->isEqual(NSNumber::numberWithDouble(0x1p63).get()));
    const int one = 1;
    EXPECT_FALSE(all[1]->isEqual(NSValue::value(&one, "i").get()));
}

TEST(NSNumber, TextIsTheShortestThatReadsBack)
{
    EXPECT_EQ(NSNumber::numberWithFloat(0.1f)->stringValue()->utf8(), "0.1");
    EXPECT_EQ(NSNumber::numberWithDouble(0.1)->stringValue()->utf8(), "0.1");
    EXPECT_EQ(NSNumber::numberWithDouble(440)->stringValue()->utf8(), "440");
    EXPECT_EQ(NSNumber::numberWithDouble(100000)->stringValue()->utf8(), "100000");
    EXPECT_EQ(NSNumber::numberWithFloat(1e10f)->stringValue()->utf8(), "10000000000");
    EXPECT_EQ(NSNumber::numberWithDouble(1e300)->stringValue()->utf8(), "1e+300");
    EXPECT_EQ(NSNumber::numberWithDouble(-0.5)->stringValue()->utf8(), "-0.5");
    EXPECT_EQ(NSNumber::numberWithDouble(-HUGE_VAL)->stringValue()->utf8(), "-inf");
    EXPECT_EQ(NSNumber::numberWithDouble(-std::nan(""))->stringValue()->utf8(), "nan");
    EXPECT_EQ(NSNumber::numberWithBool(true)->stringValue()->utf8(), "1");
    EXPECT_EQ(NSNumber::numberWithLongLong(INT64_MIN)->stringValue()->utf8(), "-9223372036854775808");
}

struct Pair {
    double value;
    unsigned id;
};
struct Nested {
    char tag;
    Pair pair;
    short tail;
};
union Mixed {
    double value;
    unsigned char bytes[9];
};
struct Event {
    unsigned kind;
    union {
        struct {
            void* unit;
            unsigned id, scope, element;
        } parameter;
        float other;
    } argument;
};

TEST(NSGetSizeOfEncoding, AgreesWithTheCompiler)
{
    static const struct {
        std::size_t size;
        std::vector<const char*> encodings;
    } kRows[] = {
        {1, {"c", "B"}},
        {2, {"S"}},
        {4, {"I", "l", "f"}},
        {8, {"q", "d", "*", "@", "@\"NSString\"", "@?", "#", ":", "^v", "r^{Unit}", "^^{Node=^{Node}i}", "(?=dI)"}},
        {12, {"[3i]"}},
        {sizeof(Pair), {"{Pair=dI}", "{Pair=\"value\"d\"id\"I}"}},
        {2 * sizeof(Pair), {"[2{Pair=dI}]"}},
        {sizeof(Nested), {"{Nested=c{Pair=dI}s}"}},
        {sizeof(Mixed), {"(Mixed=d[9C])"}},
        {sizeof(Event), {"{?=I(?={?=^vIII}f)}"}},
        {0, {"", "v", "x", "dd", "b3", "^", "{Pair}", "{Pair=dI", "{=}", "{Pair=dI)", "{Pair=v}", "{A=\"d"}},
        {0, {"[3i", "[i]", "[99999999999999999999i]", "[4000000[4000000d]]"}},
    };
    for (const auto& row : kRows)
        for (const char* encoding : row.encodings) EXPECT_EQ(NSGetSizeOfEncoding(encoding), row.size) << encoding;
    EXPECT_EQ(NSGetSizeOfEncoding(std::string(100000, '[').c_str()), 0u);
    EXPECT_EQ(NSGetSizeOfEncoding(std::string(100000, '^').c_str()), 0u);
    EXPECT_EQ(NSGetSizeOfEncoding(nullptr), 0u);
}

TEST(NSValue, CopiesBytesInAndOut)
{
    const Pair pair{0.5, 7};
    const auto value = NSValue::value(&pair, "{Pair=dI}");
    Pair out{};
    value->getValue(&out);
    EXPECT_EQ(out.value, 0.5);
    EXPECT_EQ(out.id, 7u);
    EXPECT_EQ(value->pointerValue(), nullptr);
    const auto pointer = NSValue::valueWithPointer(&out);
    EXPECT_EQ(pointer->pointerValue(), &out);
    EXPECT_TRUE(pointer->isEqual(NSValue::valueWithPointer(&out).get()));
    EXPECT_FALSE(pointer->isEqual(NSValue::valueWithPointer(&pair).get()));
    EXPECT_THAT(Thrown([&] { NSValue::value(&pair, "{Pair"); }), testing::HasSubstr("{Pair"));
}

} // namespace
