#include "CoreText/CTLine.h"

#include "CoreGraphics/Pixels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using testing::ElementsAre;

namespace {

RetainPtr<CTFont> fontOf(const char* name, CGFloat size)
{
    const auto text = NSString::string(name);
    return CTFontCreateWithName(text, size);
}

RetainPtr<CTLine> lineOf(std::u16string_view text, CGFloat size = 12)
{
    const auto font = fontOf("Lucida Grande", size);
    return CTLineCreate(text, font);
}

CGFloat widthOf(std::u16string_view text, CTFontRef font)
{
    const auto line = CTLineCreate(text, font);
    return CTLineGetTypographicBounds(line).width;
}

/// Black text on a transparent bitmap, the baseline starting at (x, y).
RetainPtr<CGContext> drawn(std::u16string_view text, CGFloat size, CGFloat scale, CGFloat x, CGFloat y)
{
    const auto side = static_cast<std::size_t>(64 * scale);
    const auto context = CGBitmapContextCreate(side, side);
    CGContextScaleCTM(context, scale, scale);
    const auto black = CGColorCreateRGBA(0, 0, 0, 1);
    const auto line = lineOf(text, size);
    CTLineDraw(line, context, {x, y}, black);
    return context;
}

} // namespace

TEST(CTFont, NamesStandForFaces)
{
    static const struct {
        const char* name;
        double ascent, descent, widthOfI, widthOfM; // at 100: the faces' own tables, in hundredths of an em
    } kRows[] = {
        {"Lucida Grande", 92.8, 23.6, 27.78, 86.28}, {"Lucida Grande-Bold", 92.8, 23.6, 34.28, 99.51},
        {"Monaco", 92.8, 23.6, 60.21, 60.21},        {"Times Roman", 89.1, 21.6, 27.78, 88.92},
        {"No Such Font", 92.8, 23.6, 27.78, 86.28},  {"", 92.8, 23.6, 27.78, 86.28},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        const auto font = fontOf(row.name, 100);
        EXPECT_NEAR(CTFontGetAscent(font), row.ascent, 0.1);
        EXPECT_NEAR(CTFontGetDescent(font), row.descent, 0.1);
        EXPECT_NEAR(widthOf(u"i", font), row.widthOfI, 0.02);
        EXPECT_NEAR(widthOf(u"M", font), row.widthOfM, 0.02);
    }
    EXPECT_NEAR(CTFontGetAscent(fontOf("Lucida Grande", 12).get()), 11.14, 0.005);
    EXPECT_NEAR(CTFontGetDescent(fontOf("Lucida Grande", 12).get()), 2.83, 0.005);
}

TEST(CTFont, SizesAreKeptToWhatCanBeDrawn)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    static const struct {
        double given, kept;
    } kRows[] = {{12.5, 12.5}, {0, 0.1}, {-3, 0.1}, {kInfinity, 4096}, {-kInfinity, 0.1}, {std::nan(""), 12}};
    for (const auto& row : kRows) EXPECT_EQ(CTFontGetSize(CTFontCreateWithName(nullptr, row.given).get()), row.kept);
}

TEST(CTLine, MeasuresGrowWithSizeAndText)
{
    const auto small = fontOf("Lucida Grande", 10), large = fontOf("Lucida Grande", 30);
    EXPECT_NEAR(widthOf(u"Frequency", large), 3 * widthOf(u"Frequency", small), 0.05);
    EXPECT_NEAR(widthOf(u"0123", small) + widthOf(u"45678", small), widthOf(u"012345678", small), 0.01);
    EXPECT_NEAR(widthOf(u"0", small), 6.36, 0.01);
    EXPECT_EQ(widthOf(u"", small), 0);
    const auto empty = CTLineCreate(u"", small);
    EXPECT_EQ(CTLineGetTypographicBounds(empty).ascent, CTFontGetAscent(small));
}

TEST(CTLine, ControlCharactersNeverBreakTheLine)
{
    const auto font = fontOf("Lucida Grande", 12);
    const CGFloat ab = widthOf(u"ab", font);
    for (std::u16string between : {u"\n", u"\r\n", u"\u2028", u"\u2029", u"\u0085", u"\x01", u"\x7f"})
        EXPECT_NEAR(widthOf(u"a" + between + u"b", font), ab, 0.01) << int(between[0]);
    EXPECT_NEAR(widthOf(std::u16string_view(u"a\0b", 3), font), ab, 0.01);
    EXPECT_NEAR(widthOf(u"a\tb", font), widthOf(u"a b", font), 0.01);
}

TEST(CTLine, CaretsStandBetweenWhatPeopleSeeAsCharacters)
{
    static const struct {
        const char* why;
        std::u16string text;
        std::vector<std::size_t> carets;
    } kRows[] = {
        {"nothing", u"", {0}},
        {"plain", u"abc", {0, 1, 2, 3}},
        {"umlaut of one unit", u"\u00e4b", {0, 1, 2}},
        {"a mark belongs to its letter", u"xe\u0301y", {0, 1, 3, 4}},
        {"a pair is one", u"a\U0001f600b", {0, 1, 3, 4}},
        {"a family is one", u"\U0001f468\u200d\U0001f469\u200d\U0001f467!", {0, 8, 9}},
        {"a flag is one", u"\U0001f1e9\U0001f1ea", {0, 4}},
        {"lone halves are characters",
         u"\xd83d"
         u"a\xde00",
         {0, 1, 2, 3}},
        {"halves in the wrong order", u"\xde00\xd83d", {0, 1, 2}},
        {"line ends can be passed", u"a\nb", {0, 1, 2, 3}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto line = lineOf(row.text);
        EXPECT_EQ(CTLineGetCaretPositions(line), row.carets);
    }
}

// For text of one direction carets lie in order, the last at the width, and each is found again from its place.
TEST(CTLine, CaretsAndPlacesCorrespond)
{
    for (std::u16string text : {u"Start frequency", u"xe\u0301y fi \U0001f600\u20ac", u"a\xd83d\nb\t\u00e4"}) {
        const auto line = lineOf(text);
        CGFloat last = -1;
        for (std::size_t caret : CTLineGetCaretPositions(line)) {
            const CGFloat x = CTLineGetOffsetForStringIndex(line, caret);
            EXPECT_GE(x, last);
            const std::size_t found = CTLineGetStringIndexForPosition(line, x + 0.01);
            EXPECT_EQ(CTLineGetOffsetForStringIndex(line, found), x) << caret; // a line end has no width of its own
            last = x;
        }
        EXPECT_NEAR(last, CTLineGetTypographicBounds(line).width, 0.01);
        EXPECT_EQ(CTLineGetOffsetForStringIndex(line, 1000), last);
    }
}

TEST(CTLine, APlaceTakesTheNearerCaret)
{
    const auto line = lineOf(u"0\U0001f600"
                             u"0");
    const CGFloat first = CTLineGetOffsetForStringIndex(line, 1), second = CTLineGetOffsetForStringIndex(line, 3);
    EXPECT_EQ(CTLineGetOffsetForStringIndex(line, 2), first); // inside the pair
    static const auto kFar = std::numeric_limits<double>::infinity();
    const std::pair<CGFloat, std::size_t> rows[] = {
        {-5, 0},
        {0.4 * first, 0},
        {0.6 * first, 1},
        {0.6 * first + 0.4 * second, 1},
        {0.4 * first + 0.6 * second, 3},
        {second + 0.9 * first, 4},
        {1e18, 4},
        {kFar, 4},
        {-kFar, 0},
        {std::nan(""), 0},
    };
    for (const auto& [x, index] : rows) EXPECT_EQ(CTLineGetStringIndexForPosition(line, x), index) << x;
}

TEST(CTLine, SelectionsOfTwoDirectionsFallIntoSpans)
{
    const auto latin = lineOf(u"abcdef");
    const auto one = CTLineGetSelectionSpans(latin, 1, 4);
    ASSERT_EQ(one.size(), 1u);
    EXPECT_NEAR(one[0].x, CTLineGetOffsetForStringIndex(latin, 1), 0.01);
    EXPECT_NEAR(one[0].x + one[0].width, CTLineGetOffsetForStringIndex(latin, 4), 0.01);
    EXPECT_TRUE(CTLineGetSelectionSpans(latin, 2, 2).empty());
    EXPECT_TRUE(CTLineGetSelectionSpans(latin, 7, 99).empty());

    // the selection takes "c" and the first Hebrew letter, which stands at the far right
    const auto mixed = lineOf(u"abc\u05d0\u05d1\u05d2");
    const auto two = CTLineGetSelectionSpans(mixed, 2, 4);
    ASSERT_EQ(two.size(), 2u);
    EXPECT_NEAR(two[1].x + two[1].width, CTLineGetTypographicBounds(mixed).width, 0.01);
    const auto all = CTLineGetSelectionSpans(mixed, 0, 99);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_NEAR(all[0].width, CTLineGetTypographicBounds(mixed).width, 0.01);
}

TEST(CTLine, FindsWords)
{
    const auto line = lineOf(u"  one, \U0001f600 two\u00e4 3.5");
    std::vector<std::pair<std::size_t, std::size_t>> words;
    for (const CTLineWord& word : CTLineGetWords(line)) words.emplace_back(word.start, word.end);
    EXPECT_THAT(words, ElementsAre(std::pair(2, 5), std::pair(10, 14), std::pair(15, 18)));
    EXPECT_TRUE(CTLineGetWords(lineOf(u" ,").get()).empty());
}

TEST(CTLine, TruncatedTextIsTheLongestThatFits)
{
    const auto font = fontOf("Lucida Grande", 12);
    const std::u16string text = u"Start fre\u0301quency \U0001f600\U0001f600 (Hz)";
    const CGFloat whole = widthOf(text, font), mark = widthOf(u"\u2026", font);
    const auto line = CTLineCreate(text, font);
    const std::vector<std::size_t> carets = CTLineGetCaretPositions(line);
    EXPECT_EQ(CTTruncatedEnd(text, font, whole), text);
    EXPECT_EQ(CTTruncatedEnd(text, font, mark - 0.01), u"");
    EXPECT_EQ(CTTruncatedEnd(text, font, std::nan("")), u"");
    for (CGFloat width = mark; width < whole; width += 1.7) {
        const std::u16string cut = CTTruncatedEnd(text, font, width);
        ASSERT_FALSE(cut.empty());
        EXPECT_EQ(cut.back(), u'\u2026');
        EXPECT_LE(widthOf(cut, font), width);
        const auto caret = std::find(carets.begin(), carets.end(), cut.size() - 1);
        ASSERT_NE(caret, carets.end()) << "cut inside a character";
        EXPECT_EQ(cut.substr(0, *caret), text.substr(0, *caret));
        if (caret + 1 != carets.end()) {
            EXPECT_GT(widthOf(text.substr(0, caret[1]) + u"\u2026", font), width);
        }
    }
}

TEST(CTLine, CutsAtTheEndOrInTheMiddle)
{
    const auto font = fontOf("Monaco", 10); // every letter has the same width
    const CGFloat letter = widthOf(u"0", font);
    static const struct {
        const char* why;
        CTLineTruncationType type;
        CGFloat letters;
        const char16_t *token, *text; // null text: no line
    } kRows[] = {
        {"fits", kCTLineTruncationMiddle, 8.1, u"\u2026", u"abcdefgh"},
        {"end, with a mark", kCTLineTruncationEnd, 5.5, u"\u2026", u"abcd\u2026"},
        {"end, without", kCTLineTruncationEnd, 5.5, nullptr, u"abcde"},
        {"middle, odd", kCTLineTruncationMiddle, 6.5, u"\u2026", u"abc\u2026gh"},
        {"middle, even", kCTLineTruncationMiddle, 5.5, u"--", u"ab--h"},
        {"only the mark fits", kCTLineTruncationMiddle, 1.5, u"\u2026", u"\u2026"},
        {"not even the mark", kCTLineTruncationEnd, 0.5, u"\u2026", nullptr},
        {"nothing fits", kCTLineTruncationEnd, 0.5, nullptr, u""},
    };
    const auto line = CTLineCreate(u"abcdefgh", font);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto token = row.token ? CTLineCreate(row.token, font) : nullptr;
        const auto cut = CTLineCreateTruncatedLine(line, row.letters * letter, row.type, token);
        ASSERT_EQ(bool(cut), row.text != nullptr);
        if (!cut) continue;
        const auto expected = CTLineCreate(row.text, font);
        EXPECT_DOUBLE_EQ(CTLineGetTypographicBounds(cut).width, CTLineGetTypographicBounds(expected).width);
        const auto a = CGBitmapContextCreate(64, 16), b = CGBitmapContextCreate(64, 16);
        const auto black = CGColorCreateRGBA(0, 0, 0, 1);
        CTLineDraw(cut, a, {1, 12}, black);
        CTLineDraw(expected, b, {1, 12}, black);
        EXPECT_TRUE(std::ranges::equal(CGBitmapContextGetPixels(a), CGBitmapContextGetPixels(b)));
    }
    EXPECT_FALSE(CTLineCreateTruncatedLine(nullptr, 10, kCTLineTruncationEnd, nullptr));
}

TEST(CTLine, TheTextMatrixTurnsLettersAndTheirBounds)
{
    const auto line = lineOf(u"L", 40);
    const auto black = CGColorCreateRGBA(0, 0, 0, 1);
    static const struct {
        const char* why;
        CGAffineTransform matrix;
        InkBox box;     // hand-read from the outline: stem at 0.098 of the size, 0.729 high, foot to 0.553
        bool footFirst; // the row of the foot is at the top
    } kRows[] = {
        {"upright", {1, 0, 0, -1, 0, 0}, {23, 20, 42, 50}, false},
        {"mirrored", {1, 0, 0, 1, 0, 0}, {23, 50, 42, 80}, true},
        {"half as high", {1, 0, 0, -0.5, 0, 0}, {23, 35, 42, 50}, false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto context = CGBitmapContextCreate(100, 100);
        CGContextSetTextMatrix(context, row.matrix);
        CGContextSetTextPosition(context, 20, 50);
        CTLineDraw(line, context, black);
        const InkBox ink = inkBoxOf(context);
        const CGRect bounds = CTLineGetImageBounds(line, context);
        EXPECT_NEAR(double(ink.left), double(row.box.left), 1);
        EXPECT_NEAR(double(ink.right), double(row.box.right), 1);
        EXPECT_NEAR(double(ink.top), double(row.box.top), 1);
        EXPECT_NEAR(double(ink.bottom), double(row.box.bottom), 1);
        EXPECT_EQ(double(ink.left), std::floor(bounds.origin.x));
        EXPECT_EQ(double(ink.top), std::floor(bounds.origin.y));
        EXPECT_EQ(double(ink.right), std::ceil(CGRectGetMaxX(bounds)));
        EXPECT_EQ(double(ink.bottom), std::ceil(CGRectGetMaxY(bounds)));
        const std::size_t foot = row.footFirst ? ink.top : ink.bottom - 1;
        EXPECT_EQ(CGBitmapContextGetPixels(context)[4 * (100 * foot + 38) + 3], 255);
    }
    const CGRect alone = CTLineGetImageBounds(lineOf(u"0").get(), nullptr);
    EXPECT_NEAR(alone.origin.x, 0.79, 0.01);
    EXPECT_NEAR(alone.origin.y, -0.17, 0.01);
    EXPECT_NEAR(alone.size.width, 6.05, 0.01);
    EXPECT_NEAR(alone.size.height, 9.08, 0.01);
    EXPECT_EQ(CTLineGetImageBounds(lineOf(u" ").get(), nullptr).size, CGSize());
    EXPECT_EQ(CTLineGetImageBounds(nullptr, nullptr), CGRect());
}

TEST(CTLine, SurvivesAnyTextMatrix)
{
    const auto context = CGBitmapContextCreate(32, 32);
    const auto black = CGColorCreateRGBA(0, 0, 0, 1);
    const auto line = lineOf(u"Hz");
    static constexpr double kStrange[] = {0, 1e-300, 1e-9, 1e300, -1e5, 3e9, 1, -1};
    for (const double v : kStrange)
        for (const double w : kStrange)
            for (const auto& m : {CGAffineTransform{v, 0, 0, w, 1, 1}, CGAffineTransform{v, w, w, v, 1, 1},
                                  CGAffineTransform{1, v, w, 1, 1, 1}, CGAffineTransform{1, 0, 0, -1, v, w}}) {
                CGContextSetTextMatrix(context, m);
                CTLineDraw(line, context, black);
            }
    CGContextClearRect(context, CGRectMake(0, 0, 32, 32));
    CGContextSetTextMatrix(context, {1, 0, 0, -1, 4, 20});
    CTLineDraw(line, context, black);
    EXPECT_GT(inkOf(context), 10);
}

TEST(CTLine, ShowsABoxForALetterThatNoFontHas)
{
    const double box = inkOf(drawn(u"\uE123", 20, 1, 10, 50).get()), letter = inkOf(drawn(u"A", 20, 1, 10, 50).get());
    EXPECT_GT(box, 10);
    EXPECT_NEAR(inkOf(drawn(u"A\uE123", 20, 1, 10, 50).get()), box + letter, 5) << "the others are drawn as ever";
}

TEST(CTLine, DrawsSharpAtEveryScale)
{
    const auto once = drawn(u"Hz", 20, 1, 5, 40), twice = drawn(u"Hz", 20, 2, 5, 40);
    const auto large = drawn(u"Hz", 40, 1, 10, 50);
    EXPECT_NEAR(inkOf(twice) / inkOf(once), 4, 0.05);
    EXPECT_NEAR(inkOf(twice), inkOf(large), 0.01 * inkOf(large));
    const InkBox scaled = inkBoxOf(twice), set = inkBoxOf(large);
    EXPECT_NEAR(double(scaled.right - scaled.left), double(set.right - set.left), 1);
}

TEST(CTLine, DrawsInColourUnderAlphaAndClip)
{
    const auto context = CGBitmapContextCreate(64, 64);
    CGContextClipToRect(context, CGRectMake(0, 0, 64, 35));
    CGContextSetAlpha(context, 0.5);
    const auto blue = CGColorCreateRGBA(0, 0, 1, 1);
    CTLineDraw(lineOf(u"L", 40).get(), context, {10, 50}, blue);
    const auto pixels = CGBitmapContextGetPixels(context);
    const std::uint8_t* stem = &pixels[4 * (64 * 25 + 16)];
    EXPECT_THAT(std::vector<int>(stem, stem + 4), ElementsAre(0, 0, 128, 128));
    const InkBox ink = inkBoxOf(context);
    EXPECT_EQ(ink.bottom, 35u);
    EXPECT_NEAR(double(ink.top), 50 - 0.729 * 40, 1); // so high are capitals
    EXPECT_NEAR(double(ink.left), 10 + 0.098 * 40, 1);
}

TEST(CTLine, TakesAnyLengthAndPlace)
{
    const auto font = fontOf("Lucida Grande", 12);
    const std::u16string longText(100000, u'0');
    const auto line = CTLineCreate(longText, font);
    EXPECT_NEAR(CTLineGetTypographicBounds(line).width, 100000 * widthOf(u"0", font), 100);
    EXPECT_EQ(CTLineGetCaretPositions(line).size(), 100001u);
    EXPECT_NEAR(CTLineGetOffsetForStringIndex(line, 50000), 50000 * widthOf(u"0", font), 100);
    EXPECT_EQ(CTTruncatedEnd(longText, font, 8 * widthOf(u"0", font)).size(), 7u);

    const auto huge = fontOf("Lucida Grande", 4096);
    EXPECT_GT(widthOf(longText, huge), 0);

    const auto context = CGBitmapContextCreate(16, 16);
    const auto black = CGColorCreateRGBA(0, 0, 0, 1);
    for (const double v : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e9, 3e6, -5e5})
        for (const double scale : {1.0, 1e-3, 1e5}) {
            const ScopedGState state(context);
            CGContextScaleCTM(context, scale, scale);
            CTLineDraw(line, context, {v, 8}, black);
            CTLineDraw(CTLineCreate(u"W", huge).get(), context, {0, v}, black);
            CTLineDraw(CTLineCreate(u"W", huge).get(), context, {0, 0}, black);
        }
    CGContextClearRect(context, CGRectMake(0, 0, 16, 16));
    CTLineDraw(line, context, {-600000, 12}, black); // the text goes on past the end of what can be seen
    EXPECT_GT(inkOf(context), 10);
}

TEST(CTLine, NothingHappensWithoutFontLineOrContext)
{
    EXPECT_FALSE(CTLineCreate(u"a", nullptr));
    EXPECT_EQ(CTLineGetTypographicBounds(nullptr).width, 0);
    EXPECT_EQ(CTLineGetStringIndexForPosition(nullptr, 5), 0u);
    EXPECT_THAT(CTLineGetCaretPositions(nullptr), ElementsAre(0));
    CTLineDraw(lineOf(u"a").get(), nullptr, {}, nullptr);
    EXPECT_EQ(CTTruncatedEnd(u"abc", nullptr, 1), u"abc");
}
