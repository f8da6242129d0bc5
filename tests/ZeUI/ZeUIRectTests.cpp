#include "ZeUIRect.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Numbers {
    double x, y, width, height;
};

void expectRect(const ZeRect& r, const Numbers& expected)
{
    EXPECT_DOUBLE_EQ(r.x, expected.x);
    EXPECT_DOUBLE_EQ(r.y, expected.y);
    EXPECT_DOUBLE_EQ(r.width, expected.width);
    EXPECT_DOUBLE_EQ(r.height, expected.height);
}

constexpr auto kNoCoord = static_cast<_tPt2Coord>(2);
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(ZeRect, TakesFourKindsOfNumbers)
{
    expectRect({0.5F, 8.25F}, {0, 0, 0.5, 8.25});
    expectRect({1LL << 40, 8LL}, {0, 0, 1099511627776.0, 8});

    expectRect({10, 20, 30, 50, ePt2Pt}, {10, 20, 20, 30});
    expectRect({2.5F, 1.0F, 1.5F, 4.0F, ePt2Pt}, {2.5, 1, -1, 3});
    expectRect({0.25, 0.5, 1.0, 2.0, ePtSize}, {0.25, 0.5, 1, 2});
    // differences are taken in double: no 64-bit overflow
    const long long most = std::numeric_limits<long long>::max();
    expectRect({-most, 0LL, most, 1LL, ePt2Pt}, {-9223372036854775808.0, 0, 18446744073709551616.0, 1});
    expectRect({1, 2, 3, 4, kNoCoord}, {0, 0, 0, 0});
}

TEST(ZeRect, ReadsPlatformRectangles)
{
    const Rect edges{.top = 20, .left = 10, .bottom = 50, .right = 30};
    expectRect({edges}, {10, 20, 20, 30});
    expectRect({edges, ePt2Pt}, {10, 20, 30, 50});
    const Rect widest{.top = 0, .left = -32768, .bottom = 1, .right = 32767};
    expectRect({widest}, {-32768, 0, 65535, 1});
    expectRect({CGRectMake(10, 20, 30, 50)}, {10, 20, 30, 50});
    expectRect({CGRectMake(10, 20, 30, 50), ePt2Pt}, {10, 20, 20, 30});

    ZeRect r(1, 2, 3, 4);
    r.Set(edges, kNoCoord);
    r.Set(CGRectMake(5, 6, 7, 8), kNoCoord);
    r.Set(5, 6, 7, 8, kNoCoord);
    expectRect(r, {1, 2, 3, 4});
    r.Set(ZeRect(5, 6, 7, 8));
    expectRect(r, {5, 6, 7, 8});
}

TEST(ZeRect, WritesPlatformRectangles)
{
    const ZeRect r(10, 20, 30, 50, ePt2Pt);
    EXPECT_EQ(r.GetCGRect(), CGRectMake(10, 20, 20, 30));
    EXPECT_EQ(r.GetCGRect(ePt2Pt), CGRectMake(10, 20, 30, 50));
    EXPECT_EQ(r.GetRect(kNoCoord), Rect{});

    static const struct {
        const char* why;
        Numbers rect;
        Rect size, edges; // top, left, bottom, right
    } kRows[] = {
        {"halves go away from zero", {-1.5, 2.5, 3.49, 4.5}, {3, -2, 5, 3}, {3, -2, 7, 2}},
        {"edges are rounded, not their parts", {0.4, 0.4, 0.4, 10.2}, {0, 0, 10, 0}, {0, 0, 11, 1}},
        {"just below a half", {0.49999999999999994, -0.49999999999999994, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}},
        {"low 16 bits", {40000, 65536, -40000, 1}, {0, -25536, 1, 25536}, {0, -25536, 1, 0}},
        {"32767.5 wraps", {32767.5, 0, 0, 0}, {0, -32768, 0, 0}, {0, -32768, 0, -32768}},
        {"not a number is 0, the ends of 64 bits keep their low bits",
         {kNaN, -kInfinity, kInfinity, 0},
         {0, 0, 0, -1},
         {0, 0, 0, 0}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const ZeRect rect(row.rect.x, row.rect.y, row.rect.width, row.rect.height);
        EXPECT_TRUE(rect.GetRect() == row.size);
        EXPECT_TRUE(rect.GetRect(ePt2Pt) == row.edges);
        EXPECT_TRUE(rect.GetSRect() == row.edges);
    }
}

TEST(ZeRect, Adjusts)
{
    static const struct {
        const char* why;
        Numbers from;
        void (*adjust)(ZeRect&);
        Numbers to;
    } kRows[] = {
        {"inflate", {10, 10, 4, 6}, [](ZeRect& r) { r.Inflate(2, 3); }, {7.5, 6.5, 8.5, 12.5}},
        {"deflate", {0, 0, 16, 16}, [](ZeRect& r) { r.Deflate(2, 2); }, {2.5, 2.5, 11.5, 11.5}},
        {"deflate by nothing", {0, 0, 16, 16}, [](ZeRect& r) { r.Deflate(0, 1); }, {0.5, 1.5, 15.5, 13.5}},
        {"left edge", {1, 2, 30, 40}, [](ZeRect& r) { r.EdgeAdj(5, eEdgeLeft); }, {6, 2, 25, 40}},
        {"right edge", {1, 2, 30, 40}, [](ZeRect& r) { r.EdgeAdj(5, eEdgeRight); }, {1, 2, 35, 40}},
        {"top edge", {1, 2, 30, 40}, [](ZeRect& r) { r.EdgeAdj(-5, eEdgeTop); }, {1, -3, 30, 45}},
        {"bottom edge", {1, 2, 30, 40}, [](ZeRect& r) { r.EdgeAdj(-50, eEdgeBottom); }, {1, 2, 30, -10}},
        {"down", {1, 2, 3, 4}, [](ZeRect& r) { r.Shift(5, eDirVert); }, {1, 7, 3, 4}},
        {"both", {1, 2, 3, 4}, [](ZeRect& r) { r.Shift(-5, eDirBoth); }, {-4, -3, 3, 4}},
        {"by two amounts", {1, 2, 3, 4}, [](ZeRect& r) { r.Shift(5, 1); }, {6, 3, 3, 4}},
        {"top left", {0, 0, 10, 10}, [](ZeRect& r) { r.CornerAdj(2, eCornerTL); }, {-2, -2, 12, 12}},
        {"bottom right", {0, 0, 10, 10}, [](ZeRect& r) { r.CornerAdj(2, eCornerBR); }, {0, 0, 12, 12}},
        {"no corner", {0, 0, 10, 10}, [](ZeRect& r) { r.CornerAdj(2, static_cast<_tCorner>(4)); }, {0, 0, 10, 10}},
        {"to a brush of 8", {13.7, 9.2, 10, 10}, [](ZeRect& r) { r.AlignTL4Brush(7); }, {8, 8, 15.7, 11.2}},
        {"below zero", {-0.5, -3.5, 10, 10}, [](ZeRect& r) { r.AlignTL4Brush(1); }, {0, -4, 9.5, 10.5}},
        {"without bits", {13.7, 9.2, 1, 1}, [](ZeRect& r) { r.AlignTL4Brush(0); }, {13, 9, 1.7, 1.2}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        ZeRect r(row.from.x, row.from.y, row.from.width, row.from.height);
        row.adjust(r);
        expectRect(r, row.to);
    }
}

TEST(ZeRect, TellsWhatTwoHaveInCommon)
{
    const auto check = [](const char* why, const ZeRect& first, const ZeRect& second, const Numbers& common) {
        SCOPED_TRACE(why);
        for (const auto& [a, b] : {std::pair(first, second), std::pair(second, first)}) {
            ZeRect found = a;
            EXPECT_EQ(a.Intersects(b, nullptr), common.x != kInfinity);
            EXPECT_EQ(found.Intersects(b, &found), common.x != kInfinity);
            expectRect(found, common);
        }
    };
    constexpr Numbers nothing{kInfinity, kInfinity, 0, 0};
    const ZeRect square(10, 10);
    check("overlap", square, {6, -2, 10, 5}, {6, 0, 4, 3});
    check("one within the other", square, {2, 3, 4, 5}, {2, 3, 4, 5});
    check("an edge", square, {10, 2, 10, 10}, {10, 2, 0, 8});
    check("a corner", square, {10, 10, 10, 10}, {10, 10, 0, 0});
    check("one without extent", square, {4, 5, 0, 2}, {4, 5, 0, 2});
    check("nothing with nothing", CGRectNull, CGRectNull, nothing);
    check("apart", square, {0, 11, 10, 10}, nothing);
    check("an extent counts from its other end", {10, 10, -10, -10}, {6, 8, 10, 10}, {6, 8, 4, 2});
    check("not a number", square, {kNaN, 0.0, 10.0, 10.0}, nothing);
}

TEST(ZeRect, SurroundsTwo)
{
    const auto check = [](const char* why, const ZeRect& a, const ZeRect& b, const Numbers& both, bool hasExtent) {
        SCOPED_TRACE(why);
        ZeRect rect = b;
        EXPECT_EQ(a.SuperRect(b, nullptr), hasExtent);
        EXPECT_EQ(a.SuperRect(rect, &rect), hasExtent);
        expectRect(rect, both);
    };
    check("two", {10, 10, 10, 10}, {0, 0, 5, 5}, {0, 0, 20, 20}, true);
    check("the first has no width", {0, 0, 0, 5}, {3, 3, 2, 2}, {3, 3, 2, 2}, true);
    check("the second has no height", {3, 3, 2, 2}, {0, 0, 5, 0}, {3, 3, 2, 2}, true);
    check("neither counts", {1, 2, 0, 5}, {3, 3, 2, 0}, {1, 2, 0, 5}, false);
    check("negative extents stay", {10, 0, -5, 1}, {10, 0, -10, 1}, {10, 0, -5, 1}, true);
}

TEST(ZeRect, HalvesIntoTriangles)
{
    const ZeRect r(1, 2, 10, 20);
    constexpr ZeFPoint TL{1, 2}, TR{11, 2}, BL{1, 22}, BR{11, 22}, none{};
    static const struct {
        int n, kind;
        ZeFPoint points[4];
    } kRows[] = {{3, 0, {TL, TR, BL}}, {4, 1, {TL, TR, BR}}, {3, 2, {TL, BR, BL}}, {3, 3, {TR, BR, BL}},
                 {2, 0, {}},           {4, 4, {}},           {4, -1, {}}};
    for (const auto& row : kRows) {
        ZeFPoint points[4] = {none, none, none, none};
        r.TriPtsFromRect(points, row.n, row.kind);
        for (int i = 0; i < 4; ++i) EXPECT_TRUE(points[i] == row.points[i]) << row.kind << ", " << i;
    }
    r.TriPtsFromRect(nullptr, 3, 0);
}
