#include "ZeFontManager.h"

#include "AppKit/NSGraphicsContext.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

/// Counts what is made and measured.
struct CountingManager : ZeFontManagerMacImpl {
    using ZeFontManager::fontSize;
    CTFontRef createFontFor(int fontId) override
    {
        ++made;
        return ZeFontManagerMacImpl::createFontFor(fontId);
    }
    void sizeWithFont(const ZeString& text, CTFontRef font, CGContextRef context, tagSIZE* size) override
    {
        ++measured;
        ZeFontManagerMacImpl::sizeWithFont(text, font, context, size);
    }

    int made = 0, measured = 0;
};

tagSIZE sizeOf(const ZeString& text, CTFontRef font)
{
    tagSIZE size{-1, -1};
    ZeFontManager::sharedFontManager().sizeWithFont(text, font, nullptr, &size);
    return size;
}

} // namespace

TEST(ZeFontManager, EveryNumberHasItsFontAndSample)
{
    static const struct {
        int fontId;
        CGFloat size, ascent;
        tagSIZE sample; // the outline of "0", rounded up
    } kRows[] = {
        {0, 12, 11.14, {7, 10}}, {1, 12, 11.14, {8, 10}}, {2, 12, 11.14, {6, 10}}, {3, 10, 9.28, {6, 8}},
        {4, 10, 9.28, {5, 8}},   {5, 16, 14.26, {7, 11}}, {6, 0, 0, {}},           {-1, 0, 0, {}},
        {INT_MIN, 0, 0, {}},     {INT_MAX, 0, 0, {}},
    };
    ZeFontManagerMacImpl manager;
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.fontId);
        EXPECT_EQ(manager.fontSize(row.fontId), row.sample);
        const CTFontRef font = manager.fontFor(row.fontId);
        EXPECT_EQ(CTFontGetSize(font), row.size);
        EXPECT_NEAR(CTFontGetAscent(font), row.ascent, 0.01);
    }
    EXPECT_EQ(manager.fonts.size(), 6u);
}

TEST(ZeFontManager, MakesAndMeasuresOnce)
{
    CountingManager manager;
    const tagSIZE size = manager.fontSize(2);
    const CTFontRef font = manager.fontFor(2);
    EXPECT_EQ(manager.fontSize(2), size);
    EXPECT_EQ(manager.fontFor(2), font);
    EXPECT_EQ(manager.made, 1);
    EXPECT_EQ(manager.measured, 1);
    EXPECT_EQ(manager.createFontFor(2), font); // what is stored stays
    EXPECT_EQ(manager.fonts.size(), 1u);

    manager.fonts[2].second = {};
    EXPECT_EQ(manager.fontSize(2), size);
    EXPECT_EQ(manager.fonts[2].second, size);
    manager.fonts[2].second = {40, 50};
    EXPECT_EQ(manager.fontSize(2), (tagSIZE{40, 50}));
    manager.fonts[77]; // no font, nothing to measure
    EXPECT_EQ(manager.fontSize(77), tagSIZE{});
    EXPECT_EQ(manager.measured, 2);
}

TEST(ZeFontManager, MeasuresInk)
{
    const CTFontRef font = ZeFontManager::sharedFontManager().fontFor(2);
    EXPECT_EQ(&ZeFontManager::sharedFontManager(), &ZeFontManager::sharedFontManager());
    EXPECT_EQ(sizeOf(L"", font), tagSIZE{});
    EXPECT_EQ(sizeOf(L"   ", font), tagSIZE{});
    EXPECT_EQ(sizeOf(L"0", nullptr), tagSIZE{});
    // 7.22 a letter, of which 5.8 are ink
    EXPECT_EQ(sizeOf(L"000", font), (tagSIZE{21, 10}));
    EXPECT_EQ(sizeOf(ZeString(L"0\0000", 3), font), (tagSIZE{6, 10}));
    EXPECT_LT(sizeOf(L".", font).height, 4);
    ZeFontManager::sharedFontManager().sizeWithFont(L"0", font, nullptr, nullptr);

    const auto view = CGBitmapContextCreate(4, 4);
    CGContextScaleCTM(view, 2, 2);
    CGContextSetTextMatrix(view, {1, 0, 0, -1, 0.3, 0.7});
    const NSGraphicsContext::Scope current(view);
    EXPECT_EQ(sizeOf(L"000", font), (tagSIZE{21, 10})); // units of the view, wherever the text stands
    CGContextSetTextMatrix(view, {2, 0, 0, -2, 0, 0});
    EXPECT_EQ(sizeOf(L"000", font), (tagSIZE{41, 19})); // as large as it would be drawn there
}
