#include "Sections.h"

namespace {

constexpr ZeFPoint kWave[] = {{10, 62}, {40, 20}, {72, 58}, {104, 16}, {140, 66}};
constexpr int kWavePoints = std::size(kWave);
constexpr ZeFPoint kStar[] = {{75, 8}, {97, 72}, {41, 32}, {109, 32}, {53, 72}};
enum Mode { kQuadratic, kCubic, kStraight };

template <Mode mode, int percent> void drawCurve(ZeGraphicsContext& context, Samples&)
{
    context.ZeDrawCurve(kBlue, kWave, kWavePoints, mode, percent / 100.0F);
    drawMarks(context, kWave);
}

template <Mode mode, int chordEnds> void fillCurve(ZeGraphicsContext& context, Samples&)
{
    context.ZeFillPath(colorOf(0x2868C8, 0xA0), kWave, kWavePoints, mode, 1, chordEnds);
    drawMarks(context, kWave);
}

constexpr Field kFields[] = {
    {L"ZeDrawCurve", L"mode 2: straight", drawCurve<kStraight, 100>},
    {L"ZeDrawCurve", L"mode 0: quadratic, tension 1", drawCurve<kQuadratic, 100>},
    {L"ZeDrawCurve", L"mode 1: cubic, tension 1", drawCurve<kCubic, 100>},
    {L"ZeDrawCurve", L"mode 1, tension 0.5", drawCurve<kCubic, 50>},
    {L"ZeDrawPath", L"a closed polygon, 1 wide",
     [](ZeGraphicsContext& context, Samples&) { context.ZeDrawPath(kRed, kStar, 5, 1, 0, 0, 0); }},
    {L"ZeDrawPath", L"3 wide",
     [](ZeGraphicsContext& context, Samples&) { context.ZeDrawPath(kRed, kStar, 5, 3, 0, 0, 0); }},
    {L"ZeFillPath", L"mode 2", fillCurve<kStraight, 0>},
    {L"ZeFillPath", L"mode 0", fillCurve<kQuadratic, 0>},
    {L"ZeFillPath", L"mode 1, chordEnds 0", fillCurve<kCubic, 0>},
    {L"ZeFillPath", L"mode 1, chordEnds 1", fillCurve<kCubic, 1>},
    {L"ZeCalcCurve", L"two curves in one path",
     [](ZeGraphicsContext& context, Samples&) {
         static constexpr ZeFPoint kLow[] = {{10, 74}, {50, 44}, {90, 74}, {140, 50}};
         context.ZeCalcCurve(kLow, 4, kCubic, 1, 0);
         context.ZeDrawCurve(kGreen, kWave, kWavePoints, kCubic, 1);
     }},
};

} // namespace

Section paths() { return {L"Polygons and curves", kFields}; }
