#include "Sections.h"

#include <array>

namespace {

constexpr ZeGuiDefs::Color kClear = colorOf(0x2868C8, 0x60), kFaint = colorOf(0x202428, 0x30);

void drawCorners(ZeGraphicsContext& context, Samples&)
{
    static constexpr ZeGuiDefs::Color kColors[] = {kBlue, kRed, kGreen, kYellow};
    for (int kind = 0; kind < 4; ++kind) {
        std::array<ZeFPoint, 3> corners;
        const ZeRect rect(13.0 + 32 * kind, 28.0, 28.0, 28.0);
        context.ZeFillRectSolid(kPale, rect);
        rect.TriPtsFromRect(corners.data(), 3, kind);
        context.ZeFillPath(kColors[kind], corners.data(), 3, 2, 0, 0);
    }
}

void drawTogether(ZeGraphicsContext& context, Samples&)
{
    const ZeRect one(20, 12, 60, 40), other(58, 34, 70, 36);
    ZeRect both, shared;
    one.SuperRect(other, &both);
    one.Intersects(other, &shared);
    context.ZeFillRectSolid(kPale, both);
    context.ZeFillRectSolid(kClear, one);
    context.ZeFillRectSolid(kClear, other);
    context.ZeFillRectSolid(kYellow, shared);
}

void drawInset(ZeGraphicsContext& context, Samples&)
{
    ZeRect outer(35, 22, 80, 40), inner = outer;
    const ZeRect rect = outer;
    outer.Inflate(10, 10);
    inner.Deflate(10, 10);
    context.ZeFillRectSolid(kPale, outer);
    context.ZeFillRectSolid(kClear, rect);
    context.ZeFillRectSolid(kBlue, inner);
}

void drawMoved(ZeGraphicsContext& context, Samples&)
{
    ZeRect shifted(14, 14, 40, 26), stretched(84, 14, 26, 26);
    context.ZeFillRectSolid(kPale, shifted);
    context.ZeFillRectSolid(kPale, stretched);
    shifted.Shift(18, 24);
    stretched.CornerAdj(24, eCornerBR);
    context.ZeFillRectSolid(kClear, shifted);
    context.ZeFillRectSolid(kClear, stretched);
}

void drawEdges(ZeGraphicsContext& context, Samples&)
{
    ZeRect wider(20, 22, 36, 40), higher(92, 22, 40, 36);
    context.ZeFillRectSolid(kPale, wider);
    context.ZeFillRectSolid(kPale, higher);
    wider.EdgeAdj(12, eEdgeLeft);
    wider.EdgeAdj(16, eEdgeRight);
    higher.EdgeAdj(12, eEdgeTop);
    higher.EdgeAdj(16, eEdgeBottom);
    context.ZeFillRectSolid(kClear, wider);
    context.ZeFillRectSolid(kClear, higher);
}

void drawAlignedToBrush(ZeGraphicsContext& context, Samples&)
{
    ZeRect rect(42, 27, 74, 44);
    context.ZeFillRectSolid(kPale, rect);
    rect.AlignTL4Brush(15);
    context.ZeFillRectSolid(kClear, rect);
    for (int brush = 0; brush * 16 < kFieldWidth; ++brush) {
        const double at = brush * 16 + 0.5;
        context.ZeDrawLine(kFaint, at, 0.0, at, kFieldHeight);
        context.ZeDrawLine(kFaint, 0.0, at, kFieldWidth, at);
    }
}

constexpr Field kFields[] = {
    {L"ZeFillRectSolid", L"opaque",
     [](ZeGraphicsContext& context, Samples&) {
         context.ZeFillRectSolid(kBlue, ZeRect(15, 12, 35, 60));
         context.ZeFillRectSolid(kRed, ZeRect(57, 12, 35, 60));
         context.ZeFillRectSolid(kGreen, ZeRect(99, 12, 35, 60));
     }},
    {L"ZeFillRectSolid", L"alpha 128, over each other",
     [](ZeGraphicsContext& context, Samples&) {
         context.ZeFillRectSolid(colorOf(0x2868C8, 128), ZeRect(15, 10, 60, 44));
         context.ZeFillRectSolid(colorOf(0xC83C28, 128), ZeRect(45, 30, 60, 44));
         context.ZeFillRectSolid(colorOf(0x288C50, 128), ZeRect(75, 10, 60, 44));
     }},
    {L"ZeFillRectGradient", L"top left to bottom right",
     [](ZeGraphicsContext& context, Samples&) {
         const ZeRect rect(15, 10, 120, 64);
         const ScopedGState state(context.context);
         CGContextClipToRect(context.context, rect.GetCGRect());
         context.ZeFillRectGradient(kYellow, kBlue, rect);
     }},
    {L"ZeFillRectGradient", L"not clipped to its rectangle",
     [](ZeGraphicsContext& context, Samples&) {
         const ZeRect rect(55, 24, 40, 36);
         context.ZeFillRectGradient(kYellow, kBlue, rect);
         context.ZeDrawRectangle(kWhite, rect, 1);
     }},
    {L"ZeDrawRectangle", L"line widths 1, 2, 4 and 8",
     [](ZeGraphicsContext& context, Samples&) {
         context.ZeDrawRectangle(kBlue, ZeRect(5, 4, 140, 76), 1);
         context.ZeDrawRectangle(kBlue, ZeRect(13, 11, 124, 62), 2);
         context.ZeDrawRectangle(kBlue, ZeRect(23, 19, 104, 46), 4);
         context.ZeDrawRectangle(kBlue, ZeRect(36, 29, 78, 26), 8);
     }},
    {L"ZeDrawRectangle", L"stays inside its rectangle",
     [](ZeGraphicsContext& context, Samples&) {
         context.ZeFillRectSolid(kPale, ZeRect(20, 14, 110, 56));
         context.ZeDrawRectangle(colorOf(0xC83C28, 0xA0), ZeRect(20, 14, 110, 56), 10);
     }},
    {L"ZeRect::Inflate, Deflate", L"by 10; top and left, 10.5", drawInset},
    {L"ZeRect::Intersects, SuperRect", L"yellow, and pale around", drawTogether},
    {L"ZeRect::Shift, CornerAdj", L"(18, 24); bottom right, 24", drawMoved},
    {L"ZeRect::TriPtsFromRect", L"kinds 0 to 3", drawCorners},
    {L"ZeRect::EdgeAdj", L"left, top 12; right, bottom 16", drawEdges},
    {L"ZeRect::AlignTL4Brush", L"to whole brushes of 16", drawAlignedToBrush},
};

} // namespace

Section rectangles() { return {L"Rectangles", kFields}; }
