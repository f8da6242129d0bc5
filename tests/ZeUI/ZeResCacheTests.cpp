#include "ZeResources.h"
#include "ZeResources.mac.h"
#include "ZeUIBitmap.h"

#include <cctype>
#include <cstring>
#include <gmock/gmock.h>
#include <map>

namespace {

constexpr auto kGlyphVariant = static_cast<tResCacheType>(0xA0000 + 5);
constexpr auto kHiliteVariant = static_cast<tResCacheType>(0xE0000);
constexpr auto kNoGlyph = static_cast<tResCacheType>(0x90000);
constexpr auto kGlyph = static_cast<tResCacheType>(eResCacheGlyph + 1);
constexpr auto kHilite = static_cast<tResCacheType>(eResCacheGlyphHilite + 1);
constexpr auto kOther = static_cast<tResCacheType>(0x10000);

/// A picture whose end can be seen.
struct Picture {
    RetainPtr<CGImage> kept = CGBitmapContextCreateImage(CGBitmapContextCreate(2, 1).get());
    WeakPtr<CGImage> seen = kept.get();
    CGImage* handOver() { return kept.leak(); }
};

struct ZeResCacheTest : testing::Test {
    /// One item for each letter, all named "n": Any, Data, String, Bitmap, Object, Glyph, Hilite glyph, Variants V and
    /// W of them, and X and Y of types without a name; lower case isn't owned, "0" stands for a bitmap and "1" for a
    /// string without data.
    void add(std::string_view letters)
    {
        static const std::map<char, tResCacheType> kTypes = {
            {'A', eResCacheAny},    {'D', eResCacheData},  {'S', eResCacheString}, {'B', eResCacheBitmap},
            {'O', eResCacheObject}, {'G', kGlyph},         {'H', kHilite},         {'V', kGlyphVariant},
            {'X', kOther},          {'W', kHiliteVariant}, {'Y', kNoGlyph},        {'0', eResCacheBitmap},
            {'1', eResCacheString}};
        for (const char letter : letters) {
            const int upper = std::toupper(letter);
            const tResCacheType type = kTypes.at(static_cast<char>(upper));
            void* const data = std::isdigit(letter) ? nullptr : upper == letter ? ownData(type) : &foreign;
            cache.AddItem(L"n", 1, data, upper == letter, type);
        }
    }
    void* ownData(tResCacheType type)
    {
        if (type == eResCacheObject) return &foreign;
        if (type == eResCacheString) return new wchar_t[1]{};
        if (type == eResCacheBitmap || ((type & 0x80000) != 0 && type != kNoGlyph))
            return new ZeBitmap(Picture().handOver(), true);
        return new char[1]{};
    }
    /// The count of each slot, '-' for an empty one.
    std::string counts() const
    {
        std::string text;
        for (const _ResourceItem* item : cache.items) text += item ? std::to_string(item->refCount) : "-";
        return text;
    }

    ZeResCacheMac cache;
    int foreign = 0;
};

TEST_F(ZeResCacheTest, LookUpsFindTheOldestOfAMatchingType)
{
    int first = 0, second = 0, third = 0;
    cache.AddItem(L"a", 7, &first, false, eResCacheString);
    cache.AddItem(L"a", 8, &second, false, eResCacheString);
    cache.AddItem(L"a", 9, &third, false, eResCacheBitmap);
    cache.AddItem(L"A", 3, &foreign, false, eResCacheAny);
    const struct {
        const wchar_t* name;
        tResCacheType type;
        void* data;
        int size;
    } kRows[] = {
        {L"a", eResCacheAny, &first, 7},   {L"a", eResCacheString, &first, 7},  {L"a", eResCacheBitmap, &third, 9},
        {L"a", eResCacheData, nullptr, 0}, {L"A", eResCacheAny, &foreign, 3},   {L"A", eResCacheString, nullptr, 0},
        {L"", eResCacheAny, nullptr, 0},   {nullptr, eResCacheAny, nullptr, 0},
    };
    for (const auto& row : kRows) {
        int size = -5;
        EXPECT_EQ(cache.GetResourceFromCache(row.name, row.type, &size), row.data);
        EXPECT_EQ(size, row.size);
    }
    EXPECT_EQ(counts(), "3122"); // only what was found
    EXPECT_EQ(cache.GetResourceFromCache(&third, eResCacheAny), cache.items[2]);
    EXPECT_EQ(cache.GetResourceFromCache(&third, eResCacheBitmap), cache.items[2]);
    EXPECT_EQ(cache.GetResourceFromCache(&third, eResCacheString), nullptr);
    EXPECT_EQ(counts(), "3122");
}

TEST_F(ZeResCacheTest, AnItemEndsAtTheUnloadOfItsLastReference)
{
    cache.AllocAddStringItem(L"a", 0, L"text");
    cache.AllocAddStringItem(L"b", 0, L"");
    cache.GetResourceFromCache(L"a", eResCacheString, nullptr);
    cache.GetResourceFromCache(L"a", eResCacheAny, nullptr);
    for (const char* after : {"21", "11", "-1", "-1"}) {
        cache.UnloadResource(L"a");
        EXPECT_EQ(counts(), after);
    }
    int size = 0;
    EXPECT_EQ(cache.GetResourceFromCache(L"a", eResCacheAny, nullptr), nullptr);
    EXPECT_STREQ(static_cast<wchar_t*>(cache.GetResourceFromCache(L"b", eResCacheAny, &size)), L"");
    EXPECT_EQ(size, 4); // the terminator
    cache.AllocAddStringItem(L"a", 0, L"new");
    EXPECT_EQ(counts(), "-21"); // an empty slot isn't filled again
}

TEST_F(ZeResCacheTest, UnloadWalksTheItemsOfAName)
{
    static const struct {
        const char *why, *items, *twice, *after; ///< `twice`: which items are looked up once more beforehand
    } kRows[] = {
        {"every bitmap of the name", "BB", "", "--"},
        {"bitmaps, then the string behind them", "BSS", "", "--1"},
        {"a bitmap that stays hides the string", "BS", "B", "11"},
        {"the first string alone", "SSB", "", "-11"},
        {"bitmaps, one glyph, nothing behind it", "BGBV", "", "--11"},
        {"a highlighted glyph is one", "HV", "", "-1"},
        {"so are the variants", "VW", "", "-1"},
        {"both of them", "WV", "", "-1"},
        {"but nothing in between", "YS", "", "11"},
        {"a glyph that stays hides the string", "GS", "G", "11"},
        {"what isn't owned stays and hides", "bS", "", "11"},
        {"what has no data", "1S", "", "11"},
        {"a bitmap without data", "0B", "", "11"},
        {"raw bytes without a type can't be unloaded", "AD", "", "11"},
        {"nor can objects", "OS", "", "11"},
        {"bitmaps up to the object", "BOB", "", "-11"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        cache.Reset();
        add(row.items);
        for (const char letter : std::string_view(row.twice))
            cache.GetResourceFromCache(L"n", letter == 'B' ? eResCacheBitmap : kGlyph, nullptr);
        cache.AddItem(L"N", 0, nullptr, true, eResCacheData); // another name
        cache.UnloadResource(L"n");
        EXPECT_EQ(counts(), std::string(row.after) + "1");
    }
    cache.UnloadResource(nullptr);
}

TEST_F(ZeResCacheTest, AnItemsOwnNameUnloadsIt)
{
    add("BGGS");
    cache.UnloadResource(cache.items[0]->name);
    EXPECT_EQ(counts(), "--11");
    cache.UnloadResource(cache.items[2]->name);
    EXPECT_EQ(counts(), "----");
}

TEST_F(ZeResCacheTest, ResetFreesWhatIsOwnedAndLeavesTheRest)
{
    Picture bitmap, glyph, lent;
    CGImage* image = bitmap.handOver();
    cache.AllocAddBitmapItem(L"b", 12, image);
    image = glyph.handOver();
    cache.AllocAddGlyphItem(L"g", 0, image, kHilite);
    ZeBitmap borrowed(lent.kept.get(), false);
    cache.AddItem(L"l", 0, &borrowed, false, eResCacheBitmap);
    add("ADSBGHVWXYOadsbgx01");
    cache.Reset();
    EXPECT_TRUE(cache.items.empty());
    EXPECT_FALSE(bitmap.seen);
    EXPECT_FALSE(glyph.seen);
    EXPECT_EQ(borrowed.GetWidth(), 2U);
    EXPECT_EQ(cache.GetResourceFromCache(L"b", eResCacheAny, nullptr), nullptr);
    add("S"); // and can be filled again
    EXPECT_EQ(counts(), "1");
}

TEST_F(ZeResCacheTest, CopiesOfDataFollowTheType)
{
    static const struct {
        tResCacheType type;
        int size;
        bool isCopied, owned;
    } kRows[] = {
        {eResCacheAny, 3, true, true},      {eResCacheData, 8, true, true},    {eResCacheString, 8, true, true},
        {eResCacheBitmap, 8, false, true},  {eResCacheObject, 8, false, true}, {kOther, 5, true, true},
        {eResCacheString, 0, false, false}, {eResCacheData, 0, false, false},  {eResCacheData, -1, false, true},
    };
    EXPECT_EQ(cache.AllocAddItem(L"n", 8, nullptr, eResCacheData), nullptr); // nothing to copy
    const wchar_t source[] = L"x";
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.type << ", " << row.size);
        cache.Reset();
        void* const copy = cache.AllocAddItem(L"n", row.size, source, row.type);
        const _ResourceItem& item = *cache.items.at(0);
        ASSERT_EQ(copy != nullptr, row.isCopied);
        EXPECT_EQ(item.data, copy);
        EXPECT_EQ(item.size, row.size);
        EXPECT_EQ(item.owned, row.owned);
        if (!copy) continue;
        EXPECT_EQ(std::memcmp(copy, source, static_cast<std::size_t>(row.size)), 0);
    }
}

TEST_F(ZeResCacheTest, GlyphsAreMadeByTheirKind)
{
    Picture picture;
    CGImage* image = picture.kept;
    for (const tResCacheType type : {kGlyph, kGlyphVariant, kOther})
        EXPECT_EQ(cache.AllocAddGlyphItem(L"n", 0, image, type), nullptr);
    EXPECT_TRUE(cache.items.empty());
    const void* const copy = cache.AllocAddGlyphItem(L"n", 1000, image, eResCacheData);
    EXPECT_EQ(std::memcmp(copy, &image, sizeof image), 0); // and no further
    EXPECT_EQ(cache.items[0]->size, static_cast<int>(sizeof image));
    image = picture.handOver();
    const ZeBitmap* const bitmap = cache.AllocAddGlyphItem(L"n", 0, image, kHilite);
    EXPECT_EQ(bitmap->GetImage(), image);
    EXPECT_EQ(cache.GetResourceFromCache(bitmap, kHilite)->size, static_cast<int>(sizeof(ZeBitmap)));
}

TEST_F(ZeResCacheTest, NamesAreShorterThan64)
{
    const ZeString longest(63, L'n');
    cache.AddItem(longest.c_str(), 0, &foreign, false, eResCacheObject);
    EXPECT_EQ(cache.GetResourceFromCache(longest.c_str(), eResCacheAny, nullptr), &foreign);
    EXPECT_EQ(cache.GetResourceFromCache((longest + L'n').c_str(), eResCacheAny, nullptr), nullptr);
    EXPECT_DEATH(cache.AddItem((longest + L'n').c_str(), 0, nullptr, false, eResCacheData), "cchSrc < cchDest");
}

TEST(ZeResCacheHandle, OwnsItsItems)
{
    Picture picture;
    {
        ZeResCache cache;
        cache.AddItem(L"b", 0, new ZeBitmap(picture.handOver(), true), true, eResCacheBitmap);
        EXPECT_TRUE(picture.seen);
    }
    EXPECT_FALSE(picture.seen);
}

} // namespace
