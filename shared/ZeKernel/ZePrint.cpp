#include "ZePrint.h"

#include "PosFmtNumbers.h"
#include "ZePropertyMap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Shows every stored field with its key to `visit(key, field)`, in the order in which they are stored.
void VisitStoredFields(auto& fmt, auto visit)
{
    visit(L"dwSampleRate", fmt.dwSampleRate);
    visit(L"dFrameRate", fmt.dFrameRate);
    visit(L"dTempo", fmt.dTempo);
    visit(L"ntOffset", fmt.ntOffset);
    visit(L"ccPercentBase", fmt.ccPercentBase);
    visit(L"dwTimeSignature", fmt.dwTimeSignature);
    visit(L"cTicksPerBeat", fmt.cTicksPerBeat);
}

constexpr const wchar_t* kFormatKey = L"eFormat";

long long Quotient(double samples, double steps) { return steps == 0.0 ? 1 : ZeTruncate(std::ceil(samples / steps)); }

constexpr int kLastStepIn = 8;   // 1/24
constexpr int kLastStepOut = 99; // 2^50

/// Positions of one pixel at a step outward, 0..kLastStepOut.
long long PositionsOfStep(int step)
{
    if (step == 0) return 1;
    return step % 2 ? 1LL << (step + 1) / 2 : 3LL << (step - 2) / 2;
}

/// How many pixels stand for how many positions; one of them is 1.
struct Density {
    int pixels;
    long long positions;
};

Density DensityOf(double ratio)
{
    if (ratio < 1.0) return {static_cast<int>(PosFmtInner::NearestFrame(1.0 / ratio)), 1};
    return {1, ZeTruncate(ratio + 0.5)};
}

} // namespace

ZeFormatterPlatform::~ZeFormatterPlatform() = default;

void ZePosFmt::setType(_qvposfmt_format type)
{
    eFormat = type;
    const PosFmtFacts* facts = PosFmtFactsOf(type);
    if (facts && facts->typeFrameRate != 0.0) dFrameRate = facts->typeFrameRate;
}

bool ZePosFmt::isHMSF() const
{
    const PosFmtFacts* facts = PosFmtFactsOf(eFormat);
    return facts && facts->isHMSF;
}

void ZePosFmt::Cleanup() { delete std::exchange(pFormatter, nullptr); }

long long ZePosFmt::getIncrement() const
{
    switch (eFormat) {
    case QVPOSFMT_TIME:
    case QVPOSFMT_TIME_METRIC:
        return Quotient(dwSampleRate, 10.0);
    case QVPOSFMT_FRAMES:
    case QVPOSFMT_FRAMES_METRIC:
    case QVPOSFMT_SMPTE_NONDROP_29:
    case QVPOSFMT_SMPTE_NONDROP_30:
    case QVPOSFMT_SMPTE_DROP:
    case QVPOSFMT_SMPTE_EBU:
    case QVPOSFMT_SMPTE_FILM:
    case QVPOSFMT_TIME_CD:
        return Quotient(dwSampleRate, dFrameRate);
    case QVPOSFMT_MEASURES:
        return Quotient(dwSampleRate * 60u, dTempo);
    case QVPOSFMT_PERCENT:
        return Quotient(static_cast<double>(ccPercentBase), 100.0);
    default:
        return 1;
    }
}

void ZePosFmt::persist(ZePropertyMap& map) const
{
    map.insert<int>(kFormatKey, eFormat);
    VisitStoredFields(*this, [&map](const wchar_t* key, const auto& field) { map.insert(key, field); });
}

void ZePosFmt::restore(ZePropertyMap& map)
{
    eFormat = static_cast<_qvposfmt_format>(map[kFormatKey].get<int>());
    VisitStoredFields(*this, [&map]<typename T>(const wchar_t* key, T& field) { field = map[key].template get<T>(); });
}

double ZoomRatioUtils::ZoomRatioFromHMagnify(int step)
{
    // Choice: steps below -62 are 1/24 like their neighbours. Test: ZoomRatioUtils.StepsRunByTwosAndThrees
    if (step < 0) return 1.0 / static_cast<double>(PositionsOfStep(-std::max(step, -kLastStepIn)));
    return static_cast<double>(PositionsOfStep(std::min(step, kLastStepOut)));
}

void ZoomRatioUtils::ZoomRatioTextFromHMagnify(int step, ZeString& out)
{
    ZoomRatioTextFromZoomRatio(ZoomRatioFromHMagnify(step), out);
}

void ZoomRatioUtils::ZoomRatioTextFromZoomRatio(double ratio, ZeString& out)
{
    const Density density = DensityOf(ratio);
    ZeSprintf(out, L"%d:%ld", density.pixels, static_cast<long>(density.positions));
}

void ZoomRatioUtils::PixelDensityFromZoomRatio(double ratio, long long* positions, long* pixels)
{
    const Density density = DensityOf(ratio);
    if (positions) *positions = density.positions;
    if (pixels) *pixels = density.pixels;
}
