#include "ZePropertyMap.h"

#include "PosFmtFixture.h"

#include <limits>

TEST(ZeProperty, WritesItsValue)
{
    const auto text = [](auto value) { return ZeProperty(value).content->to_string(); };
    EXPECT_EQ(text(std::numeric_limits<int>::min()), L"-2147483648");
    EXPECT_EQ(text(std::numeric_limits<unsigned>::max()), L"4294967295");
    EXPECT_EQ(text(std::numeric_limits<long long>::max()), L"9223372036854775807");
    EXPECT_EQ(text(29.97), L"29.969999999999999");
    EXPECT_EQ(text(1e21), L"1e+21");
    EXPECT_TRUE(ZeProperty(1).content->is_arithmetic());
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
    const auto areEqual = [](const ZeProperty& a, const ZeProperty& b) {
        EXPECT_EQ(a.content->equal(*b.content), b.content->equal(*a.content));
        return a.content->equal(*b.content);
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(areEqual(ZeProperty(1), ZeProperty(1)));
    EXPECT_FALSE(areEqual(ZeProperty(1), ZeProperty(2)));
    EXPECT_FALSE(areEqual(ZeProperty(1), ZeProperty(1LL))) << "another type";
    EXPECT_FALSE(areEqual(ZeProperty(1), ZeProperty(1u))) << "another sign";
    EXPECT_TRUE(areEqual(ZeProperty(0.0), ZeProperty(-0.0)));
    EXPECT_FALSE(areEqual(ZeProperty(nan), ZeProperty(nan)));
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
