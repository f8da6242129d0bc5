#include "ZeString.h"

#include <cstring>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

namespace {

constexpr _GUID kGuid = {0x6BA7B810, 0x9DAD, 0x11D1, {0x80, 0xB4, 0x00, 0xC0, 0x4F, 0xD4, 0x30, 0xC8}};

bool operator==(const _GUID& a, const _GUID& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

_ZeString<char> Narrow(const _GUID& g)
{
    _ZeString<char> text;
    ZeGuidToStringA(text, g);
    return text;
}

_GUID Read(const _ZeString<char>& text)
{
    _GUID narrow = {0xDEADBEEF, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}}, wide = narrow;
    ZeGuidFromStringA(text, narrow);
    ZeGuidFromString(ZeString(text.begin(), text.end()), wide);
    EXPECT_TRUE(narrow == wide) << text;
    return wide;
}

} // namespace

TEST(ZeGuid, ReadsWhatTheTextSupplies)
{
    static const struct {
        const char* why;
        const char* text;
        _GUID guid;
    } kRows[] = {
        {"as written", "6ba7b810-9dad-11d1-80b4-00c04fd430c8", kGuid},
        {"in capitals", "6BA7B810-9DAD-11D1-80B4-00C04FD430C8", kGuid},
        {"blanks before numbers", " 6ba7b810- 9dad-11d1-80b4-00c04f d430c8", kGuid},
        {"nothing", "", {}},
        {"no number", "{6ba7b810-9dad-11d1-80b4-00c04fd430c8}", {}},
        {"cut in the second number", "6ba7b810-9d", {0x6BA7B810, 0x9D, 0, {}}},
        {"another separator", "6ba7b810:9dad", {0x6BA7B810, 0, 0, {}}},
        {"cut in the last group", "6ba7b810-9dad-11d1-80b4-00c", {0x6BA7B810, 0x9DAD, 0x11D1, {0x80, 0xB4, 0, 0xC}}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(Read(row.text) == row.guid) << Narrow(Read(row.text));
    }
}

TEST(ZeGuid, ReadsBackWhatItWrites)
{
    EXPECT_EQ(Narrow(kGuid), "6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    std::mt19937_64 random(1);
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t halves[] = {random(), random() >> random() % 64};
        _GUID guid;
        std::memcpy(&guid, halves, sizeof guid);
        const auto narrow = Narrow(guid);
        ZeString wide;
        ZeGuidToString(wide, guid);
        EXPECT_EQ(narrow.size(), 36u);
        EXPECT_EQ(wide, ZeString(narrow.begin(), narrow.end()));
        EXPECT_TRUE(Read(narrow) == guid) << narrow;
    }
}
