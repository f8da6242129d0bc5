#include "Drawing.h"
#include "ZeResources.h"
#include "ZeResources.mac.h"
#include "ZeUIBitmap.h"

#include <memory>

namespace {

/// Column x has red x, all opaque.
std::unique_ptr<ZeBitmap> stripOf(std::size_t width, std::size_t height)
{
    const auto context = CGBitmapContextCreate(width, height);
    for (std::size_t x = 0; x < width; ++x)
        fill(context, CGRectMake(double(x), 0, 1, double(height)), double(x) / 255, 0, 0, 1);
    return std::make_unique<ZeBitmap>(CGBitmapContextCreateImage(context).leak(), true);
}

struct ZeResourcesGlyphTest : testing::Test {
    ZeResourcesGlyphTest() { resources.Init(L"org.tonaro.nowhere", &cache); } // cells need no bundle

    std::string describe(void* strip, int index, int count)
    {
        void* glyph = nullptr;
        if (const ZeResult result = resources.GetGlyph(strip, index, count, &glyph, nullptr))
            return "error " + std::to_string(result);
        const auto* image = static_cast<CGImageRef>(glyph);
        return std::to_string(CGImageGetWidth(image)) + "x" + std::to_string(CGImageGetHeight(image)) + " from " +
               std::to_string(CGImageGetPixels(image)[0]);
    }

    ZeResCacheMac cache;
    ZeResourcesMac resources;
};

} // namespace

TEST_F(ZeResourcesGlyphTest, CellsFillTheirStrip)
{
    static const struct {
        std::size_t width, height;
        int index, count;
        const char* cell;
    } kRows[] = {
        {64, 16, 0, 0, "16x16 from 0"},   {64, 16, 3, 0, "16x16 from 48"}, {64, 16, 4, 0, "error 87"},
        {64, 16, 3, -5, "16x16 from 48"}, {64, 16, -1, 4, "error 87"},     {64, 16, 1, 2, "32x16 from 32"},
        {100, 10, 0, 3, "error 87"},      {10, 2, 3, 4, "2x2 from 6"},     {10, 2, 4, 4, "error 87"},
        {3, 16, 0, 0, "error 87"},        {3, 16, 2, 3, "1x16 from 2"},    {3, 16, 0, 4, "error 87"},
    };
    for (const auto& row : kRows) {
        const auto strip = stripOf(row.width, row.height);
        EXPECT_EQ(describe(strip.get(), row.index, row.count), row.cell) << row.width << " in " << row.count;
    }
    const auto strip = stripOf(4, 4);
    EXPECT_EQ(resources.GetGlyph(strip.get(), 0, 1, nullptr, nullptr), kZeInvalidParameter);
    void* glyph = nullptr;
    EXPECT_EQ(ZeResourcesMac().GetGlyph(strip.get(), 0, 1, &glyph, nullptr), kZeInvalidParameter);
    EXPECT_EQ(ZeResources().GetGlyph(strip.get(), 0, 1, &glyph, nullptr), kZeInvalidParameter);
}

TEST_F(ZeResourcesGlyphTest, TheOutputIsClearedWhereAStripIsGiven)
{
    ZeBitmap empty(nullptr, false);
    const auto strip = stripOf(4, 4);
    const auto clears = [this](void* image, int index, int count) {
        void *glyph = this, *hilite = this;
        EXPECT_EQ(resources.GetGlyph(image, index, count, &glyph, &hilite), kZeInvalidParameter);
        return glyph == nullptr;
    };
    EXPECT_FALSE(clears(nullptr, 0, 1));
    EXPECT_FALSE(clears(&empty, 0, 1));
    EXPECT_FALSE(clears(strip.get(), -1, 1)) << "no such index";
    EXPECT_TRUE(clears(strip.get(), 1, 1)) << "behind the last cell";
    EXPECT_TRUE(clears(strip.get(), 0, 5)) << "more cells than pixels";
    EXPECT_TRUE(cache.items.empty());
}

TEST_F(ZeResourcesGlyphTest, CellsAreMadeOnceAndSharePixels)
{
    auto strip = stripOf(8, 4);
    void *glyph = nullptr, *hilite = nullptr, *again = nullptr, *hiliteAgain = nullptr;
    ASSERT_EQ(resources.GetGlyph(strip.get(), 1, 2, &glyph, &hilite), kZeSuccess);
    ASSERT_EQ(resources.GetGlyph(strip.get(), 1, 2, &again, &hiliteAgain), kZeSuccess);
    EXPECT_TRUE(again == glyph && hiliteAgain == hilite && hilite != glyph);
    ASSERT_EQ(cache.items.size(), 2u);
    EXPECT_EQ(cache.items[0]->type, 0x80001u);
    EXPECT_EQ(cache.items[0]->size, -1);
    EXPECT_EQ(cache.items[0]->refCount, 2u);
    EXPECT_EQ(cache.items[1]->type, 0xC0001u);
    EXPECT_EQ(cache.items[1]->size, int(sizeof(ZeBitmap)));
    EXPECT_STREQ(cache.items[0]->name, cache.items[1]->name);
    const auto cell = CGImageGetPixels(static_cast<CGImageRef>(glyph));
    EXPECT_EQ(cell.data(), CGImageGetPixels(strip->GetImage()).data() + 16);

    strip.reset();
    EXPECT_EQ(hexOf(cell, 0), "040000ff"); // the cell keeps the pixels
    for (int i = 0; i < 20; ++i) {         // later strips, perhaps at the same address, are others
        auto other = stripOf(8, 4);
        ASSERT_EQ(resources.GetGlyph(other.get(), 1, 2, &again, nullptr), kZeSuccess);
        EXPECT_NE(again, glyph);
    }
}

TEST_F(ZeResourcesGlyphTest, HighlightsCellsInAFrame)
{
    const auto strip = stripOf(40, 20); // the second cell: red 20 to 39
    void *glyph = nullptr, *hilite = nullptr;
    ASSERT_EQ(resources.GetGlyph(strip.get(), 1, 2, &glyph, &hilite), kZeSuccess);
    const auto* image = static_cast<CGImageRef>(hilite);
    ASSERT_EQ(CGImageGetWidth(image), 20u);
    auto pixel = [&](std::size_t x, std::size_t y) { return hexOf(CGImageGetPixels(image), 20 * y + x); };
    // The frame covers half of rows and columns 0 and 1, all of the last; then white; the picture is inside 2.5 to 18.
    EXPECT_EQ(pixel(0, 10), pixel(10, 1));
    EXPECT_NEAR(std::stoi(pixel(1, 10).substr(0, 2), nullptr, 16), 127.5, 1);
    EXPECT_EQ(pixel(1, 10).substr(4), "ffff");
    EXPECT_EQ(pixel(19, 10), "0000ffff");
    EXPECT_EQ(pixel(10, 19), "0000ffff");
    EXPECT_EQ(pixel(18, 10), "ffffffff");
    EXPECT_EQ(pixel(10, 18), "ffffffff");
    EXPECT_EQ(pixel(10, 10).substr(2), "0000ff");
    EXPECT_NEAR(std::stoi(pixel(3, 10).substr(0, 2), nullptr, 16), 20 + 1.3, 1.5);
    EXPECT_NEAR(std::stoi(pixel(17, 10).substr(0, 2), nullptr, 16), 39 - 0.7, 1.5);

    const auto narrow = stripOf(4, 4); // no room for a picture
    ASSERT_EQ(resources.GetGlyph(narrow.get(), 0, 1, &glyph, &hilite), kZeSuccess);
    EXPECT_EQ(hexOf(CGImageGetPixels(static_cast<CGImageRef>(hilite)), 4 * 2 + 2), "ffffffff");
}
