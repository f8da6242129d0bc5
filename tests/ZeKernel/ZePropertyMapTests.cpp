#include "ZePropertyMap.h"

#include "PosFmtFixture.h"

#include <limits>

TEST(ZeProperty, WritesItsValue)
{
    static const struct {
        ZeProperty property;
        const wchar_t* text;
    } kRows[] = {
        {ZeProperty(std::numeric_limits<int>::min()), L"-2147483648"},
        {ZeProperty(std::numeric_limits<unsigned>::max()), L"4294967295"},
        {ZeProperty(std::numeric_limits<long long>::max()), L"9223372036854775807"},
        {ZeProperty(29.97), L"29.969999999999999"},
        {ZeProperty(1e21), L"1e+21"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.property.content->to_string(), row.text);
        EXPECT_TRUE(row.property.content->is_arithmetic());
    }
}

TEST(ZeProperty, IsReadAsTheTypeItHolds)
{
    const ZeProperty property(3);
    EXPECT_EQ(property.get<int>(), 3);
    EXPECT_EQ(property.get<unsigned>(), 0u);
    EXPECT_EQ(property.get<long long>(), 0);
    EXPECT_EQ(property.get<double>(), 0.0);
    EXPECT_EQ(ZeProperty().get<int>(), 0);
}

TEST(ZeProperty, EqualsTheSameTypeAndValue)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    static const struct {
        const char* why;
        ZeProperty a, b;
        bool equal;
    } kRows[] = {
        {"same type, same value", ZeProperty(1), ZeProperty(1), true},
        {"same type, another value", ZeProperty(1), ZeProperty(2), false},
        {"another type", ZeProperty(1), ZeProperty(1LL), false},
        {"another sign", ZeProperty(1), ZeProperty(1u), false},
        {"zeros of both signs", ZeProperty(0.0), ZeProperty(-0.0), true},
        {"not a number", ZeProperty(nan), ZeProperty(nan), false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.a.content->equal(*row.b.content), row.equal);
        EXPECT_EQ(row.b.content->equal(*row.a.content), row.equal);
    }
}

TEST(ZePropertyMap, KeepsTheEntryThatIsThere)
{
    ZePropertyMap map;
    const auto [first, added] = map.insert<int>(L"eFormat", 3);
    EXPECT_TRUE(added);
    const auto [second, addedAgain] = map.insert<double>(L"eFormat", 5.0);
    EXPECT_FALSE(addedAgain);
    EXPECT_EQ(first, second);
    EXPECT_EQ(map[L"eFormat"].get<int>(), 3) << "neither value nor type changes";

    map[L"eFormat"] = ZeProperty(5.0);
    EXPECT_EQ(map[L"eFormat"].get<double>(), 5.0);
    EXPECT_TRUE(map.insert<int>(L"", 1).second) << "any key will do";
    EXPECT_EQ(map.begin()->first, L"") << "keys are ordered";
}

TEST(ZePropertyMap, CopiesAreIndependent)
{
    ZePropertyMap map;
    map.insert<int>(L"a", 1);
    ZePropertyMap copy = map;
    copy[L"a"] = ZeProperty(2);
    ZeProperty& alias = copy[L"a"];
    alias = copy[L"a"]; // itself
    EXPECT_EQ(copy[L"a"].get<int>(), 2);
    EXPECT_EQ(map[L"a"].get<int>(), 1);
}

namespace {

void Fill(ZePosFmt& fmt)
{
    fmt.eFormat = QVPOSFMT_PERCENT;
    fmt.dwSampleRate = 4000000000u;
    fmt.dFrameRate = 29.97;
    fmt.dTempo = 120.5;
    fmt.ntOffset = -1000;
    fmt.ccPercentBase = 44100;
    fmt.wBeatValue = 8;
    fmt.wBeatsPerMeasure = 7;
    fmt.cTicksPerBeat = 960;
}

constexpr const wchar_t* kNothingStored = L"cTicksPerBeat=0 ccPercentBase=0 dFrameRate=0 dTempo=0 dwSampleRate=0 "
                                          L"dwTimeSignature=0 eFormat=0 ntOffset=0 ";

} // namespace

TEST(PersistedPosFmt, ComesBack)
{
    ZePosFmt fmt, other;
    Fill(fmt);
    EXPECT_EQ(StoredText(fmt), L"cTicksPerBeat=960 ccPercentBase=44100 dFrameRate=29.969999999999999 dTempo=120.5 "
                               L"dwSampleRate=4000000000 dwTimeSignature=458760 eFormat=20 ntOffset=-1000 ");
    ZePropertyMap map;
    fmt.persist(map);
    other.restore(map);
    EXPECT_EQ(StoredText(other), StoredText(fmt));

    map[L"eFormat"] = ZeProperty(int{QVPOSFMT_SMPTE_DROP});
    map[L"dFrameRate"] = ZeProperty(25.0);
    other.restore(map);
    EXPECT_EQ(other.dFrameRate, 25.0) << "the stored rate counts, not the format's";
}

TEST(PersistedPosFmt, TakesNothingForWhatIsMissingOrMistyped)
{
    ZePosFmt fmt;
    Fill(fmt);
    ZePropertyMap map;
    fmt.restore(map);
    EXPECT_EQ(StoredText(fmt), kNothingStored);
    EXPECT_EQ(map.size(), 8u);
    for (const auto& [key, property] : map) EXPECT_EQ(property.content, nullptr);

    ZePropertyMap mistyped;
    mistyped.insert<unsigned>(L"eFormat", 3);
    mistyped.insert<int>(L"dwSampleRate", 44100);
    mistyped.insert<int>(L"dTempo", 120);
    mistyped.insert<double>(L"ntOffset", 1.0);
    Fill(fmt);
    fmt.restore(mistyped);
    EXPECT_EQ(StoredText(fmt), kNothingStored);
}
