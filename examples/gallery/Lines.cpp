#include "Sections.h"

namespace {

using Layout = ZeGraphicsContext::_eGCDL;

/// Draws the line and marks its ends.
template <Layout layout, int a, int b, int c> void drawLayout(ZeGraphicsContext& context, Samples&)
{
    constexpr ZeFPoint kEnds[][2] = {{{a, c}, {b, c}}, {{a, c}, {a + b, c}}, {{a, b}, {a + c, b}},
                                     {{c, a}, {c, b}}, {{c, a}, {c, a + b}}, {{a, b}, {a, b + c}}};
    context.ZeDrawLine(kBlue, a, b, c, layout);
    drawMarks(context, kEnds[layout]);
}

void drawDashes(ZeGraphicsContext& context, Samples&)
{
    static constexpr double kShort[] = {2, 2}, kLong[] = {12, 4}, kMixed[] = {12, 4, 2, 4};
    static constexpr struct {
        double phase;
        std::span<const double> lengths;
    } kRows[] = {{0, {}}, {0, kShort}, {0, kLong}, {6, kLong}, {0, kMixed}};
    double y = 14.5;
    for (const auto& [phase, lengths] : kRows) {
        context.ZeSetLineStyle(phase, lengths.data(), lengths.size());
        context.ZeDrawLine(kBlack, 12.0, y, 138.0, y);
        y += 14;
    }
}

void drawDashedFrame(ZeGraphicsContext& context, Samples&)
{
    static constexpr double kLengths[] = {6, 3};
    static constexpr ZeFPoint kTriangle[] = {{75, 24}, {112, 62}, {38, 62}};
    context.ZeSetLineStyle(0, kLengths, 2);
    context.ZeDrawRectangle(kBlue, ZeRect(12, 10, 126, 64), 2);
    context.ZeDrawPath(kRed, kTriangle, 3, 2, 0, 0, 0);
}

constexpr Field kFields[] = {
    {L"ZeDrawLine, Horz", L"x1 20, x2 130, y 40", drawLayout<Layout::eGCDLHorz, 20, 130, 40>},
    {L"ZeDrawLine, HorzLen", L"x 20, length 90, y 40", drawLayout<Layout::eGCDLHorzLen, 20, 90, 40>},
    {L"ZeDrawLine, HorzXYLen", L"x 20, y 40, length 70", drawLayout<Layout::eGCDLHorzXYLen, 20, 40, 70>},
    {L"ZeDrawLine, Vert", L"y1 10, y2 70, x 40", drawLayout<Layout::eGCDLVert, 10, 70, 40>},
    {L"ZeDrawLine, VertLen", L"y 10, length 50, x 75", drawLayout<Layout::eGCDLVertLen, 10, 50, 75>},
    {L"ZeDrawLine, VertXYLen", L"x 110, y 10, length 40", drawLayout<Layout::eGCDLVertXYLen, 110, 10, 40>},
    {L"ZeDrawLine, ints", L"y 10, 20 ...: edges of pixels",
     [](ZeGraphicsContext& context, Samples&) {
         for (int y = 10; y < 80; y += 10) context.ZeDrawLine(kBlack, 12, y, 138, y);
     }},
    {L"ZeDrawLine, doubles", L"y 10.5, 20.5 ...: middles",
     [](ZeGraphicsContext& context, Samples&) {
         for (double y = 10.5; y < 80; y += 10) context.ZeDrawLine(kBlack, 12.0, y, 138.0, y);
     }},
    {L"ZeDrawLine, four numbers", L"from (12, 74)",
     [](ZeGraphicsContext& context, Samples&) {
         for (int x = 20; x <= 140; x += 20) context.ZeDrawLine(kBlue, 12, 74, x, 10);
         for (int y = 26; y <= 74; y += 16) context.ZeDrawLine(kBlue, 12, 74, 140, y);
     }},
    {L"ZeDrawXorLine", L"inverts what is under it",
     [](ZeGraphicsContext& context, Samples&) {
         context.ZeFillRectSolid(kYellow, ZeRect(15, 10, 60, 64));
         context.ZeFillRectSolid(kBlue, ZeRect(75, 10, 60, 64));
         for (int y = 18; y < 72; y += 8) context.ZeDrawXorLine(8, y, 141, y);
         context.ZeDrawXorLine(8, 14, 141, 70);
     }},
    {L"ZeSetLineStyle", L"solid, then four patterns", drawDashes},
    {L"ZeSetLineStyle", L"frames and polygons follow it", drawDashedFrame},
};

} // namespace

Section lines() { return {L"Lines", kFields}; }
